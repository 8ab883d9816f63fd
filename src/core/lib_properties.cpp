// LIB: the property bag, a per-object store of values by name.
#include "core/property_bag.h"
#include "norvik50/lib.h"

namespace norvik50 {

Variant LIB::tklProperty(std::u16string_view sName) const {
  // A bag that was never written reads like an empty one, name check
  // included.
  static const PropertyBag kNothingKept;
  return (properties_ ? *properties_ : kNothingKept).Get(sName);
}

void LIB::tklProperty(std::u16string_view sName, const Variant& vNewValue) {
  if (!properties_) properties_ = std::make_unique<PropertyBag>();
  properties_->Let(sName, vNewValue);
}

}  // namespace norvik50
