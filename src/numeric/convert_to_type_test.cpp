// ConvertToType and the locale-aware number reading behind it, in German
// and English.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "core/number_text.h"
#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "numeric/convert_to_type.h"
#include "numeric/date_parse.h"
#include "numeric/format.h"
#include "numeric/locale_number.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

Date Today() { return Date{std::floor(Date::Now().serial)}; }

// Text to Double: the same texts read differently in the two locales.
TEST(LocaleNumberTest, TextToDoubleInBothLocales) {
  struct Case {
    const char16_t* text;
    std::optional<double> german, english;
  } cases[] = {
      {u"1.234,56", 1234.56, 1.23456},  // grouping is ignored wherever it stands
      {u"1,234.56", 1.23456, 1234.56},
      {u"12,5", 12.5, 125},  // English ignores the grouping comma
      {u"12.5", 125, 12.5},  // German ignores the grouping point
      {u"  -7 ", -7, -7},    // blanks and a sign
      {u"7-", -7, -7},       // a trailing sign
      {u"(7)", -7, -7},      // brackets for a negative amount
      {u"1E3", 1000, 1000},
      {u"&HFF", 255, 255},
      {u"&HFFFFFFFF", -1, -1},     // radix forms are 32-bit patterns
      {u",5", 0.5, std::nullopt},  // a leading thousands separator is no number
      {u"5,", 5, 5},
      {u"1e400", std::nullopt, std::nullopt},  // overflow
      {u"1-2", std::nullopt, std::nullopt},
      {u"", std::nullopt, std::nullopt},
      {u"abc", std::nullopt, std::nullopt},
      {u"1 2", std::nullopt, std::nullopt},
      {u"--1", std::nullopt, std::nullopt},
      {u"(-1)", std::nullopt, std::nullopt},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const bool german = tag[0] == 'd';
    for (const Case& c : cases) {
      EXPECT_EQ(LocaleTextToDouble(c.text), german ? c.german : c.english)
          << tag << " " << ToUtf8(c.text);
    }
  }
}

TEST(LocaleNumberTest, CurrencySymbolOfTheLocale) {
  {
    testing::ScopedLocale german("de-DE");
    EXPECT_EQ(LocaleTextToDouble(u"1.234,50 \u20AC"), 1234.5);
    EXPECT_FALSE(LocaleTextToDouble(u"$5"));
  }
  {
    testing::ScopedLocale english("en-US");
    EXPECT_EQ(LocaleTextToDouble(u"-$1,234.50"), -1234.5);
    EXPECT_FALSE(LocaleTextToDouble(u"5 \u20AC"));
  }
}

// Numeric codes: conversion, rounding half to even and the fallbacks.
TEST(ConvertToTypeTest, NumbersInBothLocales) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const bool german = tag[0] == 'd';
    const char16_t* half = german ? u"2,5" : u"2.5";
    // Integer, Long and Byte round half to even.
    EXPECT_EQ(ConvertToType(2, Variant(half)).as_integer(), 2) << tag;
    EXPECT_EQ(ConvertToType(3, Variant(3.5)).as_long(), 4) << tag;
    EXPECT_EQ(ConvertToType(17, Variant(-0.5)).as_byte(), 0) << tag;
    EXPECT_EQ(ConvertToType(5, Variant(german ? u"1.234,56" : u"1,234.56")).as_double(), 1234.56)
        << tag;
    // Currency and Decimal from text are exact, not via a Double.
    EXPECT_EQ(ConvertToType(6, Variant(german ? u"0,1" : u"0.1")).as_currency().scaled, 1000);
    EXPECT_EQ(ConvertToType(14, Variant(german ? u"-1,50" : u"-1.50")).as_decimal().ToString(),
              "-1.50");
    EXPECT_EQ(ConvertToType(4, Variant(u"1")).as_single(), 1.0f);
    EXPECT_EQ(ConvertToType(11, Variant(u"true")).as_boolean(), -1);
    EXPECT_EQ(ConvertToType(11, Variant(u"0")).as_boolean(), 0);
  }
}

// A time on 1 January 100 is a date both ways: to text and back.
TEST(ConvertToTypeTest, TimesOnTheFirstDayOfTheCalendar) {
  testing::ScopedLocale locale("de-DE");
  const Variant date = ConvertToType(7, Variant(u"01.01.0100 04:00"));
  ASSERT_EQ(date.type(), VarType::kDate);
  EXPECT_EQ(date.as_date().ToCivil(), (CivilDateTime{100, 1, 1, 4, 0, 0}));
  EXPECT_EQ(ConvertToType(8, date).as_string(), u"01.01.100 04:00:00");
  EXPECT_EQ(ConvertToType(7, Variant(date.as_date().serial)).as_date(), date.as_date());
}

TEST(ConvertToTypeTest, FailuresGiveTheFallback) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    struct Case {
      int32_t code;
      Variant value;
    } numeric[] = {
        {2, Variant(u"abc")},   // type mismatch
        {2, Variant(32767.5)},  // rounds to 32768: overflow
        {3, Variant(3e9)},           {4, Variant(1e300)},
        {5, Variant(u"1-2")},        {5, Variant::Null()},  // invalid use of Null
        {6, Variant(1e300)},         {14, Variant(1e30)},
        {17, Variant(int32_t{256})}, {5, Variant(SafeArray())},
    };
    for (const Case& c : numeric) {
      const Variant out = ConvertToType(c.code, c.value);
      // The fallback is the Integer 0, not converted to the requested type.
      EXPECT_EQ(out.type(), VarType::kInteger) << tag << " code " << c.code;
      EXPECT_EQ(out.as_integer(), 0);
    }
    EXPECT_EQ(ConvertToType(7, Variant(u"x")).as_date(), Today()) << tag;
    EXPECT_EQ(ConvertToType(8, Variant::Null()).as_string(), u"");
    EXPECT_EQ(ConvertToType(11, Variant(u"vielleicht")).as_boolean(), 0);
  }
}

TEST(ConvertToTypeTest, OtherCodesKeepTheValue) {
  for (int32_t code : {0, 1, 9, 10, 12, 13, 15, 16, 18, 8192, -1}) {
    const Variant out = ConvertToType(code, Variant(u"abc"));
    EXPECT_EQ(out.type(), VarType::kString) << code;
    EXPECT_EQ(out.as_string(), u"abc");
  }
}

// Numbers to text as the runtime writes them, with the locale's separator.
TEST(ConvertToTypeTest, NumbersToText) {
  struct Case {
    Variant value;
    const char16_t* german;
    const char16_t* english;
  } cases[] = {
      {Variant(1e15), u"1E+15", u"1E+15"},
      {Variant(1234567890123456.0), u"1,23456789012346E+15", u"1.23456789012346E+15"},
      {Variant(1e-5), u"0,00001", u"0.00001"},
      {Variant(5.6789e-12), u"5,6789E-12", u"5.6789E-12"},
      {Variant(654322.25f), u"654322,3", u"654322.3"},
      {Variant(4.94065645841247e-324), u"4,94065645841247E-324", u"4.94065645841247E-324"},
      {Variant(0.0001), u"0,0001", u"0.0001"},
      {Variant(123456789012345.0), u"123456789012345", u"123456789012345"},
      {Variant(1.0 / 3), u"0,333333333333333", u"0.333333333333333"},
      {Variant(int16_t{-5}), u"-5", u"-5"},
      {Variant(true), u"True", u"True"},
      {Variant(Currency{12345}), u"1,2345", u"1.2345"},
      {Variant(Date{45356.5}), u"05.03.2024 12:00:00", u"3/5/2024 12:00:00 PM"},
      {Variant(Date{45356.0}), u"05.03.2024", u"3/5/2024"},
      {Variant(Date{0.25}), u"06:00:00", u"6:00:00 AM"},  // a pure time
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      EXPECT_EQ(ConvertToType(8, c.value).as_string(), tag[0] == 'd' ? c.german : c.english)
          << tag << " " << ToUtf8(c.german);
    }
  }
}

TEST(ConvertToTypeTest, DatesOutsideTheRangeHaveNoText) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    EXPECT_EQ(ErrorOf([] { DateToText(Date{1e10}); }), 6) << tag;
    EXPECT_EQ(ErrorOf([] { DateToText(Date{std::nan("")}); }), 6) << tag;
    EXPECT_EQ(ConvertToType(8, Variant(Date{-1e9})).as_string(), u"") << tag;  // the fallback
  }
}

TEST(ConvertToTypeTest, TextToDateInBothLocales) {
  const CivilDateTime march5{2024, 3, 5, 0, 0, 0};
  const CivilDateTime march5_time{2024, 3, 5, 14, 7, 9};
  struct Case {
    const char16_t* text;
    std::optional<CivilDateTime> german, english;
  } cases[] = {
      {u"2024-03-05", march5, march5},  // ISO in every locale
      {u"2024-03-05T14:07:09", march5_time, march5_time},
      // The locale's field order decides; a dotted date is German only.
      {u"5.3.2024", march5, std::nullopt},
      {u"05.03.2024 14:07:09", march5_time, std::nullopt},
      {u"3/5/2024 2:07:09 PM", CivilDateTime{2024, 5, 3, 14, 7, 9}, march5_time},
      {u"5. M\u00E4rz 2024", march5, std::nullopt},  // German month name
      {u"March 5, 2024", march5, march5},            // English names always
      {u"Tuesday, March 5, 2024", march5, march5},
      {u"13/5/2024", CivilDateTime{2024, 5, 13, 0, 0, 0},
       CivilDateTime{2024, 5, 13, 0, 0, 0}},  // month 13 swaps with the day
      // Two-digit years; English reads the dots as a time.
      {u"5.3.24", march5, CivilDateTime{1899, 12, 30, 5, 3, 24}},
      {u"5.3.75", CivilDateTime{1975, 3, 5, 0, 0, 0}, std::nullopt},
      {u"5/3/75", CivilDateTime{1975, 3, 5, 0, 0, 0}, CivilDateTime{1975, 5, 3, 0, 0, 0}},
      {u"31.02.2024", std::nullopt, std::nullopt},
      {u"x", std::nullopt, std::nullopt},
      {u"12", std::nullopt, std::nullopt},
      {u"25:00", std::nullopt, std::nullopt},
  };
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (const Case& c : cases) {
      const std::optional<Date> d = ParseDateText(c.text, CurrentLocale());
      const std::optional<CivilDateTime>& want = tag[0] == 'd' ? c.german : c.english;
      ASSERT_EQ(d.has_value(), want.has_value()) << tag << " " << ToUtf8(c.text);
      if (d) {
        EXPECT_EQ(d->ToCivil(), *want) << tag << " " << ToUtf8(c.text);
      }
    }
    // A time alone lies on 1899-12-30.
    EXPECT_DOUBLE_EQ(ConvertToType(7, Variant(u"18:00")).as_date().serial, 0.75);
  }
}

TEST(ConvertStrictTest, RaisesTheRuntimeErrors) {
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    EXPECT_EQ(ErrorOf([] { ConvertStrict(5, Variant(u"abc")); }), 13) << tag;
    EXPECT_EQ(ErrorOf([] { ConvertStrict(5, Variant(u"1e999")); }), 6) << tag;  // overflow, not 13
    EXPECT_EQ(ErrorOf([] { ConvertStrict(3, Variant(3e9)); }), 6) << tag;
    EXPECT_EQ(ErrorOf([] { ConvertStrict(2, Variant(u"40000")); }), 6) << tag;
    EXPECT_EQ(ErrorOf([] { ConvertStrict(8, Variant::Null()); }), 94) << tag;
    EXPECT_EQ(ErrorOf([] { ConvertStrict(7, Variant(1e10)); }), 6) << tag;
    EXPECT_EQ(ErrorOf([] { ConvertStrict(6, Variant(u"1e300")); }), 6) << tag;
    EXPECT_EQ(ConvertStrict(5, Variant()).as_double(), 0) << tag;  // Empty is 0
  }
}

// Currency from a Double scales its binary value, half to even: the
// double of 0.00035 lies just below it, that of 0.00025 just above.
TEST(ConvertToTypeTest, CurrencyFromBinaryValues) {
  struct Case {
    Variant value;
    std::optional<int64_t> scaled;  // nullopt: overflow, the Integer 0 fallback
  } cases[] = {
      {Variant(0.00035), 3},
      {Variant(0.00025), 3},
      {Variant(0.00005), 1},               // 0.50000000000000002396: above the half
      {Variant(std::ldexp(5.0, -17)), 0},  // 0.38147 of the last place: down
      {Variant(std::ldexp(1.0, -15)), 0},  // 0.30517578125 of it
      {Variant(std::ldexp(3.0, -15)), 1},  // 0.91552734375 of it
      {Variant(0.03125), 312},             // 312.5 exactly: to the even 312
      {Variant(0.09375), 938},             // 937.5 exactly: to the even 938
      {Variant(-0.00035), -3},
      {Variant(922337203685477.0), 9223372036854770000},  // every digit kept
      {Variant(-922337203685477.0), -9223372036854770000},
      {Variant(922337203685477.5), 9223372036854775000},
      {Variant(922337203685477.625), std::nullopt},  // past the top
      {Variant(-922337203685477.625), std::nullopt},
      {Variant(0.1f), 1000},  // the Single's binary value: 0.100000001490116
      {Variant(1e-300), 0},
  };
  for (const Case& c : cases) {
    const Variant out = ConvertToType(6, c.value);
    if (c.scaled) {
      ASSERT_EQ(out.type(), VarType::kCurrency) << *c.value.numeric_value();
      EXPECT_EQ(out.as_currency().scaled, *c.scaled) << *c.value.numeric_value();
    } else {
      EXPECT_EQ(out.type(), VarType::kInteger) << *c.value.numeric_value();
      EXPECT_EQ(ErrorOf([&] { ConvertStrict(6, c.value); }), 6);
    }
  }
}

// Currency from a Decimal is exact; more than four places round half to even.
TEST(ConvertToTypeTest, CurrencyFromDecimalIsExact) {
  struct Case {
    const char* decimal;
    std::optional<int64_t> scaled;
  } cases[] = {
      {"922337203685476", 9223372036854760000},  // not ...476.0448 as via a Double
      {"-922337203685477.5808", INT64_MIN},
      {"922337203685477.5807", INT64_MAX},
      {"922337203685477.5808", std::nullopt},
      {"0.00005", 0},  // a tie: to the even 0
      {"0.00015", 2},  // a tie: to the even 2
      {"0.000250001", 3},
      {"-1.23456", -12346},
      {"79228162514264337593543950335", std::nullopt},
      {"0.0000000000000000000000000001", 0},
  };
  for (const Case& c : cases) {
    const Variant in(*Decimal::Parse(c.decimal));
    const Variant out = ConvertToType(6, in);
    if (c.scaled) {
      ASSERT_EQ(out.type(), VarType::kCurrency) << c.decimal;
      EXPECT_EQ(out.as_currency().scaled, *c.scaled) << c.decimal;
    } else {
      EXPECT_EQ(ErrorOf([&] { ConvertStrict(6, in); }), 6) << c.decimal;
    }
  }
}

// A Decimal keeps the source's own significant digits: 7 for a Single,
// 15 for a Double.
TEST(ConvertToTypeTest, DecimalKeepsTheSourceDigits) {
  struct Case {
    Variant value;
    const char* decimal;
  } cases[] = {
      {Variant(0.6f), "0.6"},  // not 0.600000023841858
      {Variant(654322.25f), "654322.3"},
      {Variant(16777216.0f), "16777220"},
      {Variant(1.0f / 3), "0.3333333"},
      {Variant(0.1 + 0.2), "0.3"},
      {Variant(1.0 / 3), "0.333333333333333"},
      {Variant(123456789012345678.0), "123456789012346000"},
      {Variant(-2.5e-20), "-0.000000000000000000025"},
      {Variant(1e-29), "0"},  // below the 28th place
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ConvertToType(14, c.value).as_decimal().ToString(), c.decimal) << c.decimal;
  }
}

TEST(ConvertToTypeTest, BooleansToByteAndTextToBoolean) {
  // True is -1; a Byte takes its low byte.
  EXPECT_EQ(ConvertToType(17, Variant(true)).as_byte(), 255);
  EXPECT_EQ(ConvertToType(17, Variant(false)).as_byte(), 0);
  EXPECT_EQ(ConvertToType(2, Variant(true)).as_integer(), -1);
  EXPECT_EQ(ErrorOf([] { ConvertStrict(17, Variant(int16_t{-1})); }), 6);  // only True wraps
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    struct Case {
      const char16_t* text;
      int want;  // -1 True, 0 False, 13 type mismatch
    } cases[] = {
        {u"#TRUE#", -1}, {u"#true#", -1}, {u" #True# ", -1}, {u"#FALSE#", 0}, {u"#false#", 0},
        {u"#TRUE", 13},  {u"TRUE#", 13},  {u"# TRUE #", 13}, {u"##", 13},     {u"#1#", 13},
    };
    for (const Case& c : cases) {
      if (c.want == 13) {
        EXPECT_EQ(ErrorOf([&] { ConvertStrict(11, Variant(c.text)); }), 13) << ToUtf8(c.text);
      } else {
        EXPECT_EQ(ConvertToType(11, Variant(c.text)).as_boolean(), c.want) << ToUtf8(c.text);
      }
    }
  }
}

// The general date form writes a year below 1000 without leading zeros.
TEST(ConvertToTypeTest, EarlyYearsWithoutLeadingZeros) {
  const Date year100 = Date::FromCivil({100, 1, 1, 0, 0, 0});
  const Date year999 = Date::FromCivil({999, 12, 31, 13, 5, 0});
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    const bool german = tag[0] == 'd';
    EXPECT_EQ(ConvertToType(8, Variant(year100)).as_string(), german ? u"01.01.100" : u"1/1/100");
    EXPECT_EQ(ConvertToType(8, Variant(year999)).as_string(),
              german ? u"31.12.999 13:05:00" : u"12/31/999 1:05:00 PM");
    EXPECT_EQ(ConvertToType(8, Variant(Date::FromCivil({1000, 1, 1, 0, 0, 0}))).as_string(),
              german ? u"01.01.1000" : u"1/1/1000");
    // The Format engine's general date writes it the same way.
    for (const char16_t* pattern : {u"", u"General Date", u"c"}) {
      EXPECT_EQ(FormatValue(Variant(year100), pattern), german ? u"01.01.100" : u"1/1/100")
          << ToUtf8(pattern);
    }
  }
}

}  // namespace
}  // namespace norvik50
