// Test support: typed values in the batch's JSON form made into values of
// the C interface and read back, so that a table of calls written once
// runs through the C interface as through the batch.
#ifndef NORVIK50_TESTS_CAPI_JSON_C_VALUES_H_
#define NORVIK50_TESTS_CAPI_JSON_C_VALUES_H_

#include <nlohmann/json.hpp>
#include <string>

#include "norvik50/norvik50.h"

namespace norvik50::testing {

// A new value (the caller frees it); throws std::runtime_error for JSON
// that is no typed value or that the C interface refuses.
norvik50_value* ValueFromJson(const nlohmann::json& typed);
// The value as the batch writes it ({"vt":"Long","v":3}, ...).
nlohmann::json ValueToJson(const norvik50_value* value);
// Whether two typed values are the same: Singles compare as floats,
// since the batch writes a Single in its own shortest form.
bool SameValue(const nlohmann::json& expected, const nlohmann::json& actual);

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_CAPI_JSON_C_VALUES_H_
