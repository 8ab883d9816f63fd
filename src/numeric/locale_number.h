// Numbers typed as text in the current locale: the reading the host runtime
// applies when a text becomes a number (CDbl, CCur, IsNumeric).
//
// The locale's decimal separator is the point; its thousands separator is
// accepted anywhere after the first digit and ignored (German "1.234,56" is 1234.56; English
// "1,234.56" is 1234.56 and "12,5" is 125). Blanks around the number, one sign before or after it,
// brackets for a negative amount, the locale's currency symbol at either end
// and an exponent (E or D) are accepted, as are the radix forms "&H1F" and
// "&O17" (32-bit patterns: "&HFFFFFFFF" is -1).
#ifndef NORVIK50_SRC_NUMERIC_LOCALE_NUMBER_H_
#define NORVIK50_SRC_NUMERIC_LOCALE_NUMBER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/locale.h"
#include "norvik50/values.h"

namespace norvik50 {

// A number read from text, still in decimal form so that Currency and
// Decimal can take it without a detour through binary floating point.
struct NumberText {
  bool negative = false;
  // ASCII digits with at most one '.', no sign: "1234.56", ".5", "12.".
  std::string mantissa;
  int64_t exponent = 0;  // power of ten from an exponent part
  // Set for the radix forms; mantissa is then empty.
  std::optional<int32_t> radix_value;
};

// The number `text` holds in `locale`, or nullopt when it is not a number.
std::optional<NumberText> ParseLocaleNumber(std::u16string_view text, const Locale& locale);

// The Double nearest to `number`; nullopt when it lies beyond the Double
// range (an overflow). Values too small for a Double become 0.
std::optional<double> NumberTextToDouble(const NumberText& number);

// The exact Currency for `number` when it has at most four decimal places
// and no exponent; otherwise the Currency of its Double (half to even at
// the fourth place). nullopt on overflow.
std::optional<Currency> NumberTextToCurrency(const NumberText& number);

// The exact Decimal for a number without exponent of up to 28 places,
// otherwise the Decimal of its Double. nullopt on overflow.
std::optional<Decimal> NumberTextToDecimal(const NumberText& number);

// The Double that `text` holds in `locale` (or the current locale),
// nullopt when it is not a number or overflows.
std::optional<double> LocaleTextToDouble(std::u16string_view text, const Locale& locale);
std::optional<double> LocaleTextToDouble(std::u16string_view text);

// Whether `text` is a number in the current locale (the runtime's
// IsNumeric for a text).
bool IsLocaleNumeric(std::u16string_view text);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_LOCALE_NUMBER_H_
