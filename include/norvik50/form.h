// A host's form (one of its top-level windows) as the library's members
// drive it: its name and where it stands on the desktop, which
// tklSaveWindowPos and tklLoadWindowPos keep under
// "<base key>\Positions\Forms\<name>". The Qt adapter comes with the
// dialogs (norvik50/qt_dialogs.h: any QWidget window); MemoryForm serves
// hosts without a toolkit, tests and the batch.
//
// Thread safety: none; a form belongs to the thread that uses it.
#ifndef NORVIK50_FORM_H_
#define NORVIK50_FORM_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/export.h"
#include "norvik50/host.h"
#include "norvik50/variant.h"

namespace norvik50 {

// A window's state, numbered as the host runtime numbers it.
enum class WindowState : int32_t { kNormal = 0, kMinimized = 1, kMaximized = 2 };

// Where a form stands: `bounds` is its normal (restored) outer rectangle,
// kept also while the form is maximised or minimised, so that a form
// restored later returns to it.
struct WindowPlacement {
  TwipsRect bounds;
  WindowState state = WindowState::kNormal;
  bool operator==(const WindowPlacement&) const = default;
};

class NORVIK50_EXPORT Form : public HostObject {
 public:
  ~Form() override;
  // The form's name (frmCustomer): the key its position is kept under.
  virtual std::u16string Name() const = 0;
  virtual WindowPlacement Placement() const = 0;
  // Moves and sizes the form to `placement.bounds` and gives it the
  // state; a form that is not shown yet appears so when it is shown.
  virtual void SetPlacement(const WindowPlacement& placement) = 0;
};

// A form held in memory: it takes every placement as it is given.
class NORVIK50_EXPORT MemoryForm final : public Form {
 public:
  explicit MemoryForm(std::u16string name = u"") : name(std::move(name)) {}
  std::u16string Name() const override { return name; }
  WindowPlacement Placement() const override { return placement; }
  void SetPlacement(const WindowPlacement& to) override { placement = to; }

  std::u16string name;
  WindowPlacement placement;
};

}  // namespace norvik50

#endif  // NORVIK50_FORM_H_
