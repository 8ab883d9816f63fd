#include "numeric/sql_literals.h"

#include <exception>

#include "core/number_text.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"

namespace norvik50 {

std::u16string SqlDate(const Variant& value, bool server) {
  if (server) {
    // Escaped, so "-", " " and ":" stay themselves in every locale.
    return u"CONVERT(DATETIME, '" + FormatValue(value, u"yyyy\\-mm\\-dd\\ hh\\:nn\\:ss") +
           u"', 102)";
  }
  const double as_double = ConvertStrict(5, value).as_double();
  const int32_t as_long = ConvertStrict(3, value).as_long();
  // Slashes escaped: the literal wants "/" and not the locale's separator.
  const std::u16string_view pattern =
      as_double != as_long ? u"\\#yyyy\\/mm\\/dd hh\\:nn\\:ss\\#" : u"\\#yyyy\\/mm\\/dd\\#";
  return FormatValue(ConvertToType(7, value), pattern);
}

std::u16string SqlDouble(const Variant& value) {
  const double number = ConvertToType(5, value).numeric_value().value_or(0);
  std::u16string text = DoubleToText(number, CurrentLocale().decimal);
  for (char16_t& c : text) {
    if (c == u',') c = u'.';
  }
  return text;
}

std::u16string SqlFilter(const SafeArray& params) {
  std::u16string filter;
  if (!params.is_bounded() || params.ubound() < 1) return filter;
  const int64_t lower = params.lbound(), upper = params.ubound();
  // Each statement on its own: a failure skips it and the next one runs.
  const auto step = [](auto&& statement) {
    try {
      statement();
    } catch (const std::exception&) {
    }
  };
  for (int64_t i = lower; i <= upper; i += 2) {
    if (!filter.empty()) filter += u" AND ";
    step([&] { filter += ConvertStrict(8, params.at(i)).as_string(); });
    filter += u"=";
    step([&] {
      const Variant& value = params.at(i + 1);
      switch (value.type()) {
        case VarType::kDate:
          filter += SqlDate(value, false);
          break;
        case VarType::kString:
          filter += u"\"" + value.as_string() + u"\"";
          break;
        case VarType::kBoolean:
          filter += value.as_boolean() ? u"TRUE" : u"FALSE";
          break;
        default:
          filter += SqlDouble(value);
          break;
      }
    });
  }
  return filter;
}

}  // namespace norvik50
