// Randomised checks of the two conversions that work on a value's binary
// form: Double and Single to text, and Double to Currency. Each result is
// compared with a reference computed independently from the exact binary
// value: the full decimal expansion for text, extended precision for
// Currency.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "core/number_text.h"
#include "norvik50/encoding.h"
#include "norvik50/values.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

constexpr int kCount = 100000;

// The exact decimal expansion of `value` (glibc prints every digit of the
// binary value when asked for enough), cut to `precision` significant
// digits with ties away from zero, then written fixed or with an exponent
// by counting the digits each form needs.
std::string ReferenceText(double value, int precision) {
  if (value == 0) return "0";
  static char exact[1200];
  std::snprintf(exact, sizeof exact, "%.1080e", std::fabs(value));
  std::string digits;
  const char* p = exact;
  for (; *p != 'e'; ++p) {
    if (*p != '.') digits.push_back(*p);
  }
  int exponent = std::atoi(p + 1);
  // Every digit after the cut counts: "5000..." is the tie, anything at or
  // above "5" goes up, which is half away from zero on the exact value.
  const bool up = digits[static_cast<std::size_t>(precision)] >= '5';
  digits.resize(static_cast<std::size_t>(precision));
  if (up) {
    int i = precision - 1;
    while (i >= 0 && digits[static_cast<std::size_t>(i)] == '9')
      digits[static_cast<std::size_t>(i--)] = '0';
    if (i < 0) {
      digits.insert(digits.begin(), '1');
      digits.pop_back();
      ++exponent;
    } else {
      ++digits[static_cast<std::size_t>(i)];
    }
  }
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  const std::string sign = value < 0 ? "-" : "";
  std::string fixed;
  if (exponent >= 0) {
    fixed = digits;
    if (fixed.size() < static_cast<std::size_t>(exponent) + 1) fixed.resize(exponent + 1, '0');
    if (digits.size() > static_cast<std::size_t>(exponent) + 1) fixed.insert(exponent + 1, ".");
  } else {
    fixed = "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  }
  const std::size_t point = fixed.find('.');
  const std::size_t before = point == std::string::npos ? fixed.size() : point;
  const std::size_t after = point == std::string::npos ? 0 : fixed.size() - point - 1;
  if (before <= static_cast<std::size_t>(precision) &&
      after <= static_cast<std::size_t>(precision)) {
    return sign + fixed;
  }
  std::string mantissa = digits.substr(0, 1);
  if (digits.size() > 1) mantissa += "." + digits.substr(1);
  char tail[16];
  std::snprintf(tail, sizeof tail, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
  return sign + mantissa + tail;
}

// Doubles from every corner: raw bit patterns, short decimals (which hit
// exact ties and the fixed/exponent boundary), integers around 2^53, and
// values next to powers of ten.
double RandomDouble(std::mt19937_64& rng, int kind) {
  switch (kind % 5) {
    case 0: {
      double v;
      const uint64_t bits = rng();
      std::memcpy(&v, &bits, sizeof v);
      return std::isfinite(v) ? v : 1.5;
    }
    case 1: {  // a few digits at a decimal position from 1E-20 to 1E+20
      const double digits = static_cast<double>(rng() % 100000);
      return digits * std::pow(10.0, static_cast<int>(rng() % 41) - 20) / 100;
    }
    case 2: {  // integers with 15 to 17 digits, many of them exact ties
      const uint64_t base = 100000000000000ull + rng() % 9900000000000000000ull;
      return static_cast<double>(base - base % 10 + 5 * (rng() % 2));
    }
    case 3: {  // a neighbour of a power of ten
      const double p = std::pow(10.0, static_cast<int>(rng() % 40) - 20);
      const int steps = static_cast<int>(rng() % 5) - 2;
      double v = p;
      for (int i = 0; i < std::abs(steps); ++i) v = std::nextafter(v, steps < 0 ? 0.0 : 1e300);
      return v;
    }
    default: {  // a binary fraction: m / 2^k, exact ties in plenty
      const double m = static_cast<double>(rng() % (1ull << 40));
      return std::ldexp(m, -static_cast<int>(rng() % 30)) * (rng() % 2 ? 1 : -1);
    }
  }
}

TEST(NumberTextRandomTest, DoublesMatchTheExactExpansion) {
  std::mt19937_64 rng(20240305);
  for (int i = 0; i < kCount; ++i) {
    const double v = RandomDouble(rng, i);
    const std::string want = ReferenceText(v, 15);
    const std::string got = ToUtf8(DoubleToText(v, u'.'));
    ASSERT_EQ(got, want) << std::hexfloat << v;
  }
}

TEST(NumberTextRandomTest, SinglesMatchTheExactExpansion) {
  std::mt19937_64 rng(19700102);
  int tested = 0;
  for (int i = 0; tested < kCount; ++i) {
    float f = static_cast<float>(RandomDouble(rng, i));
    if (i % 5 == 0) {  // raw Single bit patterns as well
      const uint32_t bits = static_cast<uint32_t>(rng());
      std::memcpy(&f, &bits, sizeof f);
    }
    if (!std::isfinite(f)) continue;
    ++tested;
    const std::string want = ReferenceText(static_cast<double>(f), 7);
    const std::string got = ToUtf8(SingleToText(f, u'.'));
    ASSERT_EQ(got, want) << std::hexfloat << f;
  }
}

// The reference: the product in x87 extended precision is exact (a 53-bit
// mantissa times 10,000 needs 67 bits, 14 of them trailing zeros), and
// nearbyintl rounds it half to even.
static_assert(LDBL_MANT_DIG >= 64, "the Currency reference needs extended precision");

TEST(CurrencyRandomTest, DoublesScaleTheirBinaryValue) {
  std::mt19937_64 rng(922337203);
  const long double limit = 9223372036854775807.0L;
  int overflows = 0;
  for (int i = 0; i < kCount; ++i) {
    double v;
    switch (i % 4) {
      case 0:  // amounts with a fifth decimal: ties in decimal, not in binary
        v = static_cast<double>(static_cast<int64_t>(rng() % 2000000000000ull) - 1000000000000) /
            100000;
        break;
      case 1:  // binary fractions near the fourth decimal: exact ties
        v = std::ldexp(static_cast<double>(rng() % (1ull << 52)), -static_cast<int>(rng() % 60));
        break;
      case 2:  // the whole range and a little past it
        v = std::ldexp(static_cast<double>(rng() % (1ull << 53)),
                       static_cast<int>(rng() % 60) - 50);
        break;
      default: {  // raw bit patterns, mostly far outside
        const uint64_t bits = rng();
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v)) v = 0.5;
        break;
      }
    }
    if (rng() % 2) v = -v;
    const long double exact = std::nearbyintl(static_cast<long double>(v) * 10000.0L);
    if (exact > limit || exact < -limit - 1) {
      ASSERT_EQ(testing::ErrorOf([&] { Currency::FromDouble(v); }), 6) << std::hexfloat << v;
      ++overflows;
      continue;
    }
    ASSERT_EQ(Currency::FromDouble(v).scaled, static_cast<int64_t>(exact)) << std::hexfloat << v;
  }
  EXPECT_GT(overflows, 100);  // the range edge was reached
  EXPECT_LT(overflows, kCount / 2);
}

}  // namespace
}  // namespace norvik50
