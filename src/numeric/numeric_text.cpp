#include "numeric/numeric_text.h"

#include <cmath>
#include <exception>
#include <string>

#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"

namespace norvik50 {

double Val(std::u16string_view source) {
  const char16_t decimal = CurrentLocale().decimal;
  std::u16string text;
  text.reserve(source.size());
  std::size_t separators = 0;
  for (char16_t c : source) {
    if ((c >= u'0' && c <= u'9') || c == u',' || c == u'.' || c == u'-' || c == u'+') {
      text.push_back(c);
      if (c == decimal) ++separators;
    }
  }
  if (source.empty()) text = u"0";
  // One decimal separator is kept: ",5," is "5," and "1,2,3" is "12,3". The
  // locale's thousands separator is left for the conversion to ignore.
  for (; separators > 1; --separators) {
    if (text.front() == decimal) {
      text.erase(0, 1);
    } else if (text.back() == decimal) {
      text.pop_back();
    } else {
      text.erase(text.find(decimal), 1);
    }
  }
  const Variant number = ConvertToType(5, Variant(std::move(text)));
  // The fallback is the Integer 0.
  return number.numeric_value().value_or(0);
}

Variant RoundValue(const Variant& value, int16_t places) {
  const VarType type = value.type();
  const bool whole = type == VarType::kInteger || type == VarType::kLong;
  const bool fractional =
      type == VarType::kSingle || type == VarType::kDouble || type == VarType::kCurrency;
  if (places < 0 || !(whole || fractional)) return value;
  try {
    std::u16string pattern = u"0";
    if (fractional && places > 0) {
      pattern += u'.';
      pattern.append(static_cast<std::size_t>(places), u'0');
    }
    // Formatting rounds half away from zero on the decimal digits; reading
    // the text back in the locale gives the value's own type again. This is
    // deliberately not the half-to-even rule of the integer conversions.
    const Variant text(FormatValue(value, pattern));
    return ConvertStrict(static_cast<int32_t>(type), text);
  } catch (const std::exception&) {
    return value;
  }
}

bool CompareWithin(float source, float target, float tolerance) {
  const float lower = static_cast<float>(static_cast<double>(target) - tolerance);
  const float upper = static_cast<float>(static_cast<double>(target) + tolerance);
  if (!std::isfinite(lower) || !std::isfinite(upper)) Raise(kErrOverflow);
  return lower <= source && upper >= source;
}

}  // namespace norvik50
