// Hexadecimal text and 32-bit integers, and the four-character long string.
//
// Hexadecimal text is read from the left until the first character that is
// not a hexadecimal digit (either case); no digits read as 0. The result is
// a 32-bit signed integer: eight digits with the top bit set are negative,
// and more than eight significant digits (leading zeros do not count)
// overflow. Characters stand for bytes through Windows-1252 (a character
// the code page lacks counts as "?", as the best-fit conversion writes it).
#ifndef NORVIK50_SRC_NUMERIC_RADIX_H_
#define NORVIK50_SRC_NUMERIC_RADIX_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "norvik50/variant.h"

namespace norvik50 {

// Shared entry point: the 32-bit integer that `value` stands for in
// hexadecimal. A text is hexadecimal digits ("FF" is 255, "FFFFFFFF" is
// -1; a prefix such as "&H" reads as 0), except that a text beginning with
// "x" or "X" holds raw bytes in little-endian order ("x" followed by the
// characters 1 and 2 is 513). Any other value is first rounded to a Long
// (half to even) and taken in its 32-bit two's-complement form. Never
// raises: an overflow or a value without a hexadecimal form gives 0.
int32_t HexTextToLong(const Variant& value);

// The hexadecimal digits at the start of `text` as a 32-bit pattern;
// nullopt when more than eight significant digits would be read.
std::optional<int32_t> ParseHexPrefix(std::u16string_view text);

// Upper-case hexadecimal form of a 32-bit value without leading zeros
// (negative values give their eight-digit two's complement).
std::u16string HexOf(int32_t value);

// Hexadecimal text of up to 14 digits to a Double: the last six digits are
// the low part, the digits before them the high part (times 16777216).
// Every "&" and upper-case "H" is removed first (a lower-case "h" ends the
// digits). Raises overflow (6) for a high part of more than eight
// significant digits.
double Hex2Dbl(std::u16string_view value);

// The inverse of Hex2Dbl for values up to the 32-bit high part: the high
// part's digits followed by the low part's six, or the low part alone when
// the high part is 0 or negative (so a negative value keeps only its low
// 24 bits). Padded on the left with "0" to min_length; never cut. Raises
// overflow (6) when a part does not fit a Long (also for NaN and infinity).
std::u16string Dbl2Hex(double value, int16_t min_length);

// The four byte characters of `value`, most significant first. Raises
// invalid argument (5) for a negative value.
std::u16string Lng2Str(int32_t value);

// The inverse of Lng2Str: byte(1) * 16777216 + byte(2) * 65536 + byte(3) *
// 256 + byte(4), evaluated left to right. Raises overflow (6) when the
// first byte is 128 or more and invalid argument (5) when a byte is
// missing (a text shorter than four characters); later characters are not
// read.
int32_t Str2Lng(std::u16string_view source);

}  // namespace norvik50

#endif  // NORVIK50_SRC_NUMERIC_RADIX_H_
