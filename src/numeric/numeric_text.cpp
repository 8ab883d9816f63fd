#include "numeric/numeric_text.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <iterator>
#include <optional>
#include <string>

#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"
#include "numeric/locale_number.h"

namespace norvik50 {

double Val(std::u16string_view source) {
  const Locale& locale = CurrentLocale();
  const char16_t decimal = locale.decimal;
  // The working text lives on the stack for the short texts of daily use.
  char16_t small[64];
  std::u16string large;
  char16_t* text = small;
  if (source.size() > std::size(small)) {
    large.resize(source.size());
    text = large.data();
  }
  std::size_t length = 0, separators = 0;
  std::size_t leading = 0;   // separators before the first other character
  std::size_t trailing = 0;  // separators after the last other character
  for (char16_t c : source) {
    if ((c >= u'0' && c <= u'9') || c == u',' || c == u'.' || c == u'-' || c == u'+') {
      text[length++] = c;
      if (c == decimal) {
        ++separators;
        ++trailing;
        if (separators == length) ++leading;
      } else {
        trailing = 0;
      }
    }
  }
  if (source.empty()) text[length++] = u'0';
  // One decimal separator is kept, as removing them one at a time would
  // leave it: while more than one is left, a leading one goes, else a
  // trailing one, else the first. The leading run goes first (the text keeps
  // its first other character from then on), then the trailing run, then
  // the first ones in order, so the survivor is the last separator not
  // removed from the end: ",5," is "5,", "1,2,3" is "12,3". The locale's
  // thousands separator is left for the conversion to ignore.
  if (separators > 1) {
    const std::size_t from_front = std::min(leading, separators - 1);
    const std::size_t from_back = std::min(trailing, separators - 1 - from_front);
    const std::size_t survivor = separators - 1 - from_back;  // its rank among them
    std::size_t kept = 0, rank = 0;
    for (std::size_t i = 0; i < length; ++i) {
      if (text[i] != decimal || rank++ == survivor) text[kept++] = text[i];
    }
    length = kept;
  }
  // What ConvertToType does for code 5 with a text, without the detour
  // through a Variant; what is no number gives its fallback, 0.
  return LocaleTextToDouble(std::u16string_view(text, length), locale).value_or(0);
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
