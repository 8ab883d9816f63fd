#include "json_picture_objects.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

#include "json_fields.h"
#include "json_value.h"
#include "norvik50/error.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 4> kPictureFields = {"width", "height", "pixels", "fill"};

uint32_t PixelFrom(const json& value) {
  if (!value.is_string()) throw JsonValueError("a pixel must be a text of 8 hex digits AARRGGBB");
  const std::string& text = value.get_ref<const std::string&>();
  if (text.size() != 8) throw JsonValueError("a pixel must be 8 hex digits AARRGGBB: " + text);
  uint32_t pixel = 0;
  for (char c : text) {
    int digit = 0;
    if (c >= '0' && c <= '9') {
      digit = c - '0';
    } else if (c >= 'A' && c <= 'F') {
      digit = c - 'A' + 10;
    } else if (c >= 'a' && c <= 'f') {
      digit = c - 'a' + 10;
    } else {
      throw JsonValueError("a pixel must be 8 hex digits AARRGGBB: " + text);
    }
    pixel = (pixel << 4) | static_cast<uint32_t>(digit);
  }
  return pixel;
}

std::string PixelText(uint32_t pixel) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", pixel);
  return text;
}

}  // namespace

std::shared_ptr<Picture> PictureFromJson(const json& payload) {
  OnlyFields(payload, "Picture", kPictureFields);
  const int32_t width = LongField(payload, "width");
  const int32_t height = LongField(payload, "height");
  const auto pixels = payload.find("pixels");
  const auto fill = payload.find("fill");
  if (pixels != payload.end() && fill != payload.end()) {
    throw JsonValueError("a Picture has \"pixels\" or \"fill\", not both");
  }
  try {
    if (pixels == payload.end()) {
      return std::make_shared<Picture>(width, height,
                                       fill == payload.end() ? 0u : PixelFrom(*fill));
    }
    if (!pixels->is_array()) throw JsonValueError("Picture \"pixels\" must be a list");
    // Checked before the list is read: a wrong count is refused however
    // long the list is.
    if (width < 0 || height < 0 ||
        static_cast<int64_t>(pixels->size()) != int64_t{width} * height) {
      throw JsonValueError("Picture \"pixels\" must hold width x height pixels");
    }
    std::vector<uint32_t> values;
    values.reserve(pixels->size());
    for (const json& pixel : *pixels) values.push_back(PixelFrom(pixel));
    return std::make_shared<Picture>(width, height, std::move(values));
  } catch (const Error& e) {
    throw JsonValueError(std::string("Picture: ") + e.what());
  }
}

json PictureToJson(const Picture& picture) {
  json pixels = json::array();
  for (uint32_t pixel : picture.Pixels()) pixels.push_back(PixelText(pixel));
  return {{"width", picture.Width()}, {"height", picture.Height()}, {"pixels", std::move(pixels)}};
}

std::optional<Variant> PictureObjectFromJson(const std::string& type, const json& payload) {
  if (type != "Picture") return std::nullopt;
  return Variant(std::shared_ptr<HostObject>(PictureFromJson(payload)));
}

std::optional<json> PictureObjectToJson(const HostObject& object) {
  const auto* picture = dynamic_cast<const Picture*>(&object);
  if (picture == nullptr) return std::nullopt;
  return json{{"vt", "Object"}, {"type", "Picture"}, {"v", PictureToJson(*picture)}};
}

}  // namespace norvik50::cli
