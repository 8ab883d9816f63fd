// Typed values of the batch protocol: a Variant as JSON and back.
//   {"vt":"Integer","v":3}, {"vt":"String","v":"text"}, {"vt":"Null"},
//   {"vt":"Array","lb":0,"v":[...]}, {"vt":"Array","v":null} (unbounded),
//   {"vt":"Record","type":"typFileInfo","v":{"lpDrive":"C",...}},
//   {"vt":"Object","v":null} (Nothing),
//   {"vt":"Object","type":"Collection","v":[...]} (a collection of items).
// Shorthand in requests: a JSON string is a String, true/false a Boolean,
// null a Null, a whole number a Long (a Double when out of range), any
// other number a Double.
// Strings are in the wire form of json_line.h (unpaired surrogates kept).
// A value out of its type's range (an Integer past 32767, a Date outside the
// years 100 to 9999, a Single past its largest value, Currency and Decimal
// outside theirs) and values nested deeper than kMaxNesting raise
// JsonValueError, never an overflow or a crash.
#ifndef NORVIK50_TOOLS_NORVIK50_JSON_VALUE_H_
#define NORVIK50_TOOLS_NORVIK50_JSON_VALUE_H_

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "norvik50/variant.h"

namespace norvik50::cli {

// A typed value that cannot be read; its message says why.
class JsonValueError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

Variant VariantFromJson(const nlohmann::ordered_json& value);
nlohmann::ordered_json VariantToJson(const Variant& value);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_JSON_VALUE_H_
