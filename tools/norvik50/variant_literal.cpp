#include "variant_literal.h"

#include <charconv>

#include "norvik50/collection.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

template <typename Number>
std::string Shortest(Number value) {
  char buffer[32];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end);
}


}  // namespace

std::string Literal(const Variant& value) {
  if (value.is_array()) {
    const SafeArray& array = value.as_array();
    if (!array.is_bounded()) return "Array()  (never dimensioned)";
    return "Array(" + LiteralList(array.items()) + ")";
  }
  switch (value.type()) {
    case VarType::kEmpty:
      return "Empty";
    case VarType::kNull:
      return "Null";
    case VarType::kString: {
      // Written as hosts write text literals: quotes inside doubled.
      std::string text = "\"";
      for (const char c : ToUtf8(value.as_string())) text += c == '"' ? "\"\"" : std::string(1, c);
      return text + "\"";
    }
    case VarType::kInteger:
      return std::to_string(value.as_integer());
    case VarType::kLong:
      return std::to_string(value.as_long());
    case VarType::kByte:
      return std::to_string(value.as_byte());
    case VarType::kSingle:
      return Shortest(value.as_single());
    case VarType::kDouble:
      return Shortest(value.as_double());
    case VarType::kCurrency:
      return value.as_currency().ToString();
    case VarType::kDecimal:
      return value.as_decimal().ToString();
    case VarType::kDate: {
      std::string iso = value.as_date().ToIsoString();
      if (iso.size() > 10) iso[10] = ' ';
      return "#" + iso + "#";
    }
    case VarType::kBoolean: {
      const VariantBool b = value.as_boolean();
      return b == kTrue ? "True" : b == kFalse ? "False" : std::to_string(b);
    }
    case VarType::kError:
      return "Error " + std::to_string(value.as_error().code);
    case VarType::kRecord: {
      const Record& record = value.as_record();
      std::string text = record.type_name() + "{";
      bool first = true;
      for (const auto& [name, field] : record.fields()) {
        text += (first ? "" : ", ") + name + ": " + Literal(field);
        first = false;
      }
      return text + "}";
    }
    case VarType::kObject: {
      const auto& object = value.as_object();
      if (!object) return "Nothing";
      if (const auto* collection = dynamic_cast<const Collection*>(object.get())) {
        std::vector<Variant> items;
        for (int32_t i = 1; i <= collection->Count(); ++i) items.push_back(collection->Item(i));
        return "Collection(" + LiteralList(items) + ")";
      }
      return "Object";
    }
    default:
      return ToUtf8(VarTypeName(value.type()));
  }
}

std::string LiteralList(const std::vector<Variant>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) text += (i ? ", " : "") + Literal(items[i]);
  return text;
}

}  // namespace norvik50::cli
