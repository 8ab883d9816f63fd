// Argument conversion of the dispatch, and the text form of numbers it uses.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/locale.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

int ErrorOf(const Variant& v, VarType t) {
  return testing::ErrorOf([&] { CoerceTo(v, t); });
}

TEST(NumberTextTest, FifteenDigitsAndTheExponentThresholds) {
  struct Case {
    double value;
    const char16_t* text;
  } cases[] = {
      // Fixed while it needs at most 15 digits before and after the point.
      {1e15, u"1E+15"},
      {999999999999999.0, u"999999999999999"},
      {999999999999999.6, u"1E+15"},  // rounding reaches the sixteenth digit
      {1234567890123456.0, u"1.23456789012346E+15"},
      {1e-5, u"0.00001"},
      {0.000056789, u"0.000056789"},
      {5.6789e-11, u"0.000000000056789"},  // fifteen places
      {5.6789e-12, u"5.6789E-12"},         // sixteen places
      {1e-15, u"0.000000000000001"},
      {1.5e-15, u"1.5E-15"},
      {4.94065645841247e-324, u"4.94065645841247E-324"},
      {1e100, u"1E+100"},  // three exponent digits when needed
      {0.0001, u"0.0001"},
      {123456789012345.0, u"123456789012345"},
      {1.0 / 3, u"0.333333333333333"},
      {0.1 + 0.2, u"0.3"},
      // An exact tie on the sixteenth digit goes away from zero (half to
      // even would keep ...344).
      {1234567890123445.0, u"1.23456789012345E+15"},
      {-1234567890123445.0, u"-1.23456789012345E+15"},
      {-2.5, u"-2.5"},
      {-0.0, u"0"},
  };
  for (const Case& c : cases) EXPECT_EQ(DoubleToText(c.value, u'.'), c.text) << c.value;
  EXPECT_EQ(DoubleToText(1234.5, u','), u"1234,5");
  EXPECT_EQ(DoubleToText(1e-5, u','), u"0,00001");
  struct SingleCase {
    float value;
    const char16_t* text;
  } singles[] = {
      {0.1f, u"0.1"},
      {654322.25f, u"654322.3"},  // an exact tie: away from zero
      {-654322.25f, u"-654322.3"},
      {654322.75f, u"654322.8"},
      {0.000005f, u"0.000005"},  // six places, fixed
      {1.5e-7f, u"1.5E-07"},     // eight places
      {1234567.0f, u"1234567"},
      {1e7f, u"1E+07"},  // eight digits before the point
      {1e8f, u"1E+08"},
      {3.4028235e38f, u"3.402823E+38"},
  };
  for (const SingleCase& c : singles) EXPECT_EQ(SingleToText(c.value, u'.'), c.text) << c.value;
  EXPECT_EQ(CurrencyToText(Currency{-12345}, u','), u"-1,2345");
}

TEST(NumberTextTest, PlainNumbers) {
  EXPECT_EQ(ParsePlainNumber(u" 12.5 ", u'.'), 12.5);
  EXPECT_EQ(ParsePlainNumber(u"12,5", u','), 12.5);
  EXPECT_EQ(ParsePlainNumber(u"-1e3", u'.'), -1000);
  EXPECT_EQ(ParsePlainNumber(u"&HFF", u'.'), 255);
  EXPECT_EQ(ParsePlainNumber(u"&HFFFFFFFF", u'.'), -1);  // a 32-bit pattern
  EXPECT_EQ(ParsePlainNumber(u"&O17", u'.'), 15);
  for (const char16_t* bad : {u"", u"  ", u"abc", u"1 2", u"inf", u"nan", u"0x10", u"12,5", u"&H",
                              u"&H1FFFFFFFF", u"1e999"}) {
    EXPECT_FALSE(ParsePlainNumber(bad, u'.')) << ToUtf8(bad);
  }
}

// The core coercion follows the same value rules as the full conversion:
// the digits a type really has, never a detour that loses or invents some.
TEST(CoercionTest, ExactBetweenTheScaledTypes) {
  // True is -1; a Byte keeps its low byte.
  EXPECT_EQ(CoerceTo(Variant(true), VarType::kByte).as_byte(), 255);
  EXPECT_EQ(CoerceTo(Variant(false), VarType::kByte).as_byte(), 0);
  // A Single's 7 digits, not the 15 of its widened double (0.600000023841858).
  EXPECT_EQ(CoerceTo(Variant(0.6f), VarType::kDecimal).as_decimal().ToString(), "0.6");
  // A Decimal above 2^53 / 10,000 reaches Currency with every digit.
  const Decimal big = *Decimal::Parse("922337203685476");
  EXPECT_EQ(CoerceTo(Variant(big), VarType::kCurrency).as_currency().ToString(), "922337203685476");
  EXPECT_EQ(ErrorOf(Variant(*Decimal::Parse("922337203685478")), VarType::kCurrency), 6);
  // And back: the Currency's four places, exactly.
  const Currency c = *Currency::Parse("922337203685477.5807");
  EXPECT_EQ(CoerceTo(Variant(c), VarType::kDecimal).as_decimal().ToString(),
            "922337203685477.5807");
}

TEST(CoercionTest, NumbersRoundHalfToEvenAndOverflow) {
  EXPECT_EQ(CoerceTo(Variant(2.5), VarType::kInteger).as_integer(), 2);
  EXPECT_EQ(CoerceTo(Variant(3.5), VarType::kInteger).as_integer(), 4);
  EXPECT_EQ(CoerceTo(Variant(-2.5), VarType::kLong).as_long(), -2);
  EXPECT_EQ(CoerceTo(Variant(255.4), VarType::kByte).as_byte(), 255);
  EXPECT_EQ(ErrorOf(Variant(32767.5), VarType::kInteger), 6);
  EXPECT_EQ(ErrorOf(Variant(-1), VarType::kByte), 6);
  EXPECT_EQ(ErrorOf(Variant(1e300), VarType::kSingle), 6);
  EXPECT_EQ(ErrorOf(Variant(1e300), VarType::kCurrency), 6);
  EXPECT_EQ(ErrorOf(Variant(1e10), VarType::kDate), 6);
  EXPECT_EQ(CoerceTo(Variant(true), VarType::kInteger).as_integer(), -1);
  EXPECT_EQ(CoerceTo(Variant(7), VarType::kBoolean).as_boolean(), -1);
  EXPECT_EQ(CoerceTo(Variant(), VarType::kLong).as_long(), 0);  // Empty is 0
}

TEST(CoercionTest, TextBothWays) {
  testing::ScopedLocale german("de-DE");
  EXPECT_EQ(CoerceTo(Variant(u"12,5"), VarType::kDouble).as_double(), 12.5);
  EXPECT_EQ(CoerceTo(Variant(1234.5), VarType::kString).as_string(), u"1234,5");
  EXPECT_EQ(CoerceTo(Variant(u"1,5"), VarType::kCurrency).as_currency().scaled, 15000);
  EXPECT_EQ(CoerceTo(Variant(u"true"), VarType::kBoolean).as_boolean(), -1);
  EXPECT_EQ(CoerceTo(Variant(false), VarType::kString).as_string(), u"False");
  EXPECT_EQ(CoerceTo(Variant(u"2024-03-05"), VarType::kDate).as_date().serial, 45356.0);
  EXPECT_EQ(CoerceTo(Variant(Date{45356.5}), VarType::kString).as_string(), u"05.03.2024 12:00:00");
  EXPECT_EQ(CoerceTo(Variant(), VarType::kString).as_string(), u"");
  EXPECT_EQ(ErrorOf(Variant(u"zwölf"), VarType::kLong), 13);
  EXPECT_EQ(ErrorOf(Variant::Null(), VarType::kString), 94);
  EXPECT_EQ(ErrorOf(Variant(SafeArray()), VarType::kString), 13);
  EXPECT_EQ(ErrorOf(Variant(u"x"), VarType::kArray), 13);
}

}  // namespace
}  // namespace norvik50

namespace norvik50 {
namespace {

TEST(CalendarNamesTest, GermanAndEnglishAsWindowsWritesThem) {
  const CivilDateTime tuesday{2024, 3, 5, 0, 0, 0};
  struct Case {
    const char* tag;
    const char16_t* text;
  } cases[] = {
      // "Mrz" and "Di" where ICU would write "Mär." and "Di.".
      {"de-DE", u"Di Dienstag, 5. Mrz M\u00E4rz 2024"},
      {"de-AT", u"Di Dienstag, 5. Mrz M\u00E4rz 2024"},
      {"en-US", u"Tue Tuesday, 5. Mar March 2024"},
      // "Sep", not ICU's British "Sept".
      {"en-GB", u"Tue Tuesday, 5. Mar March 2024"},
  };
  for (const Case& c : cases) {
    const Locale locale = LocaleForTag(c.tag);
    EXPECT_EQ(RenderLocalePattern(u"ddd dddd, d. MMM MMMM yyyy", tuesday, locale), c.text) << c.tag;
  }
  EXPECT_EQ(NamesFor(LocaleForTag("en-GB")).short_months[8], u"Sep");
  EXPECT_EQ(NamesFor(LocaleForTag("de-DE")).short_months[9], u"Okt");
}

}  // namespace
}  // namespace norvik50
