// A value's decimal digits, the form in which the Format engine rounds.
//
// Formatting rounds half away from zero on the digits a reader sees, never
// on the binary expansion of a Double: 2.675 is stored as 2.67499999...,
// yet it is "2.675" to the user and "2.68" with two places. So a Double
// enters as its shortest round-trip digits, cut to the 15 significant
// digits the runtime shows (7 for a Single); Currency, Decimal and the
// integer types enter exactly.
#ifndef NORVIK50_SRC_NUMERIC_DECIMAL_DIGITS_H_
#define NORVIK50_SRC_NUMERIC_DECIMAL_DIGITS_H_

#include <cstdint>
#include <string>

#include "norvik50/values.h"

namespace norvik50 {

// value = (negative ? -1 : 1) * 0.DIGITS * 10^point. `digits` has no
// leading or trailing zeros; zero is the empty string.
struct DecimalDigits {
  bool negative = false;
  std::string digits;
  int64_t point = 0;

  bool is_zero() const noexcept { return digits.empty(); }
  // The integer part (digits left of the point, "" for none) and the
  // fraction part with exactly `places` digits (zero padded).
  std::string IntegerPart() const;
  std::string FractionPart(int64_t places) const;
};

// For a finite Double (15 significant digits) and a finite Single (7).
DecimalDigits DigitsOfDouble(double value);
DecimalDigits DigitsOfSingle(float value);
DecimalDigits DigitsOfInteger(int64_t value);
DecimalDigits DigitsOfCurrency(Currency value);
DecimalDigits DigitsOfDecimal(const Decimal& value);

// Rounds half away from zero so that at most `places` digits follow the
// point (`places` may be negative: -2 rounds to hundreds). The sign stays,
// also when the result is zero.
void RoundToPlaces(DecimalDigits& number, int64_t places);
// Rounds half away from zero to at most `count` (>= 1) significant digits.
void RoundToSignificant(DecimalDigits& number, int64_t count);

// Multiplies by 10^shift exactly (percent, thousands scaling).
inline void ShiftPoint(DecimalDigits& number, int64_t shift) {
  if (!number.is_zero()) number.point += shift;
}

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_DECIMAL_DIGITS_H_
