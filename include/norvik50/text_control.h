// A text field of the host (a text box, an editable combo box, a list
// item or tree node) as tklZoomTextBox drives it: its type name, text,
// state, tooltip, selection and focus. The Qt adapters come with the
// dialogs (norvik50/qt_dialogs.h); MemoryTextBox serves hosts without a
// toolkit and tests.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_TEXT_CONTROL_H_
#define NORVIK50_TEXT_CONTROL_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

class NORVIK50_EXPORT TextControl : public HostObject {
 public:
  ~TextControl() override;
  // The control's type name as the host runtime's TypeName gives it
  // ("TextBox", "ComboBox", "ListItem", "Node" ...).
  virtual std::u16string TypeName() const = 0;
  virtual std::u16string Text() const = 0;
  virtual void SetText(std::u16string_view text) = 0;
  virtual bool Enabled() const = 0;
  // Read-only: the text shows but cannot be edited.
  virtual bool Locked() const = 0;
  virtual std::u16string ToolTipText() const = 0;
  // Selects `length` characters from the 0-based `start`; a length of 0
  // puts the caret at `start`.
  virtual void Select(int32_t start, int32_t length) = 0;
  // Gives the control the input focus; does nothing where it cannot have it.
  virtual void SetFocus() = 0;
};

// A text box held in memory.
class NORVIK50_EXPORT MemoryTextBox final : public TextControl {
 public:
  explicit MemoryTextBox(std::u16string type_name = u"TextBox")
      : type_name_(std::move(type_name)) {}
  std::u16string TypeName() const override { return type_name_; }
  std::u16string Text() const override { return text_; }
  void SetText(std::u16string_view text) override { text_ = text; }
  bool Enabled() const override { return enabled; }
  bool Locked() const override { return locked; }
  std::u16string ToolTipText() const override { return tooltip; }
  void Select(int32_t start, int32_t length) override {
    sel_start = start;
    sel_length = length;
  }
  void SetFocus() override { focused = true; }

  bool enabled = true;
  bool locked = false;
  std::u16string tooltip;
  int32_t sel_start = 0;
  int32_t sel_length = 0;
  bool focused = false;

 private:
  std::u16string type_name_;
  std::u16string text_;
};

}  // namespace norvik50

#endif  // NORVIK50_TEXT_CONTROL_H_
