// The rules of the form and field helpers (tklIsFormOpen, tklGetContainer,
// tklCheckF2Key) on the library's interfaces, apart from the user
// interface that lists the open forms and shows the zoom.
#ifndef NORVIK50_SRC_DIALOGS_FORM_FIELDS_H_
#define NORVIK50_SRC_DIALOGS_FORM_FIELDS_H_

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/container.h"
#include "norvik50/variant.h"

namespace norvik50 {

// The key code of F2 as a KeyDown handler receives it.
inline constexpr int16_t kKeyF2 = 113;
// The bits of a KeyDown handler's shift state.
inline constexpr int16_t kShiftMask = 1;
inline constexpr int16_t kCtrlMask = 2;
inline constexpr int16_t kAltMask = 4;

// The names of the forms open now; asked only when a name is to be looked
// up (it may start the toolkit).
using OpenFormNames = std::function<std::vector<std::u16string>()>;

// Whether `form` is open: a form's name among `open_names` (compared as
// the settings store compares names), a Form object that says it is open,
// or a container of type "Form" whose name is open. False for Empty, Null,
// Nothing, "" and any other object; 13 for a value of another type.
bool IsFormOpen(const Variant& form, const OpenFormNames& open_names);

// The container of `control` that `kind` names: "" the one that holds it
// directly, else the nearest one up whose type ("Frame", "TabPage", "Page",
// "Form") or name is `kind`, without regard to case. A Form object is the
// form: type "Form", its own name. nullptr when none is, or the chain ends
// at an object that is neither a form nor a container. 5 when the chain
// runs round in a ring.
std::shared_ptr<HostObject> FindContainer(const Contained& control, std::u16string_view kind);

// Whether a key press opens the zoom: F2 on its own. With Shift, Ctrl or
// Alt held it stays the host's key.
constexpr bool OpensZoom(int16_t key_code, int16_t shift) {
  return key_code == kKeyF2 && (shift & (kShiftMask | kCtrlMask | kAltMask)) == 0;
}

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_FORM_FIELDS_H_
