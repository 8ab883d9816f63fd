// The containers a batch control sits in (tklGetContainer), as the typed
// Object value
//   {"vt":"Object","type":"Container","v":{"name":"fraAddress",
//    "type":"Frame","container":{"name":"frmCustomer","type":"Form"}}}
// where "container" (optional: none) is what holds this one, in the same
// form, up to the form. A text field names its container in the same way,
// in its own "container" field.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_CONTAINER_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_CONTAINER_OBJECTS_H_

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "norvik50/variant.h"

namespace norvik50::cli {

// The container chain `payload` describes ({"name", "type", "container"}).
// Raises JsonValueError for a field of the wrong kind, an unknown field or
// a chain nested deeper than 64 containers.
std::shared_ptr<HostObject> ContainerFromJson(const nlohmann::ordered_json& payload);
// The payload of a container chain held in memory (`object` and what
// holds it, up to 64 levels); nullopt for another object.
std::optional<nlohmann::ordered_json> ContainerPayload(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_CONTAINER_OBJECTS_H_
