// Pictures in the batch protocol, as typed Object values:
//   {"vt":"Object","type":"Picture","v":{"width":2,"height":1,
//    "pixels":["FFFF0000","80000000"]}}
// with each pixel as 8 hexadecimal digits AARRGGBB, row by row from the
// top left. Instead of "pixels", "fill" gives every pixel the one value
// (neither: every pixel transparent, 00000000). Answers write width,
// height and pixels.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_PICTURE_OBJECTS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_PICTURE_OBJECTS_H_

#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "norvik50/picture.h"
#include "norvik50/variant.h"

namespace norvik50::cli {

// The picture of a "Picture" payload. Raises JsonValueError for a payload
// that is not an object, an unknown field, a size the library does not
// take, a pixel that is not 8 hexadecimal digits, or a pixel count other
// than width x height.
std::shared_ptr<Picture> PictureFromJson(const nlohmann::ordered_json& payload);
// The payload ("v") of `picture`.
nlohmann::ordered_json PictureToJson(const Picture& picture);

// The Picture the typed value of `type` describes; nullopt for another type.
std::optional<Variant> PictureObjectFromJson(const std::string& type,
                                             const nlohmann::ordered_json& payload);
// The typed value of `object`; nullopt when it is no Picture.
std::optional<nlohmann::ordered_json> PictureObjectToJson(const HostObject& object);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_PICTURE_OBJECTS_H_
