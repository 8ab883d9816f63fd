// LIB: whether the mouse is on a control, holding the mouse for it while
// it is, so that the control learns when the pointer leaves it.
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/mouse_pointer.h"

namespace norvik50 {
namespace {

MouseHolder& RequireHolder(const std::shared_ptr<HostObject>& object) {
  auto* holder = dynamic_cast<MouseHolder*>(object.get());
  if (holder == nullptr) {
    throw Error(kErrInvalidCall, u"The object is no control that can hold the mouse.",
                std::u16string(kErrorSource));
  }
  return *holder;
}

// Written so that a NaN coordinate is off the control.
bool IsOn(const MouseHolder& control, float x, float y) {
  return x >= 0 && y >= 0 && x < static_cast<float>(control.WidthTwips()) &&
         y < static_cast<float>(control.HeightTwips());
}

}  // namespace

bool LIB::tklCheckMouseMove(const std::shared_ptr<HostObject>& oControl, float nX, float nY) {
  MouseHolder& control = RequireHolder(oControl);
  const bool on = IsOn(control, nX, nY);
  // Held while the pointer is on it: the move that takes the pointer off
  // reaches the control too, where its handler drops the hover state.
  control.HoldMouse(on);
  return on;
}

bool LIB::tklCheckMouseDown(const std::shared_ptr<HostObject>& oControl, float nX, float nY) {
  MouseHolder& control = RequireHolder(oControl);
  const bool on = IsOn(control, nX, nY);
  if (!on) control.HoldMouse(false);
  return on;
}

}  // namespace norvik50
