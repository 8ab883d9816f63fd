// tklVal, rounding, tolerance comparison, bit masks and the rewriting of
// numbers in expression texts, in German and English.
#include <gtest/gtest.h>

#include <cfloat>
#include <limits>
#include <string>

#include "norvik50/encoding.h"
#include "numeric/decimal_chars.h"
#include "numeric/numeric_text.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

TEST(ValTest, FreeTextInBothLocales) {
  struct Case {
    const char16_t* text;
    double german, english;
  } cases[] = {
      {u"EUR 1.234,56", 1234.56, 1.23456},  // English: "," groups, one "." stays
      {u"1,2,3", 12.3, 123},                // German: the first of three commas goes
      {u",5,", 5, 0},                       // German "5,"; English: "," before any digit
      {u"..5", 0, 0.5},                     // English ".5"; German: no digit before "."
      {u"", 0, 0},
      {u"abc", 0, 0},
      {u"-12.5kg", -125, -12.5},
      {u"1-2", 0, 0},  // "1-2" is no number
      {u"$ 1,234.50", 1.2345, 1234.5},
      {u"\"7\"", 7, 7},            // quotes are dropped
      {u"1.2.3,4", 123.4, 12.34},  // English: the first "." goes, "12.3,4"
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      EXPECT_DOUBLE_EQ(Val(c.text), tag[0] == 'd' ? c.german : c.english)
          << tag << " " << ToUtf8(c.text);
    }
  }
}

TEST(RoundTest, HalfAwayFromZeroInTheValuesOwnType) {
  struct Case {
    Variant value;
    int16_t places;
    Variant want;
  } cases[] = {
      {Variant(2.5), 0, Variant(3.0)},
      {Variant(-2.5), 0, Variant(-3.0)},
      {Variant(-0.125), 2, Variant(-0.13)},
      {Variant(0.125), 2, Variant(0.13)},
      {Variant(1.005), 2, Variant(1.01)},  // the decimal digits decide
      {Variant(int32_t{7}), 2, Variant(int32_t{7})},
      {Variant(int16_t{-7}), 3, Variant(int16_t{-7})},
      {Variant(2.675f), 2, Variant(2.68f)},                   // a Single stays a Single
      {Variant(Currency{125}), 2, Variant(Currency{100})},    // 0.0125 -> 0.01
      {Variant(Currency{-150}), 2, Variant(Currency{-200})},  // -0.015 -> -0.02
      {Variant(1234567.891), 1, Variant(1234567.9)},          // no grouping in the way
      {Variant(1.5), -1, Variant(1.5)},                       // negative places: unchanged
      {Variant(u"2.55"), 1, Variant(u"2.55")},                // texts unchanged
      {Variant(Date{1.5}), 0, Variant(Date{1.5})},
      {Variant(uint8_t{3}), 0, Variant(uint8_t{3})},
      {Variant(Decimal{0, 15, 1, false}), 0, Variant(Decimal{0, 15, 1, false})},
      {Variant(true), 0, Variant(true)},
      {Variant(), 0, Variant()},
      {Variant(1e300), 2, Variant(1e300)},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      const Variant out = RoundValue(cases[i].value, cases[i].places);
      EXPECT_EQ(out.type(), cases[i].want.type()) << tag << " case " << i;
      EXPECT_EQ(out.numeric_value(), cases[i].want.numeric_value()) << tag << " case " << i;
      if (out.is_string()) {
        EXPECT_EQ(out.as_string(), cases[i].want.as_string());
      }
    }
  }
}

TEST(RoundTest, ValuesThatCannotBeRoundedComeBackUnchanged) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    // FLT_MAX's 7 digits round up past the Single range when read back.
    const Variant big(FLT_MAX);
    EXPECT_EQ(RoundValue(big, 0).as_single(), FLT_MAX) << tag;
    const Variant inf(std::numeric_limits<double>::infinity());
    EXPECT_EQ(RoundValue(inf, 2).as_double(), std::numeric_limits<double>::infinity()) << tag;
  }
}

TEST(CompareTest, SingleBoundsInclusive) {
  EXPECT_TRUE(CompareWithin(1.05f, 1.0f, 0.05f));  // upper bound in Single is 1.05f
  EXPECT_TRUE(CompareWithin(0.95f, 1.0f, 0.05f));
  EXPECT_FALSE(CompareWithin(1.0500001f, 1.0f, 0.05f));
  EXPECT_FALSE(CompareWithin(1.0f, 1.0f, -0.1f));  // negative tolerance: empty
  for (float v : {0.0f, -3.5f, 1e30f, FLT_MAX, -FLT_MAX, 1e-40f}) {
    EXPECT_TRUE(CompareWithin(v, v, 0.0f)) << v;  // exact equality
  }
  EXPECT_EQ(ErrorOf([] { CompareWithin(0, FLT_MAX, FLT_MAX); }), 6);  // bound overflows
  EXPECT_EQ(ErrorOf([] { CompareWithin(0, std::numeric_limits<float>::infinity(), 1); }), 6);
}

TEST(AndTest, EveryBitOfTheMask) {
  EXPECT_TRUE(HasAllBits(6, 2));
  EXPECT_FALSE(HasAllBits(6, 3));
  EXPECT_TRUE(HasAllBits(0, 0));
  EXPECT_TRUE(HasAllBits(-1, INT32_MIN));
  EXPECT_FALSE(HasAllBits(INT32_MAX, INT32_MIN));
}

TEST(ReplaceDecimalCharsTest, Examples) {
  struct Case {
    const char16_t* source;
    bool german;
    const char16_t* want;
  } cases[] = {
      {u"Betrag > 1.234,5 AND Menge = 3 ", true, u"Betrag > 1234.5 AND Menge = 3 "},
      {u"x = 1,234.5;", false, u"x = 1234.5;"},
      {u"x = 12,5", true, u"x = 12,5"},     // a number at the end stays
      {u"a  =   1,5 ", true, u"a = 1.5 "},  // blanks collapse first
      {u"s = \"1,5\" AND b = 2,5 ", true, u"s = \"1,5\" AND b = 2.5 "},  // quoted stays
      {u"(x = 1,5)", true, u"(x = 1.5)"},
      {u"x IN (1,5, 2,5)", true, u"x IN (1.5, 2.5)"},  // a trailing separator is punctuation
      {u"x = 1.5 ", false, u"x = 1.5 "},
      {u"x = 1a5 ", true, u"x = 1a5 "},  // a letter abandons the number
      // The call is rebuilt with ") " and the text trimmed afterwards, so
      // the blank before "=" doubles and the number ends the text: kept.
      {u"Format(x, \"#,##0.00\") = 1,5 ", true, u"Format(x, \"#.##0.00\")  = 1,5"},
      {u"FORMAT (d, \"a,b\", \"0,0\")", true,
       u"FORMAT (d, \"a,b\", \"0.0\")"},   // last literal only
      {u"format(x)", true, u"format(x)"},  // rebuilt, then trimmed
      {u"", true, u""},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      EXPECT_EQ(ToUtf8(ReplaceDecimalChars(c.source, c.german)), ToUtf8(c.want))
          << tag << " " << ToUtf8(c.source);
    }
  }
}

TEST(ReplaceDecimalCharsTest, LongTextsStopAtThe16BitLimit) {
  testing::ScopedLocale locale("de-DE");
  std::u16string text(40000, u'a');
  text += u" 1,5 ";
  // The number lies past position 32767: it is not reached, nothing breaks.
  EXPECT_EQ(ReplaceDecimalChars(text, true), text);
  const std::u16string front = u"x = 1,5 " + std::u16string(40000, u'b');
  EXPECT_EQ(ReplaceDecimalChars(front, true).substr(0, 8), u"x = 1.5 ");
}

}  // namespace
}  // namespace norvik50
