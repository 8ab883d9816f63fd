// A binary floating-point value cut to a number of significant decimal
// digits the way the runtime writes numbers: the exact binary value is
// rounded, and a value lying exactly halfway goes away from zero (a Single
// 654322.25 to 7 digits is 654322.3, not the 654322.2 of half-to-even).
// Text conversion and Decimal conversion share it so both agree digit for
// digit.
#ifndef NORVIK50_SRC_CORE_NUMBER_TEXT_DIGITS_H_
#define NORVIK50_SRC_CORE_NUMBER_TEXT_DIGITS_H_

namespace norvik50 {

struct SignificantDigits {
  char digits[20];   // '0'..'9', no trailing zeros; "0" for zero
  int count = 0;     // digits used, 1..17
  int exponent = 0;  // the value is d.ddd x 10^exponent
  bool negative = false;
};

// `value` (finite) rounded to `precision` (1..17) significant digits.
SignificantDigits SignificantDigitsOf(double value, int precision);

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_NUMBER_TEXT_DIGITS_H_
