// The dialog objects of the batch protocol, as typed Object values:
//   {"vt":"Object","type":"MousePointer","v":{"MousePointer":0}}
// an object with a mouse pointer for tklShowWait; the answer writes it
// with the pointer it has afterwards. As the control of tklCheckMouseMove
// and tklCheckMouseDown it also has a size in twips and holds the mouse
// or not: {"MousePointer":0,"width":1200,"height":375,"holdsMouse":false}
// (each optional: 0, 0, false; written back only when one is not).
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_DIALOG_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_DIALOG_OBJECTS_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "norvik50/variant.h"

namespace norvik50::cli {

// The object the typed value of `type` describes; nullopt when `type` is
// not one of these. Raises JsonValueError for a malformed payload.
std::optional<Variant> DialogObjectFromJson(const std::string& type,
                                            const nlohmann::ordered_json& payload);
// The typed value of `object`; nullopt when it is not one of these.
std::optional<nlohmann::ordered_json> DialogObjectToJson(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_DIALOG_OBJECTS_H_
