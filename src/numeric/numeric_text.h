// Free text to numbers and numbers to rounded values: the bodies of
// tklVal, tklRound, tklCompare and tklAND.
#ifndef NORVIK50_SRC_NUMERIC_NUMERIC_TEXT_H_
#define NORVIK50_SRC_NUMERIC_NUMERIC_TEXT_H_

#include <cstdint>
#include <string_view>

#include "norvik50/variant.h"

namespace norvik50 {

// The number in a free text: only the characters "0123456789,.-+" are
// kept, in their order; while the locale's decimal separator occurs more
// than once, a leading one is dropped, else a trailing one, else the first;
// the rest is read as a Double in the locale. "" and anything that is then
// no number give 0. German: "EUR 1.234,56" -> 1234.56, "1,2,3" -> 12.3.
// Never raises.
double Val(std::u16string_view source);

// `value` rounded to `places` decimal places, half away from zero on its
// decimal digits (2.5 -> 3, -0.125 with 2 places -> -0.13), in its own
// type. Only Integer, Long (always to whole numbers), Single, Double and
// Currency are rounded, and only for places >= 0; everything else comes
// back unchanged, as does a value that cannot be rounded. Never raises.
Variant RoundValue(const Variant& value, int16_t places);

// Whether `source` lies within [target - tolerance, target + tolerance],
// both bounds rounded to Single and inclusive. Raises overflow (6) when a
// bound is not finite.
bool CompareWithin(float source, float target, float tolerance);

// Whether every bit set in `mask` is set in `value`.
constexpr bool HasAllBits(int32_t value, int32_t mask) { return (value & mask) == mask; }

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_NUMERIC_TEXT_H_
