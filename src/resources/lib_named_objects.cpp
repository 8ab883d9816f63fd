// LIB: the library's own objects by name.
#include "norvik50/lib.h"
#include "resources/named_objects.h"

namespace norvik50 {

std::shared_ptr<HostObject> LIB::tklGlobalObj(std::u16string_view sName,
                                              const std::optional<Variant>& vValue) {
  return MakeNamedObject(sName, vValue);
}

}  // namespace norvik50
