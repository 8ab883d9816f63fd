// The library's own objects by name (tklGlobalObj), for hosts that reach
// the library by name only and so cannot construct them: a script, the
// batch, another language through the C interface.
#ifndef NORVIK50_SRC_RESOURCES_NAMED_OBJECTS_H_
#define NORVIK50_SRC_RESOURCES_NAMED_OBJECTS_H_

#include <memory>
#include <optional>
#include <string_view>

#include "norvik50/variant.h"

namespace norvik50 {

// A new object of the kind `name` names (any case), made from `value`:
//  - "Collection": a Collection holding the elements of the array `value`
//    in index order; empty without a value;
//  - "XmlDocument": a document loaded from `value`, XML text when its first
//    character other than a blank or line break is "<", else the path of
//    an XML file (Windows-style through the drive map, or a Linux path);
//    empty without a value;
//  - "Resources": a copy of the library's built-in resource document (the
//    captions of its dialogs in every language); takes no value.
// A missing value, Empty and Null count as none. Raises 5 for an unknown
// name, a value where none is taken, XML that is not well-formed; 53 for a
// file that does not exist; 13 for a value of the wrong type.
std::shared_ptr<HostObject> MakeNamedObject(std::u16string_view name,
                                            const std::optional<Variant>& value);

}  // namespace norvik50

#endif  // NORVIK50_SRC_RESOURCES_NAMED_OBJECTS_H_
