// SQL date, number and filter literals, in German and English.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "norvik50/encoding.h"
#include "numeric/format.h"
#include "numeric/sql_literals.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

Variant At(int y, int mo, int d, int h = 0, int mi = 0, int s = 0) {
  return Variant(Date::FromCivil({y, mo, d, h, mi, s}));
}

// Every case holds in both locales: the literals never use the locale's
// separators.
TEST(SqlDateTest, BothDialectsInBothLocales) {
  struct Case {
    Variant value;
    bool server;
    const char16_t* want;
  } cases[] = {
      {At(2024, 3, 5, 14, 7, 9), true, u"CONVERT(DATETIME, '2024-03-05 14:07:09', 102)"},
      {At(2024, 3, 5), true, u"CONVERT(DATETIME, '2024-03-05 00:00:00', 102)"},  // midnight shows
      {At(2024, 3, 5), false, u"#2024/03/05#"},
      {At(2024, 3, 5, 14, 7, 9), false, u"#2024/03/05 14:07:09#"},
      {At(2024, 3, 5, 12), false, u"#2024/03/05 12:00:00#"},  // x.5 rounds to even: differs
      {Variant(45356.0), false, u"#2024/03/05#"},             // a number is a serial date
      {Variant(u"2024-03-05 14:07:09"), true,
       u"CONVERT(DATETIME, '2024-03-05 14:07:09', 102)"},  // server: the text formatted
      {Variant(u"abc"), true, u"CONVERT(DATETIME, 'abc', 102)"},
      // The calendar's first day keeps its times (their serials lie below
      // that day's midnight).
      {At(100, 1, 1, 4), true, u"CONVERT(DATETIME, '0100-01-01 04:00:00', 102)"},
      {At(100, 1, 1, 4), false, u"#0100/01/01 04:00:00#"},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      EXPECT_EQ(ToUtf8(SqlDate(c.value, c.server)), ToUtf8(c.want)) << tag;
    }
  }
}

TEST(SqlDateTest, DesktopDialectRaisesWithoutFallback) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    // A date written as text is no number: type mismatch, no fallback.
    EXPECT_EQ(ErrorOf([] { SqlDate(Variant(u"2024-03-05"), false); }), 13) << tag;
    EXPECT_EQ(ErrorOf([] { SqlDate(Variant::Null(), false); }), 94) << tag;
    EXPECT_EQ(ErrorOf([] { SqlDate(Variant(1e12), false); }), 6) << tag;
    // A numeric text passes the checks and becomes today's date.
    const std::u16string today =
        FormatValue(Variant(Date{std::floor(Date::Now().serial)}), u"\\#yyyy\\/mm\\/dd\\#");
    EXPECT_EQ(SqlDate(Variant(u"5"), false), today) << tag;
  }
}

TEST(SqlDoubleTest, PointInEveryLocale) {
  struct Case {
    Variant value;
    const char16_t* want;
  } cases[] = {
      {Variant(1234.5), u"1234.5"},
      {Variant(0.1), u"0.1"},
      {Variant(1e20), u"1E+20"},
      {Variant(-2.5e-7), u"-0.00000025"},  // fixed up to fifteen places
      {Variant(-2.5e-17), u"-2.5E-17"},
      {Variant(u"abc"), u"0"},
      {Variant::Null(), u"0"},
      {Variant(), u"0"},
      {Variant(Currency{12345}), u"1.2345"},
      {Variant(true), u"-1"},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      EXPECT_EQ(ToUtf8(SqlDouble(c.value)), ToUtf8(c.want)) << tag;
    }
    // Text is read in the locale before it is written with ".".
    EXPECT_EQ(SqlDouble(Variant(u"1,5")), tag[0] == 'd' ? u"1.5" : u"15") << tag;
  }
}

TEST(SqlFilterTest, PairsAndEdgeCases) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const SafeArray params(0,
                           {Variant(u"Name"), Variant(u"Meier"), Variant(u"Aktiv"), Variant(true),
                            Variant(u"Betrag"), Variant(12.5), Variant(u"Datum"), At(2024, 3, 5)});
    EXPECT_EQ(ToUtf8(SqlFilter(params)),
              "Name=\"Meier\" AND Aktiv=TRUE AND Betrag=12.5 AND Datum=#2024/03/05#")
        << tag;
    // Null is 0, not IS NULL; quotes inside texts are not escaped.
    EXPECT_EQ(
        SqlFilter(SafeArray(0, {Variant(u"a"), Variant::Null(), Variant(u"b"), Variant(u"x\"y")})),
        u"a=0 AND b=\"x\"y\"");
    EXPECT_EQ(SqlFilter(SafeArray(0, {Variant(u"a")})), u"");  // one element
    EXPECT_EQ(SqlFilter(SafeArray()), u"");                    // no bounds
    EXPECT_EQ(SqlFilter(SafeArray(0, {})), u"");               // bounds 0 to -1
    // An odd count leaves the last name without a value.
    EXPECT_EQ(SqlFilter(SafeArray(0, {Variant(u"a"), Variant(false), Variant(u"b")})),
              u"a=FALSE AND b=");
    // The lower bound is taken as it is.
    EXPECT_EQ(SqlFilter(SafeArray(5, {Variant(int32_t{1}), Variant(int16_t{2})})), u"1=2");
    // A value that fails is skipped, the filter goes on.
    EXPECT_EQ(
        SqlFilter(SafeArray(0, {Variant(u"a"), Variant(Date{1e7}), Variant(u"b"), Variant(1.0)})),
        u"a= AND b=1");
  }
}

}  // namespace
}  // namespace norvik50
