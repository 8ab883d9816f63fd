// Reading the fields of a typed object's payload in the batch protocol:
// each refuses what the object cannot take, with JsonValueError.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_FIELDS_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_FIELDS_H_

#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>

namespace norvik50::cli {

// Refuses a payload that is not a JSON object, and a field not in
// `allowed`: a misspelt field would otherwise be dropped without a word,
// and the object would answer with its default.
void OnlyFields(const nlohmann::ordered_json& payload, const std::string& type,
                std::span<const std::string_view> allowed);

// The field `name` as text; "" when absent.
std::u16string TextField(const nlohmann::ordered_json& payload, const char* name);
// The field `name` as true or false; `otherwise` when absent.
bool FlagField(const nlohmann::ordered_json& payload, const char* name, bool otherwise);
// The field `name` as a whole number within a Long; `otherwise` when absent.
int32_t LongField(const nlohmann::ordered_json& payload, const char* name, int32_t otherwise = 0);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_FIELDS_H_
