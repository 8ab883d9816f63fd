// Hexadecimal text, the long string and fractions.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "norvik50/encoding.h"
#include "numeric/fraction.h"
#include "numeric/radix.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

TEST(HexTextToLongTest, TextsNumbersAndFailures) {
  struct Case {
    Variant value;
    int32_t want;
  } cases[] = {
      {Variant(u"FF"), 255},
      {Variant(u"ff"), 255},
      {Variant(u"FFFFFFFF"), -1},      // eight digits with the top bit: negative
      {Variant(u"100000000"), 0},      // nine digits overflow
      {Variant(u"000000000FF"), 255},  // leading zeros do not count
      {Variant(u"&HFF"), 0},           // a prefix stops the digits at once
      {Variant(u""), 0},
      {Variant(u"12G4"), 0x12},                          // digits up to the first non-digit
      {Variant(std::u16string(u"x\u0001\u0002")), 513},  // raw bytes, little-endian
      {Variant(u"X41"), 12596},                          // "X" too: the bytes '4' and '1'
      {Variant(u"x"), 0},
      {Variant(u"x\u20AC"), 0x80},  // the euro sign is byte 0x80
      {Variant(int16_t{-1}), -1},   // the 32-bit form, not FFFF
      {Variant(255.5), 256},        // half to even
      {Variant(254.5), 254},
      {Variant(3e9), 0},  // beyond a Long
      {Variant::Null(), 0},
      {Variant(), 0},
      {Variant(SafeArray()), 0},
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(HexTextToLong(cases[i].value), cases[i].want) << "case " << i;
  }
}

TEST(Hex2DblTest, HighAndLowParts) {
  EXPECT_EQ(Hex2Dbl(u"1000000"), 16777216);
  EXPECT_EQ(Hex2Dbl(u"FFFFFF"), 16777215);
  EXPECT_EQ(Hex2Dbl(u"&H1000000"), 16777216);
  EXPECT_EQ(Hex2Dbl(u"&hFF"), 0);                    // lower-case h stays and ends the digits
  EXPECT_EQ(Hex2Dbl(u"FFFFFFFF000000"), -16777216);  // a negative high part
  EXPECT_EQ(Hex2Dbl(u"7FFFFFFFFFFFFF"), 2147483647.0 * 16777216 + 16777215);
  EXPECT_EQ(Hex2Dbl(u"000000000001000000"), 16777216);  // zeros are not digits that count
  EXPECT_EQ(Hex2Dbl(u""), 0);
  EXPECT_EQ(ErrorOf([] { Hex2Dbl(u"100000000000000"); }), 6);  // nine high digits
}

TEST(Dbl2HexTest, PartsPaddingAndOverflow) {
  EXPECT_EQ(Dbl2Hex(16777216, 0), u"1000000");
  EXPECT_EQ(Dbl2Hex(255, 4), u"00FF");
  EXPECT_EQ(Dbl2Hex(255, 1), u"FF");  // never cut
  EXPECT_EQ(Dbl2Hex(4294967296.0, 0), u"100000000");
  EXPECT_EQ(Dbl2Hex(-1, 0), u"FFFFFF");            // a negative value keeps its low 24 bits
  EXPECT_EQ(Dbl2Hex(33554431.5, 0), u"11000000");  // the low part rounds up, uncut
  EXPECT_EQ(Dbl2Hex(-1e300, 0), u"0");             // the high part's form is never taken
  EXPECT_EQ(Dbl2Hex(0, 0), u"0");
  EXPECT_EQ(ErrorOf([] { Dbl2Hex(1e300, 0); }), 6);
  EXPECT_EQ(ErrorOf([] { Dbl2Hex(std::numeric_limits<double>::quiet_NaN(), 0); }), 6);
  // Hex2Dbl reads back what Dbl2Hex writes, across the 24-bit seam.
  std::mt19937_64 rng(7);
  for (int i = 0; i < 2000; ++i) {
    const double v = static_cast<double>(rng() >> 10);  // up to 2^54
    EXPECT_EQ(Hex2Dbl(Dbl2Hex(v, 0)), v) << v;
  }
}

TEST(LongStringTest, RoundTripAndErrors) {
  EXPECT_EQ(Lng2Str(65), std::u16string(u"\0\0\0A", 4));
  EXPECT_EQ(Str2Lng(std::u16string(u"\0\0\0A", 4)), 65);
  EXPECT_EQ(Lng2Str(0x7F808182), u"\u007F\u20AC\u0081\u201A");  // Windows-1252 bytes
}

TEST(LongStringTest, Errors) {
  EXPECT_EQ(ErrorOf([] { Lng2Str(-1); }), 5);
  EXPECT_EQ(ErrorOf([] { Str2Lng(u"abc"); }), 5);
  EXPECT_EQ(ErrorOf([] { Str2Lng(u""); }), 5);
  EXPECT_EQ(ErrorOf([] { Str2Lng(u"\u20ACabc"); }), 6);  // first byte 0x80
  EXPECT_EQ(ErrorOf([] { Str2Lng(u"\u00FF"); }), 6);     // overflow before the missing bytes
  EXPECT_EQ(Str2Lng(u"abcdXYZ"), 0x61626364);            // later characters are ignored
}

TEST(LongStringTest, InvertsForEveryNonNegativeValue) {
  std::mt19937 rng(11);
  for (int i = 0; i < 20000; ++i) {
    const int32_t v = static_cast<int32_t>(rng() >> 1);
    ASSERT_EQ(Str2Lng(Lng2Str(v)), v) << v;
  }
  for (int32_t v : {0, 1, 255, 256, 65535, 16777215, 16777216, 2147483647}) {
    EXPECT_EQ(Str2Lng(Lng2Str(v)), v) << v;
  }
}

TEST(FractionTest, Examples) {
  struct Case {
    float value;
    int32_t numerator, denominator;
  } cases[] = {
      {0.5f, 1, 2},     {0.75f, 3, 4},    {2.0f, 4, 2},  // 1 is never tried as a denominator
      {0.0f, 0, 2},     {1.0f / 3, 1, 3}, {-0.25f, -1, 4},
      {0.3f, 3, 10},     // 0.3f * 10 rounds to 3 in Single (ties to even)
      {-0.3f, -19, 63},  // compared as written: the floor misses -3/10
      {1.0f, 0, 0},      // callers read 0/0 as one
      {0.123f, 7, 57},   // no exact fraction: the smallest fractional part
  };
  for (const Case& c : cases) {
    int32_t n = 99, d = 99;
    ApproximateFraction(c.value, n, d);
    EXPECT_EQ(n, c.numerator) << c.value;
    EXPECT_EQ(d, c.denominator) << c.value;
  }
}

TEST(FractionTest, FaultsEndQuietly) {
  for (float v :
       {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(), 1e20f}) {
    int32_t n = 99, d = 99;
    ApproximateFraction(v, n, d);
    EXPECT_EQ(n, 0) << v;
    EXPECT_EQ(d, 0) << v;
  }
}

}  // namespace
}  // namespace norvik50
