// Randomised comparisons of the Format engine and the number reading with
// forms computed independently in integer arithmetic, in both locales.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/locale.h"
#include "numeric/convert_to_type.h"
#include "numeric/decimal_digits.h"
#include "numeric/format.h"
#include "numeric/numeric_text.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

// The text of thousandths/1000 rounded half away from zero to two places,
// with `decimal` and, when `group`, `thousands` every three digits.
std::string Reference(int64_t thousandths, bool group, char decimal, char thousands) {
  const bool negative = thousandths < 0;
  const uint64_t magnitude = static_cast<uint64_t>(negative ? -thousandths : thousandths);
  const uint64_t cents = magnitude / 10 + (magnitude % 10 >= 5 ? 1 : 0);
  std::string whole = std::to_string(cents / 100);
  if (group) {
    for (int i = static_cast<int>(whole.size()) - 3; i > 0; i -= 3) {
      whole.insert(static_cast<std::size_t>(i), 1, thousands);
    }
  }
  char fraction[4];
  std::snprintf(fraction, sizeof fraction, "%02u", static_cast<unsigned>(cents % 100));
  return (negative ? "-" : "") + whole + decimal + fraction;
}

TEST(FormatRandomTest, TwoPlacesAgainstIntegerArithmetic) {
  std::mt19937_64 rng(5);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const char decimal = tag[0] == 'd' ? ',' : '.';
    const char thousands = tag[0] == 'd' ? '.' : ',';
    for (int i = 0; i < 20000; ++i) {
      // Up to twelve digits: the Double's shortest form is the decimal itself.
      const int64_t thousandths = static_cast<int64_t>(rng() % 2000000000000ull) - 1000000000000ll;
      const double value = static_cast<double>(thousandths) / 1000;
      ASSERT_EQ(ToUtf8(FormatValue(Variant(value), u"0.00")),
                Reference(thousandths, false, decimal, thousands))
          << tag << " " << value;
      ASSERT_EQ(ToUtf8(FormatValue(Variant(value), u"#,##0.00")),
                Reference(thousandths, true, decimal, thousands))
          << tag << " " << value;
    }
  }
}

TEST(FormatRandomTest, WrittenTextReadsBackInTheLocale) {
  std::mt19937_64 rng(9);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (int i = 0; i < 20000; ++i) {
      const int64_t cents = static_cast<int64_t>(rng() % 200000000000ull) - 100000000000ll;
      const double value = static_cast<double>(cents) / 100;
      // Grouped or not, the locale reads back the Double that was written.
      const std::u16string grouped = FormatValue(Variant(value), u"#,##0.00");
      ASSERT_EQ(ConvertToType(5, Variant(grouped)).as_double(), value) << tag << " " << value;
      ASSERT_EQ(Val(FormatValue(Variant(value), u"0.00")), value) << tag << " " << value;
      // And the plain text form reads back exactly for any Double.
      const double any =
          std::ldexp(static_cast<double>(rng() >> 11), static_cast<int>(rng() % 200) - 150);
      const std::u16string text = ConvertToType(8, Variant(any)).as_string();
      const double back = ConvertToType(5, Variant(text)).as_double();
      // 15 significant digits: equal within one part in 10^14.
      ASSERT_NEAR(back, any, std::abs(any) * 1e-14) << tag << " " << ToUtf8(text);
    }
  }
}

TEST(DecimalDigitsTest, RoundingCarriesAndSigns) {
  struct Case {
    double value;
    int64_t places;
    const char* digits;
    int64_t point;
  } cases[] = {
      {9.995, 2, "1", 2},     // 10.00
      {0.05, 0, "", 0},       // 0.05 -> 0
      {0.5, 0, "1", 1},       // half away from zero
      {1234.5, -2, "12", 4},  // to hundreds: 1200
      {1250.0, -2, "13", 4},  // 1300
      {0.000123456, 5, "12", -3},
  };
  for (const Case& c : cases) {
    DecimalDigits d = DigitsOfDouble(c.value);
    RoundToPlaces(d, c.places);
    EXPECT_EQ(d.digits, c.digits) << c.value;
    EXPECT_EQ(d.point, c.point) << c.value;
  }
  DecimalDigits negative = DigitsOfDouble(-0.001);
  RoundToPlaces(negative, 2);
  EXPECT_TRUE(negative.is_zero());
  EXPECT_TRUE(negative.negative);                    // the sign outlives the digits
  EXPECT_EQ(DigitsOfDouble(0.1 + 0.2).digits, "3");  // 15 digits: no binary tail
  EXPECT_EQ(DigitsOfSingle(0.1f).digits, "1");
  // Currency keeps all its digits, beyond the 15 of a Double.
  const DecimalDigits currency = DigitsOfCurrency(Currency{-922337203685477580});
  EXPECT_EQ(currency.digits, "92233720368547758");
  EXPECT_EQ(currency.point, 14);
  EXPECT_TRUE(currency.negative);
  EXPECT_EQ(DigitsOfDecimal(*Decimal::Parse("-0.0500")).digits, "5");
  EXPECT_EQ(DigitsOfDecimal(*Decimal::Parse("-0.0500")).point, -1);
}

}  // namespace
}  // namespace norvik50
