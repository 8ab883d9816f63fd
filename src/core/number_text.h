// Numbers and dates as the host runtime writes them when it turns a value
// into text without a pattern (CStr): 15 significant digits for a Double,
// 7 for a Single, the locale's decimal separator, the exponent form from
// 1E+15 up and below 1E-04.
#ifndef NORVIK50_SRC_CORE_NUMBER_TEXT_H_
#define NORVIK50_SRC_CORE_NUMBER_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

#include "norvik50/values.h"

namespace norvik50 {

std::u16string DoubleToText(double value, char16_t decimal);
std::u16string SingleToText(float value, char16_t decimal);
std::u16string CurrencyToText(Currency value, char16_t decimal);
std::u16string DecimalToText(const Decimal& value, char16_t decimal);
// The locale's short date, and the time when it is not midnight.
std::u16string DateToText(Date value);

// A plain numeric text: blanks around it, a sign, digits with the locale's
// decimal separator (or '.'), an exponent, or "&H"/"&O" radix forms.
// nullopt when the text is not such a number.
std::optional<double> ParsePlainNumber(std::u16string_view text, char16_t decimal);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_NUMBER_TEXT_H_
