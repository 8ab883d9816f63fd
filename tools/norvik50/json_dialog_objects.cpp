#include "json_dialog_objects.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "json_fields.h"
#include "json_value.h"
#include "norvik50/mouse_pointer.h"

namespace norvik50::cli {

using json = nlohmann::ordered_json;

namespace {
constexpr std::array<std::string_view, 4> kPointerFields = {"MousePointer", "width", "height",
                                                            "holdsMouse"};
}  // namespace

std::optional<Variant> DialogObjectFromJson(const std::string& type, const json& payload) {
  if (type != "MousePointer") return std::nullopt;
  int16_t pointer = kPointerDefault;
  if (!payload.is_object()) throw JsonValueError("MousePointer \"v\" must be {\"MousePointer\":N}");
  OnlyFields(payload, type, kPointerFields);
  if (const auto it = payload.find("MousePointer"); it != payload.end()) {
    if (!it->is_number_integer() || *it < INT16_MIN || *it > INT16_MAX) {
      throw JsonValueError("\"MousePointer\" must be a whole number within an Integer");
    }
    pointer = it->get<int16_t>();
  }
  auto control = std::make_shared<MemoryMousePointer>(pointer);
  control->width = LongField(payload, "width");
  control->height = LongField(payload, "height");
  control->holds_mouse = FlagField(payload, "holdsMouse", false);
  return Variant(std::shared_ptr<HostObject>(std::move(control)));
}

std::optional<json> DialogObjectToJson(const HostObject& object) {
  if (const auto* pointer = dynamic_cast<const MousePointerControl*>(&object)) {
    json v = {{"MousePointer", pointer->MousePointer()}};
    // The control's size and hold only where it has them, so that an
    // object used for its pointer alone comes back as it went.
    if (const auto* memory = dynamic_cast<const MemoryMousePointer*>(pointer);
        memory != nullptr && (memory->width != 0 || memory->height != 0 || memory->holds_mouse)) {
      v["width"] = memory->width;
      v["height"] = memory->height;
      v["holdsMouse"] = memory->holds_mouse;
    }
    return json{{"vt", "Object"}, {"type", "MousePointer"}, {"v", std::move(v)}};
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
