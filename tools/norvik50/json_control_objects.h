// The host controls of the batch protocol that the field members drive
// (tklZoomTextBox, tklSelectField, tklSetFocus), as typed Object values:
//   {"vt":"Object","type":"TextBox","v":{"text":"Meier","enabled":true,
//    "locked":false,"tooltip":"Name","selStart":0,"selLength":0,
//    "focused":false}}
// with the type TextBox, ComboBox, ListBox, ListItem or Node (every field
// optional: "", enabled, not locked, no tooltip, caret at 0, no focus; a
// "container" the field sits in, see json_container_objects.h), and
//   {"vt":"Object","type":"StatusPanel","v":{"text":"Customer's name"}}.
// Answers write the same form with every field ("container" only when the
// field has one).
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_CONTROL_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_CONTROL_OBJECTS_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "norvik50/variant.h"

namespace norvik50::cli {

// The control the typed value of `type` describes; nullopt when `type` is
// not one of these. Raises JsonValueError for a payload that is not an
// object, a field of the wrong kind or a field the control does not have.
std::optional<Variant> ControlObjectFromJson(const std::string& type,
                                             const nlohmann::ordered_json& payload);
// The typed value of `object`; nullopt when it is not one of these.
std::optional<nlohmann::ordered_json> ControlObjectToJson(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_CONTROL_OBJECTS_H_
