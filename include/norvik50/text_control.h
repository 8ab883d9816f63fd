// A text field of the host (a text box, an editable combo box, a list
// box, a list item or tree node) as tklZoomTextBox, tklSelectField and
// tklSetFocus drive it: its type name, text, state, tooltip, selection and
// focus; and a status bar panel whose text tklSelectField can turn into a
// field's tooltip. The Qt adapters come with the dialogs
// (norvik50/qt_dialogs.h); MemoryTextBox and MemoryStatusPanel serve hosts
// without a toolkit, tests and the batch protocol.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_TEXT_CONTROL_H_
#define NORVIK50_TEXT_CONTROL_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/container.h"
#include "norvik50/export.h"
#include "norvik50/focusable.h"
#include "norvik50/variant.h"

namespace norvik50 {

class NORVIK50_EXPORT TextControl : public HostObject, public Focusable {
 public:
  ~TextControl() override;
  // The control's type name as the host runtime's TypeName gives it
  // ("TextBox", "ComboBox", "ListBox", "ListItem", "Node" ...).
  virtual std::u16string TypeName() const = 0;
  virtual std::u16string Text() const = 0;
  virtual void SetText(std::u16string_view text) = 0;
  virtual bool Enabled() const = 0;
  // Read-only: the text shows but cannot be edited.
  virtual bool Locked() const = 0;
  virtual std::u16string ToolTipText() const = 0;
  virtual void SetToolTipText(std::u16string_view tip) = 0;
  // The 0-based start of the selection (the caret when nothing is
  // selected) and the number of characters selected.
  virtual int32_t SelStart() const = 0;
  virtual int32_t SelLength() const = 0;
  // Selects `length` characters from the 0-based `start`; a length of 0
  // puts the caret at `start`. Positions past the text mean its end.
  virtual void Select(int32_t start, int32_t length) = 0;
  // SetFocus (Focusable): the input focus, for the field's whole text.
};

// Selects the whole text of `control`; with `toggle`, a control whose
// whole text is already selected gets the caret at the end and nothing
// selected instead. tklSelectField and the zoom editor's F2 key both use
// it. Whatever the control raises passes through.
NORVIK50_EXPORT void SelectField(TextControl& control, bool toggle);

// A text box held in memory. Like a real box it keeps the selection
// inside the text: Select clamps, and a new text puts the caret at 0. It
// sits in `container` (nullptr: on no form).
class NORVIK50_EXPORT MemoryTextBox final : public TextControl, public Contained {
 public:
  explicit MemoryTextBox(std::u16string type_name = u"TextBox")
      : type_name_(std::move(type_name)) {}
  std::u16string TypeName() const override { return type_name_; }
  std::u16string Text() const override { return text_; }
  void SetText(std::u16string_view text) override;
  bool Enabled() const override { return enabled; }
  bool Locked() const override { return locked; }
  std::u16string ToolTipText() const override { return tooltip; }
  void SetToolTipText(std::u16string_view tip) override { tooltip = tip; }
  int32_t SelStart() const override { return sel_start; }
  int32_t SelLength() const override { return sel_length; }
  void Select(int32_t start, int32_t length) override;
  void SetFocus() override { focused = true; }
  std::shared_ptr<HostObject> Parent() const override { return container; }

  bool enabled = true;
  bool locked = false;
  std::u16string tooltip;
  int32_t sel_start = 0;
  int32_t sel_length = 0;
  bool focused = false;
  std::shared_ptr<HostObject> container;

 private:
  std::u16string type_name_;
  std::u16string text_;
};

// A panel of the host's status bar: what tklSelectField reads.
class NORVIK50_EXPORT StatusPanel : public HostObject {
 public:
  ~StatusPanel() override;
  virtual std::u16string Text() const = 0;
};

// A status panel held in memory.
class NORVIK50_EXPORT MemoryStatusPanel final : public StatusPanel {
 public:
  explicit MemoryStatusPanel(std::u16string text = u"") : text(std::move(text)) {}
  std::u16string Text() const override { return text; }
  std::u16string text;
};

}  // namespace norvik50

#endif  // NORVIK50_TEXT_CONTROL_H_
