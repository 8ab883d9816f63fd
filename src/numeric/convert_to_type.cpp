#include "numeric/convert_to_type.h"

#include <cfloat>
#include <cmath>
#include <exception>
#include <string>

#include "core/number_text.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "numeric/date_parse.h"
#include "numeric/format.h"
#include "numeric/locale_number.h"

namespace norvik50 {
namespace {

constexpr int32_t kErrInvalidUseOfNull = 94;

// A conversion's value or the error it failed with; the hot path (text to
// Double) must not pay for exceptions.
struct Outcome {
  Variant value;
  int32_t error = 0;
};

Outcome Fail(int32_t error) { return Outcome{Variant(), error}; }

// The value as a number for the numeric targets; text is read in the
// locale and kept in decimal form for Currency and Decimal.
struct Number {
  double value = 0;
  std::optional<NumberText> text;
  int32_t error = 0;
};

// `keep_text`: Currency and Decimal want the decimal form of a text.
Number NumberOf(const Variant& v, bool keep_text = false) {
  Number n;
  switch (v.type()) {
    case VarType::kEmpty:
      return n;
    case VarType::kNull:
      n.error = kErrInvalidUseOfNull;
      return n;
    case VarType::kString: {
      if (!keep_text) {
        const std::u16string& s = v.as_string();
        const Locale& locale = CurrentLocale();
        if (auto d = LocaleTextToDouble(s, locale)) {
          n.value = *d;
        } else {
          // Tell an overflow from a text that is no number.
          n.error = ParseLocaleNumber(s, locale) ? kErrOverflow : kErrTypeMismatch;
        }
        return n;
      }
      n.text = ParseLocaleNumber(v.as_string(), CurrentLocale());
      if (!n.text) {
        n.error = kErrTypeMismatch;
      } else if (auto d = NumberTextToDouble(*n.text)) {
        n.value = *d;
      } else {
        n.error = kErrOverflow;
      }
      return n;
    }
    default:
      if (auto d = v.numeric_value()) {
        n.value = *d;
      } else {
        n.error = kErrTypeMismatch;
      }
      return n;
  }
}

// Integer targets round half to even (nearbyint in the default rounding
// mode), as the runtime's CInt and CLng do.
Outcome ToWhole(const Variant& v, double min, double max, VarType type) {
  // True is -1, and a Byte takes its low byte: 255.
  if (type == VarType::kByte && v.type() == VarType::kBoolean && v.as_boolean() == kTrue) {
    return {Variant(uint8_t{255})};
  }
  const Number n = NumberOf(v);
  if (n.error) return Fail(n.error);
  const double r = std::nearbyint(n.value);
  if (!(r >= min && r <= max)) return Fail(kErrOverflow);
  switch (type) {
    case VarType::kInteger:
      return {Variant(static_cast<int16_t>(r))};
    case VarType::kByte:
      return {Variant(static_cast<uint8_t>(r))};
    default:
      return {Variant(static_cast<int32_t>(r))};
  }
}

Outcome ToSingle(const Variant& v) {
  const Number n = NumberOf(v);
  if (n.error) return Fail(n.error);
  const float f = static_cast<float>(n.value);
  if (!std::isfinite(f)) return Fail(kErrOverflow);
  return {Variant(f)};
}

Outcome ToCurrency(const Variant& v) {
  if (v.type() == VarType::kCurrency) return {v};
  if (v.type() == VarType::kDecimal) {
    try {  // overflow is the rare path here, so the exception costs nothing
      return {Variant(Currency::FromDecimal(v.as_decimal()))};
    } catch (const Error&) {
      return Fail(kErrOverflow);
    }
  }
  const Number n = NumberOf(v, true);
  if (n.error) return Fail(n.error);
  if (n.text) {
    if (auto c = NumberTextToCurrency(*n.text)) return {Variant(*c)};
    return Fail(kErrOverflow);
  }
  if (!(std::fabs(n.value) < 1e15)) return Fail(kErrOverflow);  // far past the range
  return {Variant(Currency::FromDouble(n.value))};
}

Outcome ToDecimal(const Variant& v) {
  if (v.type() == VarType::kDecimal) return {v};
  const Number n = NumberOf(v, true);
  if (n.error) return Fail(n.error);
  if (n.text) {
    if (auto d = NumberTextToDecimal(*n.text)) return {Variant(*d)};
    return Fail(kErrOverflow);
  }
  if (v.type() == VarType::kCurrency) {  // exact, four places at most
    if (auto d = Decimal::Parse(v.as_currency().ToString())) return {Variant(*d)};
  }
  if (!(std::fabs(n.value) < 7.9228162514264338e28)) return Fail(kErrOverflow);
  // A Single keeps its own 7 digits: the Single 0.6 is 0.6, not 0.600000023841858.
  if (v.type() == VarType::kSingle) return {Variant(Decimal::FromSingle(v.as_single()))};
  return {Variant(Decimal::FromDouble(n.value))};
}

Outcome ToDate(const Variant& v) {
  if (v.type() == VarType::kDate) return {v};
  if (v.is_string()) {
    if (auto d = ParseDateText(v.as_string(), CurrentLocale())) return {Variant(*d)};
    return Fail(kErrTypeMismatch);
  }
  const Number n = NumberOf(v);
  if (n.error) return Fail(n.error);
  if (!(n.value >= Date::kMinSerial && n.value <= Date::kMaxSerial)) return Fail(kErrOverflow);
  return {Variant(Date{n.value})};
}

Outcome ToText(const Variant& v) {
  const char16_t decimal = CurrentLocale().decimal;
  switch (v.type()) {
    case VarType::kEmpty:
      return {Variant(u"")};
    case VarType::kNull:
      return Fail(kErrInvalidUseOfNull);
    case VarType::kString:
      return {v};
    case VarType::kInteger:
      return {Variant(DoubleToText(v.as_integer(), decimal))};
    case VarType::kLong:
      return {Variant(DoubleToText(v.as_long(), decimal))};
    case VarType::kByte:
      return {Variant(DoubleToText(v.as_byte(), decimal))};
    case VarType::kSingle:
      return {Variant(SingleToText(v.as_single(), decimal))};
    case VarType::kDouble:
      return {Variant(DoubleToText(v.as_double(), decimal))};
    case VarType::kCurrency:
      return {Variant(CurrencyToText(v.as_currency(), decimal))};
    case VarType::kDecimal:
      return {Variant(DecimalToText(v.as_decimal(), decimal))};
    case VarType::kBoolean:
      return {Variant(v.as_boolean() ? u"True" : u"False")};
    case VarType::kDate:
      return {Variant(FormatValue(v, u""))};
    case VarType::kError: {
      const std::string text = "Error " + std::to_string(v.as_error().code);
      return {Variant(std::u16string(text.begin(), text.end()))};
    }
    default:
      return Fail(kErrTypeMismatch);
  }
}

bool EqualsNoCase(std::u16string_view text, std::u16string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char16_t c = text[i];
    if (c >= u'A' && c <= u'Z') c += 32;
    if (c != word[i]) return false;
  }
  return true;
}

Outcome ToBoolean(const Variant& v) {
  if (v.is_string()) {
    std::u16string_view text = v.as_string();
    while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    // The English words always; the German ones as a German system writes them.
    // The date-literal-style "#TRUE#" and "#FALSE#" in any case as well.
    const bool german = CurrentLocale().is_german();
    if (EqualsNoCase(text, u"true") || EqualsNoCase(text, u"#true#") ||
        (german && EqualsNoCase(text, u"wahr"))) {
      return {Variant(true)};
    }
    if (EqualsNoCase(text, u"false") || EqualsNoCase(text, u"#false#") ||
        (german && EqualsNoCase(text, u"falsch"))) {
      return {Variant(false)};
    }
  }
  const Number n = NumberOf(v);
  if (n.error) return Fail(n.error);
  return {Variant(n.value != 0)};
}

Outcome Convert(int32_t var_type, const Variant& value) {
  switch (var_type) {
    case 2:
      return ToWhole(value, -32768, 32767, VarType::kInteger);
    case 3:
      return ToWhole(value, -2147483648.0, 2147483647.0, VarType::kLong);
    case 4:
      return ToSingle(value);
    case 5: {
      const Number n = NumberOf(value);
      if (n.error) return Fail(n.error);
      return {Variant(n.value)};
    }
    case 6:
      return ToCurrency(value);
    case 7:
      return ToDate(value);
    case 8:
      return ToText(value);
    case 11:
      return ToBoolean(value);
    case 14:
      return ToDecimal(value);
    case 17:
      return ToWhole(value, 0, 255, VarType::kByte);
    default:
      return {value};
  }
}

Variant Fallback(int32_t var_type) {
  switch (var_type) {
    case 7:
      return Variant(Date{std::floor(Date::Now().serial)});
    case 8:
      return Variant(u"");
    case 11:
      return Variant(false);
    default:
      return Variant(int16_t{0});
  }
}

}  // namespace

Variant ConvertToType(int32_t var_type, const Variant& value) {
  try {
    Outcome out = Convert(var_type, value);
    if (out.error == 0) return std::move(out.value);
  } catch (const std::exception&) {
    // Any failure inside a conversion ends in the fallback as well.
  }
  return Fallback(var_type);
}

Variant ConvertStrict(int32_t var_type, const Variant& value) {
  Outcome out = Convert(var_type, value);
  if (out.error != 0) Raise(out.error);
  return std::move(out.value);
}

}  // namespace norvik50
