#include "core/number_text_digits.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace norvik50 {
namespace {

constexpr uint64_t kTwoTo53 = uint64_t{1} << 53;

// True when `magnitude` is exactly t x 10^k for the odd t ending in 5. Such
// a value is a binary fraction only when the powers of five cancel, which
// leaves small integers to check; everything else is no tie.
bool IsExactly(double magnitude, uint64_t t, int k) {
  if (k >= 0) {
    // t x 5^k is odd, so it must itself fit the 53-bit mantissa.
    uint64_t p = t;
    for (int i = 0; i < k; ++i) {
      if (p >= kTwoTo53) return false;
      p *= 5;
    }
    return p < kTwoTo53 && magnitude == std::ldexp(static_cast<double>(p), k);
  }
  uint64_t q = t;
  for (int i = 0; i < -k; ++i) {
    if (q % 5 != 0) return false;
    q /= 5;
  }
  return q < kTwoTo53 && magnitude == std::ldexp(static_cast<double>(q), k);
}

}  // namespace

SignificantDigits SignificantDigitsOf(double value, int precision) {
  SignificantDigits out;
  out.negative = std::signbit(value) && value != 0;
  const double magnitude = std::fabs(value);
  if (magnitude == 0) {
    out.digits[0] = '0';
    out.count = 1;
    return out;
  }
  // to_chars rounds the exact binary value, ties to even: "d.ddde+XX".
  char text[40];
  const auto result = std::to_chars(text, text + sizeof text, magnitude,
                                    std::chars_format::scientific, precision - 1);
  *result.ptr = '\0';  // room is left: at most 24 characters are written
  const char* p = text;
  for (; p != result.ptr && *p != 'e'; ++p) {
    if (*p != '.') out.digits[out.count++] = *p;
  }
  out.exponent = std::atoi(p + 1);
  // Half to even differs from half away from zero only on an exact tie that
  // was rounded down to an even digit; the digit then goes up, never carrying.
  if ((out.digits[out.count - 1] - '0') % 2 == 0) {
    uint64_t t = 0;
    for (int i = 0; i < out.count; ++i) t = t * 10 + static_cast<uint64_t>(out.digits[i] - '0');
    if (IsExactly(magnitude, t * 10 + 5, out.exponent - out.count)) ++out.digits[out.count - 1];
  }
  while (out.count > 1 && out.digits[out.count - 1] == '0') --out.count;
  return out;
}

}  // namespace norvik50
