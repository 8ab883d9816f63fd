// LIB: whether an object stands for a control on a form.
#include "norvik50/focusable.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/mouse_pointer.h"
#include "norvik50/text_control.h"

namespace norvik50 {

bool LIB::tklIsControl(const Variant& vObject) {
  if (!vObject.is_object()) return false;
  const HostObject* object = vObject.as_object().get();
  if (object == nullptr) return false;
  // Every adapter of a host's control is one of these kinds; a form, a
  // document or a collection is none of them.
  return dynamic_cast<const Focusable*>(object) != nullptr ||
         dynamic_cast<const TextControl*>(object) != nullptr ||
         dynamic_cast<const StatusPanel*>(object) != nullptr ||
         dynamic_cast<const ListControl*>(object) != nullptr ||
         dynamic_cast<const TabStrip*>(object) != nullptr ||
         dynamic_cast<const TabFrames*>(object) != nullptr ||
         dynamic_cast<const OptionGroup*>(object) != nullptr ||
         dynamic_cast<const Grid*>(object) != nullptr ||
         dynamic_cast<const ListView*>(object) != nullptr ||
         dynamic_cast<const MousePointerControl*>(object) != nullptr;
}

}  // namespace norvik50
