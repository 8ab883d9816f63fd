#include "json_dialog_objects.h"

#include <cstdint>

#include "json_value.h"
#include "norvik50/mouse_pointer.h"

namespace norvik50::cli {

using json = nlohmann::ordered_json;

std::optional<Variant> DialogObjectFromJson(const std::string& type, const json& payload) {
  if (type != "MousePointer") return std::nullopt;
  int16_t pointer = kPointerDefault;
  if (!payload.is_object()) throw JsonValueError("MousePointer \"v\" must be {\"MousePointer\":N}");
  if (const auto it = payload.find("MousePointer"); it != payload.end()) {
    if (!it->is_number_integer() || *it < INT16_MIN || *it > INT16_MAX) {
      throw JsonValueError("\"MousePointer\" must be a whole number within an Integer");
    }
    pointer = it->get<int16_t>();
  }
  return Variant(std::shared_ptr<HostObject>(std::make_shared<MemoryMousePointer>(pointer)));
}

std::optional<json> DialogObjectToJson(const HostObject& object) {
  if (const auto* pointer = dynamic_cast<const MousePointerControl*>(&object)) {
    return json{{"vt", "Object"},
                {"type", "MousePointer"},
                {"v", {{"MousePointer", pointer->MousePointer()}}}};
  }
  return std::nullopt;
}

}  // namespace norvik50::cli
