// The resource objects of the batch protocol: XML documents and nodes,
// lists and tab strips, as typed Object values.
//   {"vt":"Object","type":"XmlDocument","v":{"xml":"<resources>...</resources>"}}
//   {"vt":"Object","type":"XmlDocument","v":{"path":"C:\\App\\form.xml"}}
//   {"vt":"Object","type":"XmlNode","v":{"xml":"<item name=\"a\" text=\"A\"/>"}}
//   {"vt":"Object","type":"List","v":[{"text":"Red","itemData":0}, ...]}
//   {"vt":"Object","type":"TabStrip","v":[{"key":"T1","caption":"General"}, ...]}
// Answers write documents and nodes with "xml", lists and tab strips with
// their rows and tabs.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_RESOURCE_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_RESOURCE_OBJECTS_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "norvik50/variant.h"

namespace norvik50::cli {

// The object the typed value of `type` describes; nullopt when `type` is
// not one of these. Raises JsonValueError for a malformed payload or a
// document that does not load.
std::optional<Variant> ResourceObjectFromJson(const std::string& type,
                                              const nlohmann::ordered_json& payload);
// The typed value of `object`; nullopt when it is not one of these.
std::optional<nlohmann::ordered_json> ResourceObjectToJson(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_RESOURCE_OBJECTS_H_
