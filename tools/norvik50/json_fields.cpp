#include "json_fields.h"

#include <algorithm>

#include "json_line.h"
#include "json_value.h"

namespace norvik50::cli {

using json = nlohmann::ordered_json;

void OnlyFields(const json& payload, const std::string& type,
                std::span<const std::string_view> allowed) {
  if (!payload.is_object()) throw JsonValueError(type + " \"v\" must be an object");
  for (const auto& [name, value] : payload.items()) {
    if (std::find(allowed.begin(), allowed.end(), name) == allowed.end()) {
      throw JsonValueError(type + " has no field \"" + name + "\"");
    }
  }
}

std::u16string TextField(const json& payload, const char* name) {
  const auto it = payload.find(name);
  if (it == payload.end()) return u"";
  if (!it->is_string()) throw JsonValueError(std::string("\"") + name + "\" must be a string");
  return WireTextToUtf16(it->get_ref<const std::string&>());
}

bool FlagField(const json& payload, const char* name, bool otherwise) {
  const auto it = payload.find(name);
  if (it == payload.end()) return otherwise;
  if (!it->is_boolean())
    throw JsonValueError(std::string("\"") + name + "\" must be true or false");
  return it->get<bool>();
}

int32_t LongField(const json& payload, const char* name, int32_t otherwise) {
  const auto it = payload.find(name);
  if (it == payload.end()) return otherwise;
  if (!it->is_number_integer() || *it < INT32_MIN || *it > INT32_MAX) {
    throw JsonValueError(std::string("\"") + name + "\" must be a whole number within a Long");
  }
  return it->get<int32_t>();
}

}  // namespace norvik50::cli
