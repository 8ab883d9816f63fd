#include "json_container_objects.h"

#include <array>
#include <string_view>

#include "json_fields.h"
#include "json_line.h"
#include "json_value.h"
#include "norvik50/container.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 3> kContainerFields = {"name", "type", "container"};
// Deeper than any form nests its frames; a bound keeps a hostile line from
// running the reader's stack out.
constexpr int kMaxDepth = 64;

std::shared_ptr<HostObject> FromPayload(const json& payload, int depth) {
  if (depth >= kMaxDepth) throw JsonValueError("containers nest at most 64 deep");
  OnlyFields(payload, "Container", kContainerFields);
  std::shared_ptr<HostObject> parent;
  if (const auto up = payload.find("container"); up != payload.end() && !up->is_null()) {
    parent = FromPayload(*up, depth + 1);
  }
  return std::make_shared<MemoryContainer>(TextField(payload, "name"), TextField(payload, "type"),
                                           std::move(parent));
}

json LevelJson(const MemoryContainer& level) {
  return {{"name", Utf16ToWireText(level.name)}, {"type", Utf16ToWireText(level.type)}};
}

}  // namespace

std::shared_ptr<HostObject> ContainerFromJson(const json& payload) {
  return FromPayload(payload, 0);
}

std::optional<json> ContainerPayload(const HostObject& object) {
  const auto* level = dynamic_cast<const MemoryContainer*>(&object);
  if (level == nullptr) return std::nullopt;
  json top = LevelJson(*level);
  json* tail = &top;
  for (int depth = 1; depth < kMaxDepth && level->parent != nullptr; ++depth) {
    level = dynamic_cast<const MemoryContainer*>(level->parent.get());
    if (level == nullptr) break;
    tail = &((*tail)["container"] = LevelJson(*level));
  }
  return top;
}

}  // namespace norvik50::cli
