#include "norvik50/values.h"

#include <gtest/gtest.h>

#include <cmath>

#include "norvik50/error.h"

namespace norvik50 {
namespace {

TEST(DateTest, SerialDatesOfKnownDays) {
  struct Case {
    CivilDateTime civil;
    double serial;
  } cases[] = {
      {{1899, 12, 30, 0, 0, 0}, 0.0},
      {{1899, 12, 31, 0, 0, 0}, 1.0},
      {{1900, 1, 1, 0, 0, 0}, 2.0},
      {{2024, 3, 5, 0, 0, 0}, 45356.0},
      {{2024, 3, 5, 12, 0, 0}, 45356.5},
      // Before the epoch the time counts forward from midnight, so the
      // fraction is subtracted: 1899-12-29 06:00 is -1.25, not -0.75.
      {{1899, 12, 29, 6, 0, 0}, -1.25},
      {{100, 1, 1, 0, 0, 0}, -657434.0},
      {{9999, 12, 31, 0, 0, 0}, 2958465.0},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(Date::FromCivil(c.civil).serial, c.serial) << c.serial;
    EXPECT_EQ(Date{c.serial}.ToCivil(), c.civil) << c.serial;
  }
}

TEST(DateTest, RoundsToTheSecondAcrossMidnight) {
  // 23:59:59.9 rounds to the next day's midnight, for negative serials too.
  EXPECT_EQ(Date{1.0 - 0.1 / 86400}.ToCivil(), (CivilDateTime{1899, 12, 31, 0, 0, 0}));
  EXPECT_EQ(Date{-1.0 - (1.0 - 0.1 / 86400)}.ToCivil(), (CivilDateTime{1899, 12, 30, 0, 0, 0}));
}

TEST(DateTest, SerialsOutsideTheCalendarOverflow) {
  // A serial past the range names no day; splitting it must fail cleanly
  // instead of running the calendar arithmetic on a value it cannot hold.
  for (double bad :
       {1e300, -1e300, Date::kMaxSerial + 1, Date::kMinSerial - 1, std::nan(""), HUGE_VAL}) {
    try {
      (void)Date{bad}.ToCivil();
      ADD_FAILURE() << bad;
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), 6) << bad;
    }
  }
  EXPECT_EQ(Date{Date::kMaxSerial}.ToCivil(), (CivilDateTime{9999, 12, 31, 23, 59, 59}));
  EXPECT_EQ(Date{Date::kMinSerial}.ToCivil(), (CivilDateTime{100, 1, 1, 23, 59, 59}));
  EXPECT_THROW((void)Date{-657435.0}.ToCivil(), Error);
}

// The first day of the calendar has times too: they lie below its
// midnight's serial, and every conversion must accept them as the day they
// name.
TEST(DateTest, TimesOnTheFirstDayOfTheCalendar) {
  for (const CivilDateTime& civil :
       {CivilDateTime{100, 1, 1, 4, 0, 0}, CivilDateTime{100, 1, 1, 12, 30, 0},
        CivilDateTime{100, 1, 1, 23, 59, 59}}) {
    const Date date = Date::FromCivil(civil);
    EXPECT_LT(date.serial, -657434.0);
    EXPECT_GE(date.serial, Date::kMinSerial);
    EXPECT_EQ(date.ToCivil(), civil);
    const auto iso = Date::ParseIso(date.ToIsoString());
    ASSERT_TRUE(iso.has_value()) << date.ToIsoString();
    EXPECT_EQ(iso->ToCivil(), civil);
  }
  EXPECT_NEAR(Date::FromCivil({100, 1, 1, 4, 0, 0}).serial, -657434.1666667, 1e-6);
}

TEST(DateTest, InvalidCivilDatesOverflow) {
  for (const CivilDateTime& bad :
       {CivilDateTime{2023, 2, 29}, CivilDateTime{99, 12, 31}, CivilDateTime{10000, 1, 1},
        CivilDateTime{2024, 13, 1}, CivilDateTime{2024, 1, 1, 24, 0, 0}}) {
    EXPECT_FALSE(Date::IsValidCivil(bad));
    EXPECT_THROW(Date::FromCivil(bad), Error);
  }
  EXPECT_TRUE(Date::IsValidCivil({2024, 2, 29}));
}

TEST(DateTest, IsoTextRoundTrip) {
  const auto d = Date::ParseIso("2024-03-05T14:07:09");
  ASSERT_TRUE(d);
  EXPECT_EQ(d->ToIsoString(), "2024-03-05T14:07:09");
  EXPECT_EQ(Date::ParseIso("2024-03-05")->ToIsoString(), "2024-03-05T00:00:00");
  EXPECT_EQ(Date::ParseIso("2024-03-05 14:07")->ToIsoString(), "2024-03-05T14:07:00");
  for (const char* bad : {"", "2024-3-5", "2024-02-30", "2024-03-05T", "2024-03-05T1:00",
                          "2024-03-05T14:07:09Z", "20240305"}) {
    EXPECT_FALSE(Date::ParseIso(bad)) << bad;
  }
}

TEST(CurrencyTest, FourPlacesRoundedHalfToEven) {
  EXPECT_EQ(Currency::FromDouble(1.5).scaled, 15000);
  // 1/32 and 3/32 are exact doubles whose fifth place is a true half.
  EXPECT_EQ(Currency::FromDouble(0.03125).scaled, 312);  // half to even: down
  EXPECT_EQ(Currency::FromDouble(0.09375).scaled, 938);  // half to even: up
  EXPECT_EQ(Currency::FromDouble(-2.25).scaled, -22500);
  EXPECT_THROW(Currency::FromDouble(1e15), Error);  // past 922337203685477.5807
  EXPECT_THROW(Currency::FromDouble(std::nan("")), Error);
}

TEST(CurrencyTest, TextRoundTrip) {
  for (const char* text :
       {"0", "12.5", "-0.0001", "922337203685477.5807", "-922337203685477.5808"}) {
    const auto c = Currency::Parse(text);
    ASSERT_TRUE(c) << text;
    EXPECT_EQ(c->ToString(), text);
  }
  EXPECT_EQ(Currency::Parse("12.50")->ToString(), "12.5");
  for (const char* bad : {"", ".", "1.23456", "922337203685477.5808", "1e3", "abc", "1,5"}) {
    EXPECT_FALSE(Currency::Parse(bad)) << bad;
  }
}

TEST(DecimalTest, TextAndDoubles) {
  EXPECT_EQ(Decimal::Parse("-1.50")->ToString(), "-1.50");  // keeps its scale
  EXPECT_EQ(Decimal::Parse("79228162514264337593543950335")->ToString(),
            "79228162514264337593543950335");
  EXPECT_FALSE(Decimal::Parse("79228162514264337593543950336"));    // past 96 bits
  EXPECT_FALSE(Decimal::Parse("0.00000000000000000000000000001"));  // 29 places
  EXPECT_EQ(Decimal::FromDouble(1.5).ToString(), "1.5");
  EXPECT_EQ(Decimal::FromDouble(0.1).ToString(), "0.1");  // 15 digits, not the binary tail
  EXPECT_EQ(Decimal::FromDouble(-123456789012345678.0).ToString(), "-123456789012346000");
  EXPECT_EQ(Decimal::FromDouble(1e-30).ToString(), "0");
  EXPECT_DOUBLE_EQ(Decimal::Parse("-12.25")->ToDouble(), -12.25);
  EXPECT_THROW(Decimal::FromDouble(1e29), Error);
}

}  // namespace
}  // namespace norvik50
