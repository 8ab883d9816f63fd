#include "json_value.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>

#include "json_control_objects.h"
#include "json_dialog_objects.h"
#include "json_form_objects.h"
#include "json_line.h"
#include "json_picture_objects.h"
#include "json_resource_objects.h"
#include "norvik50/collection.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"

namespace norvik50::cli {
namespace {

using json = nlohmann::ordered_json;

Variant FromJson(const json& value, int depth);

std::u16string Text(const json& v) {
  if (!v.is_string()) throw JsonValueError("expected a JSON string");
  return WireTextToUtf16(v.get_ref<const std::string&>());
}

// JSON itself has no NaN or infinity; a value that overflowed to one on the
// way is out of every type's range.
double Number(const json& v) {
  if (!v.is_number()) throw JsonValueError("expected a JSON number");
  const double d = v.get<double>();
  if (!std::isfinite(d)) throw JsonValueError("number out of range");
  return d;
}

// Runs a conversion that raises overflow (6) outside its type's range; a
// typed value out of range is a malformed request, not an overflow of the
// member's.
template <typename Convert>
auto InRange(const char* type, Convert convert) {
  try {
    return convert();
  } catch (const Error&) {
    throw JsonValueError(std::string("value out of range for ") + type);
  }
}

int64_t WholeNumber(const json& v, int64_t min, int64_t max, const char* type) {
  const double d = Number(v);
  if (d != std::floor(d) || d < static_cast<double>(min) || d > static_cast<double>(max)) {
    throw JsonValueError(std::string("value out of range for ") + type);
  }
  return static_cast<int64_t>(d);
}

const json& Payload(const json& value) {
  const auto it = value.find("v");
  if (it == value.end()) throw JsonValueError("typed value without \"v\"");
  return *it;
}

Variant Typed(const json& value, int depth) {
  const auto vt_it = value.find("vt");
  if (vt_it == value.end() || !vt_it->is_string()) {
    throw JsonValueError("typed value needs \"vt\"");
  }
  const std::string& vt = vt_it->get_ref<const std::string&>();
  if (vt == "Empty") return Variant();
  if (vt == "Null") return Variant::Null();
  if (vt == "Integer")
    return Variant(static_cast<int16_t>(WholeNumber(Payload(value), -32768, 32767, "Integer")));
  if (vt == "Long")
    return Variant(static_cast<int32_t>(WholeNumber(Payload(value), INT32_MIN, INT32_MAX, "Long")));
  if (vt == "Byte")
    return Variant(static_cast<uint8_t>(WholeNumber(Payload(value), 0, 255, "Byte")));
  if (vt == "Single") {
    const double d = Number(Payload(value));
    if (std::fabs(d) > FLT_MAX) throw JsonValueError("value out of range for Single");
    return Variant(static_cast<float>(d));
  }
  if (vt == "Double") return Variant(Number(Payload(value)));
  if (vt == "Currency") {
    const json& v = Payload(value);
    if (v.is_number()) {
      return Variant(InRange("Currency", [&] { return Currency::FromDouble(Number(v)); }));
    }
    const auto c = Currency::Parse(ToUtf8(Text(v)));
    if (!c) {
      throw JsonValueError(
          "Currency must be a decimal text within its range with at most four decimals");
    }
    return Variant(*c);
  }
  if (vt == "Decimal") {
    const json& v = Payload(value);
    if (v.is_number()) {
      return Variant(InRange("Decimal", [&] { return Decimal::FromDouble(Number(v)); }));
    }
    const auto d = Decimal::Parse(ToUtf8(Text(v)));
    if (!d) {
      throw JsonValueError(
          "Decimal must be a decimal text within its range with at most 28 decimals");
    }
    return Variant(*d);
  }
  if (vt == "Date") {
    const json& v = Payload(value);
    if (v.is_number()) {
      const double serial = Number(v);
      if (!(serial >= Date::kMinSerial && serial <= Date::kMaxSerial)) {
        throw JsonValueError("value out of range for Date (years 100 to 9999)");
      }
      return Variant(Date{serial});
    }
    const auto d = Date::ParseIso(ToUtf8(Text(v)));
    if (!d) throw JsonValueError("Date must be \"yyyy-mm-ddThh:nn:ss\"");
    return Variant(*d);
  }
  if (vt == "String") return Variant(Text(Payload(value)));
  if (vt == "Boolean") {
    const json& v = Payload(value);
    if (v.is_boolean()) return Variant(v.get<bool>());
    return Variant::Boolean(static_cast<int16_t>(WholeNumber(v, -32768, 32767, "Boolean")));
  }
  if (vt == "Error")
    return Variant(ErrorValue{
        static_cast<int32_t>(WholeNumber(Payload(value), INT32_MIN, INT32_MAX, "Error"))});
  if (vt == "Array") {
    const json& v = Payload(value);
    if (v.is_null()) return Variant(SafeArray());
    if (!v.is_array()) throw JsonValueError("Array \"v\" must be a list or null");
    int64_t lb = 0;
    if (const auto it = value.find("lb"); it != value.end())
      lb = WholeNumber(*it, INT32_MIN, INT32_MAX, "lb");
    // The upper bound must be a Long as well (an empty array's is lb - 1).
    const int64_t ub = lb + static_cast<int64_t>(v.size()) - 1;
    if (ub > INT32_MAX || ub < INT32_MIN) {
      throw JsonValueError("Array upper bound out of range");
    }
    std::vector<Variant> items;
    items.reserve(v.size());
    for (const json& item : v) items.push_back(FromJson(item, depth + 1));
    return Variant(SafeArray(static_cast<int32_t>(lb), std::move(items)));
  }
  if (vt == "Object") {
    // Nothing, or a new Collection holding the listed items.
    const json& v = Payload(value);
    if (v.is_null()) return Variant(std::shared_ptr<HostObject>());
    const auto type_it = value.find("type");
    if (type_it == value.end() || !type_it->is_string()) {
      throw JsonValueError("Object needs a \"type\" text unless it is null (Nothing)");
    }
    const std::string& type = type_it->get_ref<const std::string&>();
    if (auto object = ResourceObjectFromJson(type, v)) return *object;
    if (auto object = ControlObjectFromJson(type, v)) return *object;
    if (auto object = DialogObjectFromJson(type, v)) return *object;
    if (auto object = FormObjectFromJson(type, v)) return *object;
    if (auto object = PictureObjectFromJson(type, v)) return *object;
    if (type != "Collection" || !v.is_array()) {
      throw JsonValueError(
          "Object must be null (Nothing) or of type Collection, XmlDocument, XmlNode, List, "
          "TabStrip, TextBox, ComboBox, ListBox, ListItem, Node, QSCombo, DCCombo, StatusPanel, "
          "MousePointer, OptionGroup, TabFrames, Grid, Form, ListView, Picture or Container");
    }
    auto collection = std::make_shared<Collection>();
    for (const json& item : v) collection->Add(FromJson(item, depth + 1));
    return Variant(std::shared_ptr<HostObject>(std::move(collection)));
  }
  if (vt == "Record") {
    const auto type_it = value.find("type");
    const json& v = Payload(value);
    if (type_it == value.end() || !type_it->is_string() || !v.is_object()) {
      throw JsonValueError("Record needs \"type\" and an object \"v\"");
    }
    std::vector<std::pair<std::string, Variant>> fields;
    for (const auto& [name, field] : v.items())
      fields.emplace_back(name, FromJson(field, depth + 1));
    return Variant(Record(type_it->get<std::string>(), std::move(fields)));
  }
  throw JsonValueError("unknown type \"" + vt + "\"");
}

// The shortest text that reads back as the same float, as a JSON number.
json SingleToJson(float f) {
  if (!std::isfinite(f)) return nullptr;
  char buffer[32];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, f);
  return json::parse(std::string(buffer, end));
}

json DoubleToJson(double d) { return std::isfinite(d) ? json(d) : json(nullptr); }

// `depth` counts the typed values around this one; the line was already
// checked for depth, this keeps the recursion bounded for any document.
Variant FromJson(const json& value, int depth) {
  if (depth > kMaxNesting) throw JsonValueError("values nested too deeply");
  switch (value.type()) {
    case json::value_t::null:
      return Variant::Null();
    case json::value_t::boolean:
      return Variant(value.get<bool>());
    case json::value_t::string:
      return Variant(Text(value));
    case json::value_t::number_integer:
    case json::value_t::number_unsigned: {
      const double d = value.get<double>();
      if (d >= INT32_MIN && d <= INT32_MAX)
        return Variant(static_cast<int32_t>(value.get<int64_t>()));
      return Variant(d);
    }
    case json::value_t::number_float:
      return Variant(Number(value));
    case json::value_t::object:
      return Typed(value, depth);
    default:
      throw JsonValueError("a value must be a JSON string, number, boolean, null or typed object");
  }
}

}  // namespace

Variant VariantFromJson(const json& value) { return FromJson(value, 0); }

json VariantToJson(const Variant& value) {
  switch (value.is_array() ? VarType::kArray : value.type()) {
    case VarType::kEmpty:
      return {{"vt", "Empty"}};
    case VarType::kNull:
      return {{"vt", "Null"}};
    case VarType::kInteger:
      return {{"vt", "Integer"}, {"v", value.as_integer()}};
    case VarType::kLong:
      return {{"vt", "Long"}, {"v", value.as_long()}};
    case VarType::kByte:
      return {{"vt", "Byte"}, {"v", value.as_byte()}};
    case VarType::kSingle:
      return {{"vt", "Single"}, {"v", SingleToJson(value.as_single())}};
    case VarType::kDouble:
      return {{"vt", "Double"}, {"v", DoubleToJson(value.as_double())}};
    case VarType::kCurrency:
      return {{"vt", "Currency"}, {"v", value.as_currency().ToString()}};
    case VarType::kDecimal:
      return {{"vt", "Decimal"}, {"v", value.as_decimal().ToString()}};
    case VarType::kDate: {
      // A serial outside the calendar's years has no date text; it is
      // written as the number it is rather than through the calendar.
      const double serial = value.as_date().serial;
      if (!(serial >= Date::kMinSerial && serial <= Date::kMaxSerial)) {
        return {{"vt", "Date"}, {"v", DoubleToJson(serial)}};
      }
      return {{"vt", "Date"}, {"v", value.as_date().ToIsoString()}};
    }
    case VarType::kString:
      return {{"vt", "String"}, {"v", Utf16ToWireText(value.as_string())}};
    case VarType::kBoolean: {
      const VariantBool b = value.as_boolean();
      // A Boolean that holds another non-zero value keeps it.
      if (b == kTrue || b == kFalse) return {{"vt", "Boolean"}, {"v", b != 0}};
      return {{"vt", "Boolean"}, {"v", b}};
    }
    case VarType::kError:
      return {{"vt", "Error"}, {"v", value.as_error().code}};
    case VarType::kObject: {
      const auto& object = value.as_object();
      if (!object) return {{"vt", "Object"}, {"v", nullptr}};
      if (const auto* collection = dynamic_cast<const Collection*>(object.get())) {
        json items = json::array();
        for (int32_t i = 1; i <= collection->Count(); ++i) {
          items.push_back(VariantToJson(collection->Item(i)));
        }
        return {{"vt", "Object"}, {"type", "Collection"}, {"v", std::move(items)}};
      }
      if (auto typed = ResourceObjectToJson(*object)) return *typed;
      if (auto typed = ControlObjectToJson(*object)) return *typed;
      if (auto typed = DialogObjectToJson(*object)) return *typed;
      if (auto typed = FormObjectToJson(*object)) return *typed;
      if (auto typed = PictureObjectToJson(*object)) return *typed;
      return {{"vt", "Object"}, {"type", "HostObject"}, {"v", json::object()}};
    }
    case VarType::kArray: {
      const SafeArray& array = value.as_array();
      if (!array.is_bounded()) return {{"vt", "Array"}, {"v", nullptr}};
      json items = json::array();
      for (const Variant& item : array.items()) items.push_back(VariantToJson(item));
      return {{"vt", "Array"}, {"lb", array.lbound()}, {"v", std::move(items)}};
    }
    case VarType::kRecord: {
      const Record& record = value.as_record();
      json fields = json::object();
      for (const auto& [name, field] : record.fields()) {
        fields[name] =
            field.is_string() ? json(Utf16ToWireText(field.as_string())) : VariantToJson(field);
      }
      return {{"vt", "Record"}, {"type", record.type_name()}, {"v", std::move(fields)}};
    }
    default:
      return {{"vt", "Empty"}};
  }
}

}  // namespace norvik50::cli
