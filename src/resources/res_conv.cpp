#include "resources/res_conv.h"

#include <algorithm>
#include <vector>

#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"

namespace norvik50 {
namespace {

constexpr int32_t kStringType = 8;

struct Filled {
  std::u16string_view placeholder;
  std::u16string text;
};

Filled Written(const Variant& value) {
  switch (value.type()) {
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kByte:
      return {u"%d", FormatValue(value, u"0")};
    case VarType::kSingle:
    case VarType::kDouble:
      return {u"%d", FormatValue(value, u"Standard")};
    case VarType::kCurrency:
      return {u"%d", FormatValue(value, u"Currency")};
    case VarType::kDate:
      return {u"%d", FormatValue(value, u"Short Date")};
    case VarType::kBoolean:
      // Not the named format "True/False": the engine reads this text as
      // a pattern of its own, whatever that makes of -1.
      return {u"%d", FormatValue(value, u"True / False")};
    default:
      return {u"%s", ConvertToType(kStringType, value).as_string()};
  }
}

// A lone element "^a|b|c" stands for the texts a, b and c.
std::optional<std::vector<Variant>> PackedValues(const SafeArray& values) {
  if (!values.is_bounded() || values.ubound() != 0 || values.lbound() > 0) return std::nullopt;
  const Variant text = ConvertToType(kStringType, values.at(0));
  const std::u16string& packed = text.as_string();
  if (packed.empty() || packed.front() != u'^') return std::nullopt;
  std::vector<Variant> parts;
  if (packed.size() == 1) return parts;
  for (std::size_t start = 1;;) {
    const std::size_t bar = packed.find(u'|', start);
    parts.emplace_back(packed.substr(start, bar == std::u16string::npos ? bar : bar - start));
    if (bar == std::u16string::npos) break;
    start = bar + 1;
  }
  return parts;
}

void ReplaceEvery(std::u16string& text, std::u16string_view escape, char16_t control) {
  for (std::size_t at = text.find(escape); at != std::u16string::npos;
       at = text.find(escape, at + 1)) {
    text.replace(at, escape.size(), 1, control);
  }
}

}  // namespace

std::u16string ResConv(std::u16string_view source, const SafeArray& vars) {
  std::u16string result(source);
  std::vector<Variant> values;
  if (auto packed = PackedValues(vars)) {
    values = std::move(*packed);
  } else if (vars.is_bounded()) {
    // The values are read from index 0 to the upper bound; an index below
    // the lower bound fails and is skipped like any failing step.
    for (int64_t i = std::max<int64_t>(0, vars.lbound()); i <= vars.ubound(); ++i) {
      values.push_back(vars.at(i));
    }
  }
  for (const Variant& value : values) {
    try {
      const Filled filled = Written(value);
      const std::size_t at = result.find(filled.placeholder);
      if (at != std::u16string::npos) result.replace(at, 2, filled.text);
    } catch (...) {
      // A value that cannot be written is skipped.
    }
  }
  ReplaceEvery(result, u"\\t", u'\t');
  ReplaceEvery(result, u"\\r", u'\r');
  ReplaceEvery(result, u"\\n", u'\n');
  return result;
}

std::u16string LIB::tklResConv(std::u16string_view sSource, const SafeArray& Vars) {
  try {
    return ResConv(sSource, Vars);
  } catch (...) {
    return std::u16string(sSource);
  }
}

}  // namespace norvik50
