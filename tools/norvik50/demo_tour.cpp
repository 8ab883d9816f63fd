#include "demo_tour.h"

#include <charconv>
#include <cstdio>
#include <iostream>

#include "norvik50/collection.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"

namespace norvik50::cli {
namespace {

template <typename Number>
std::string Shortest(Number value) {
  char buffer[32];
  const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end);
}

std::string List(const std::vector<Variant>& items) {
  std::string text;
  for (std::size_t i = 0; i < items.size(); ++i) text += (i ? ", " : "") + Literal(items[i]);
  return text;
}

}  // namespace

void Step(std::string_view heading, std::string_view explanation) {
  std::cout << "\n== " << heading << "\n   " << explanation << "\n\n";
}

void Note(std::string_view text) { std::cout << "      (" << text << ")\n"; }

std::string Literal(const Variant& value) {
  if (value.is_array()) {
    const SafeArray& array = value.as_array();
    if (!array.is_bounded()) return "Array()  (never dimensioned)";
    return "Array(" + List(array.items()) + ")";
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
        return "Collection(" + List(items) + ")";
      }
      return "Object";
    }
    default:
      return ToUtf8(VarTypeName(value.type()));
  }
}

std::string HexBytes(std::string_view bytes) {
  std::string text;
  char pair[4];
  for (const char byte : bytes) {
    std::snprintf(pair, sizeof pair, "%02X", static_cast<unsigned char>(byte));
    text += (text.empty() ? "" : " ") + std::string(pair);
  }
  return text;
}

std::optional<Variant> ShowCall(Tour& tour, std::string_view member, std::vector<Variant> args) {
  std::cout << "   " << member << "(" << List(args) << ")";
  std::vector<std::optional<Variant>> call_args(args.begin(), args.end());
  try {
    InvokeResult result = Invoke(tour.lib, member, std::move(call_args));
    if (result.result) std::cout << " = " << Literal(*result.result);
    std::cout << '\n';
    const MemberInfo* info = Members().Find(member, MemberKind::kMethod);
    for (const auto& [index, value] : result.by_ref) {
      const std::string name = info != nullptr && index < info->params.size()
                                   ? info->params[index].name
                                   : "argument " + std::to_string(index);
      std::cout << "      " << name << " is now " << Literal(value) << '\n';
    }
    return std::move(result.result);
  } catch (const Error& e) {
    std::cout << " -> error " << e.number() << ": " << ToUtf8(e.description()) << '\n';
    return std::nullopt;
  }
}

}  // namespace norvik50::cli
