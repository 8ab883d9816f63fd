#include "json_c_values.h"

#include <stdexcept>
#include <string>

#include "norvik50/values.h"

namespace norvik50::testing {
namespace {

using json = nlohmann::json;

const char* TypeName(uint16_t vt) {
  switch (vt) {
    case NORVIK50_VT_EMPTY:
      return "Empty";
    case NORVIK50_VT_NULL:
      return "Null";
    case NORVIK50_VT_INTEGER:
      return "Integer";
    case NORVIK50_VT_LONG:
      return "Long";
    case NORVIK50_VT_SINGLE:
      return "Single";
    case NORVIK50_VT_DOUBLE:
      return "Double";
    case NORVIK50_VT_CURRENCY:
      return "Currency";
    case NORVIK50_VT_DATE:
      return "Date";
    case NORVIK50_VT_STRING:
      return "String";
    case NORVIK50_VT_OBJECT:
      return "Object";
    case NORVIK50_VT_ERROR:
      return "Error";
    case NORVIK50_VT_BOOLEAN:
      return "Boolean";
    case NORVIK50_VT_DECIMAL:
      return "Decimal";
    case NORVIK50_VT_BYTE:
      return "Byte";
    case NORVIK50_VT_RECORD:
      return "Record";
    default:
      return (vt & NORVIK50_VT_ARRAY) != 0 ? "Array" : "?";
  }
}

void Check(int32_t rc) {
  if (rc != 0) throw std::runtime_error("the C interface refused a value: " + std::to_string(rc));
}

norvik50_value* Text(const std::string& s) {
  norvik50_value* v = nullptr;
  Check(norvik50_value_new_utf8(s.data(), s.size(), &v));
  return v;
}

norvik50_value* Typed(const json& t) {
  const std::string vt = t.at("vt");
  const json v = t.value("v", json());
  norvik50_value* out = nullptr;
  if (vt == "Empty") return norvik50_value_new_empty();
  if (vt == "Null") return norvik50_value_new_null();
  if (vt == "Integer") return norvik50_value_new_integer(v.get<int16_t>());
  if (vt == "Long") return norvik50_value_new_long(v.get<int32_t>());
  if (vt == "Byte") return norvik50_value_new_byte(v.get<uint8_t>());
  if (vt == "Single") return norvik50_value_new_single(v.get<float>());
  if (vt == "Double") return norvik50_value_new_double(v.get<double>());
  if (vt == "Boolean") return norvik50_value_new_boolean(v.get<bool>() ? 1 : 0);
  if (vt == "Error") return norvik50_value_new_error(v.get<int32_t>());
  if (vt == "String") return Text(v.get<std::string>());
  if (vt == "Currency") {
    return norvik50_value_new_currency(Currency::Parse(v.get<std::string>()).value().scaled);
  }
  if (vt == "Decimal") {
    const Decimal d = Decimal::Parse(v.get<std::string>()).value();
    Check(norvik50_value_new_decimal(d.hi, d.lo, d.scale, d.negative, &out));
    return out;
  }
  if (vt == "Date") {
    const Date d = Date::ParseIso(v.get<std::string>()).value();
    Check(norvik50_value_new_date(d.serial, &out));
    return out;
  }
  if (vt == "Array") {
    if (v.is_null()) {
      Check(norvik50_value_new_unbounded_array(NORVIK50_VT_VARIANT, &out));
      return out;
    }
    const int32_t lower = t.value("lb", 0);
    Check(norvik50_value_new_array(NORVIK50_VT_VARIANT, lower, v.size(), &out));
    for (std::size_t i = 0; i < v.size(); ++i) {
      norvik50_value* item = ValueFromJson(v[i]);
      const int32_t rc = norvik50_array_set(out, lower + static_cast<int64_t>(i), item);
      norvik50_value_free(item);
      Check(rc);
    }
    return out;
  }
  if (vt == "Record") {
    Check(norvik50_value_new_record(t.at("type").get<std::string>().c_str(), &out));
    for (const auto& [name, field] : v.items()) {
      norvik50_value* item = ValueFromJson(field);
      const int32_t rc = norvik50_record_set(out, name.c_str(), item);
      norvik50_value_free(item);
      Check(rc);
    }
    return out;
  }
  throw std::runtime_error("no typed value: " + t.dump());
}

}  // namespace

norvik50_value* ValueFromJson(const json& typed) {
  if (typed.is_string()) return Text(typed.get<std::string>());
  if (typed.is_boolean()) return norvik50_value_new_boolean(typed.get<bool>() ? 1 : 0);
  if (typed.is_null()) return norvik50_value_new_null();
  if (typed.is_number_integer()) return norvik50_value_new_long(typed.get<int32_t>());
  if (typed.is_number()) return norvik50_value_new_double(typed.get<double>());
  return Typed(typed);
}

json ValueToJson(const norvik50_value* value) {
  const uint16_t vt = norvik50_value_type(value);
  json out = {{"vt", TypeName(vt)}};
  switch (vt) {
    case NORVIK50_VT_EMPTY:
    case NORVIK50_VT_NULL:
      return out;
    case NORVIK50_VT_INTEGER: {
      int16_t x = 0;
      norvik50_value_get_integer(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_LONG: {
      int32_t x = 0;
      norvik50_value_get_long(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_BYTE: {
      uint8_t x = 0;
      norvik50_value_get_byte(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_SINGLE: {
      float x = 0;
      norvik50_value_get_single(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_DOUBLE: {
      double x = 0;
      norvik50_value_get_double(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_BOOLEAN: {
      int16_t x = 0;
      norvik50_value_get_boolean(value, &x);
      out["v"] = x != 0;
      return out;
    }
    case NORVIK50_VT_ERROR: {
      int32_t x = 0;
      norvik50_value_get_error(value, &x);
      out["v"] = x;
      return out;
    }
    case NORVIK50_VT_CURRENCY: {
      int64_t x = 0;
      norvik50_value_get_currency(value, &x);
      out["v"] = Currency::FromScaled(x).ToString();
      return out;
    }
    case NORVIK50_VT_DECIMAL: {
      Decimal d;
      int negative = 0;
      norvik50_value_get_decimal(value, &d.hi, &d.lo, &d.scale, &negative);
      d.negative = negative != 0;
      out["v"] = d.ToString();
      return out;
    }
    case NORVIK50_VT_DATE: {
      double serial = 0;
      norvik50_value_get_date(value, &serial);
      out["v"] = Date{serial}.ToIsoString();
      return out;
    }
    case NORVIK50_VT_STRING: {
      char* text = nullptr;
      std::size_t length = 0;
      norvik50_value_get_utf8(value, &text, &length);
      out["v"] = std::string(text, length);
      norvik50_free(text);
      return out;
    }
    case NORVIK50_VT_RECORD: {
      const char* type = nullptr;
      std::size_t count = 0;
      norvik50_record_type(value, &type);
      norvik50_record_field_count(value, &count);
      json fields = json::object();
      for (std::size_t i = 0; i < count; ++i) {
        const char* name = nullptr;
        norvik50_value* field = nullptr;
        norvik50_record_field(value, i, &name, &field);
        // A text field is a plain string, as the batch writes it.
        json typed = ValueToJson(field);
        fields[name] = typed.at("vt") == "String" ? typed.at("v") : typed;
        norvik50_value_free(field);
      }
      out["type"] = type;
      out["v"] = fields;
      return out;
    }
    default:
      break;
  }
  if ((vt & NORVIK50_VT_ARRAY) != 0) {
    int32_t lower = 0;
    std::size_t count = 0;
    if (norvik50_array_bounds(value, &lower, &count) != 0) {
      out["v"] = nullptr;
      return out;
    }
    json items = json::array();
    for (std::size_t i = 0; i < count; ++i) {
      norvik50_value* item = nullptr;
      norvik50_array_get(value, lower + static_cast<int64_t>(i), &item);
      items.push_back(ValueToJson(item));
      norvik50_value_free(item);
    }
    out["lb"] = lower;
    out["v"] = items;
  }
  return out;
}

bool SameValue(const json& expected, const json& actual) {
  if (expected.is_object() && expected.value("vt", "") == "Single" && actual.is_object() &&
      actual.value("vt", "") == "Single") {
    return expected.at("v").get<float>() == actual.at("v").get<float>();
  }
  if (expected.is_object() && actual.is_object() && expected.contains("v") &&
      expected.at("v").is_array() && actual.contains("v") && actual.at("v").is_array()) {
    const json& a = expected.at("v");
    const json& b = actual.at("v");
    if (a.size() != b.size() || expected.value("lb", 0) != actual.value("lb", 0)) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (!SameValue(a[i], b[i])) return false;
    }
    return true;
  }
  return expected == actual;
}

}  // namespace norvik50::testing
