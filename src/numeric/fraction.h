// A Single as a fraction with a small denominator (tklBruchrechnung).
#ifndef NORVIK50_SRC_NUMERIC_FRACTION_H_
#define NORVIK50_SRC_NUMERIC_FRACTION_H_

#include <cstdint>

namespace norvik50 {

// Sets numerator/denominator to a fraction for `value`, trying the
// denominators 2 to 64 in turn (1 never):
//  - exactly 1.0 leaves 0/0 (callers read 0/0 as "one");
//  - the first denominator i for which value * i, rounded to Single, equals
//    the floor of the exact product is taken, with the product rounded half
//    to even as numerator (0.5 -> 1/2, 2.0 -> 4/2, 0 -> 0/2);
//  - otherwise the denominator whose multiple has the smallest fractional
//    part (the first on a tie) with the floor of the product as numerator.
// Floating-point faults (a numerator beyond a Long, NaN) end it quietly
// with what was set. Never raises.
void ApproximateFraction(float value, int32_t& numerator, int32_t& denominator);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_FRACTION_H_
