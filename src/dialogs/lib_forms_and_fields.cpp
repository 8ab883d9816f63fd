// LIB: whether a form is open, what holds a control, and F2 in a field.
#include "dialogs/form_fields.h"
#include "norvik50/container.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {

bool LIB::tklIsFormOpen(const Variant& vForm) {
  return IsFormOpen(vForm, [] { return CurrentUserInterface().OpenForms(); });
}

std::shared_ptr<HostObject> LIB::tklGetContainer(const std::shared_ptr<HostObject>& oControl,
                                                 std::u16string_view sKind) {
  const auto* control = dynamic_cast<const Contained*>(oControl.get());
  if (control == nullptr) {
    throw Error(kErrInvalidCall, u"The object is no control placed on a form.",
                std::u16string(kErrorSource));
  }
  return FindContainer(*control, sKind);
}

bool LIB::tklCheckF2Key(const std::shared_ptr<HostObject>& oControl, int16_t& iKeyCode,
                        int16_t iShift, std::u16string_view sDescription, bool bIgnoreAttributes) {
  // Called for every key the field gets: anything but F2 costs nothing.
  if (!OpensZoom(iKeyCode, iShift)) return false;
  tklZoomTextBox(oControl, sDescription, bIgnoreAttributes);
  iKeyCode = 0;
  return true;
}

}  // namespace norvik50
