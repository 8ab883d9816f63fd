// The number and SQL members end to end: through the LIB object and by
// name through the dispatch, with by-reference write-back and errors.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "norvik50/dispatch.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using norvik50::testing::ErrorOf;
using Args = std::vector<std::optional<Variant>>;

class NumericMembersTest : public ::testing::TestWithParam<const char*> {
 protected:
  norvik50::testing::TempFolder temp_;
  norvik50::testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  norvik50::testing::ScopedLocale locale_{GetParam()};
  LIB lib_;
  bool german() const { return GetParam()[0] == 'd'; }
};

TEST_P(NumericMembersTest, EveryMemberIsInTheTable) {
  for (const char* name :
       {"tklVal", "tklCVal", "tklRound", "tklCompare", "tklAND", "tklReplaceDecimalChars",
        "tklHexToDec", "tklHex2Dbl", "tklDbl2Hex", "tklLng2Str", "tklStr2Lng", "tklBruchrechnung",
        "tklSQLDate", "tklSQLDouble", "tklSQLFilter"}) {
    EXPECT_TRUE(Members().Has(name)) << name;
  }
}

TEST_P(NumericMembersTest, ExamplesThroughTheDispatch) {
  // tklVal reads the locale: "EUR 1.234,56" is 1234.56 in German only.
  EXPECT_EQ(Invoke(lib_, "tklVal", Args{Variant(u"EUR 1.234,56")}).result->as_double(),
            german() ? 1234.56 : 1.23456);
  EXPECT_EQ(Invoke(lib_, "tklVal", Args{Variant(u"1,2,3")}).result->as_double(),
            german() ? 12.3 : 123);
  // tklRound keeps the type and rounds half away from zero.
  const Variant rounded =
      *Invoke(lib_, "tklRound", Args{Variant(-0.125), Variant(int16_t{2})}).result;
  EXPECT_EQ(rounded.as_double(), -0.13);
  // tklCVal takes the type code as a Long.
  EXPECT_EQ(Invoke(lib_, "tklCVal", Args{Variant(int32_t{2}), Variant(2.5)}).result->as_integer(),
            2);
  EXPECT_EQ(
      Invoke(lib_, "tklAND", Args{Variant(int32_t{6}), Variant(int32_t{2})}).result->as_boolean(),
      -1);
  EXPECT_EQ(
      Invoke(lib_, "tklDbl2Hex", Args{Variant(255.0), Variant(int16_t{4})}).result->as_string(),
      u"00FF");
  EXPECT_EQ(Invoke(lib_, "tklDbl2Hex", Args{Variant(255.0)}).result->as_string(), u"FF");
  EXPECT_EQ(Invoke(lib_, "tklHexToDec", Args{Variant(u"FF")}).result->as_long(), 255);
  EXPECT_EQ(Invoke(lib_, "tklSQLDate",
                   Args{Variant(Date::FromCivil({2024, 3, 5, 14, 7, 9})), Variant(true)})
                .result->as_string(),
            u"CONVERT(DATETIME, '2024-03-05 14:07:09', 102)");
  EXPECT_EQ(Invoke(lib_, "tklSQLDouble", Args{Variant(1234.5)}).result->as_string(), u"1234.5");
  EXPECT_EQ(Invoke(lib_, "tklReplaceDecimalChars", Args{Variant(u"x = 1,234.5;"), Variant(false)})
                .result->as_string(),
            u"x = 1234.5;");
}

TEST_P(NumericMembersTest, BruchrechnungWritesBothOutputs) {
  InvokeResult r = Invoke(lib_, "tklBruchrechnung",
                          Args{Variant(0.75f), Variant(int32_t{0}), Variant(int32_t{0})});
  EXPECT_FALSE(r.result.has_value());
  EXPECT_EQ(r.by_ref.at(1).as_long(), 3);
  EXPECT_EQ(r.by_ref.at(2).as_long(), 4);
  // 1.0 sets both to 0, and that is written back too.
  r = Invoke(lib_, "tklBruchrechnung",
             Args{Variant(1.0f), Variant(int32_t{5}), Variant(int32_t{5})});
  EXPECT_EQ(r.by_ref.at(1).as_long(), 0);
  EXPECT_EQ(r.by_ref.at(2).as_long(), 0);
}

TEST_P(NumericMembersTest, FilterThroughTheDispatch) {
  const SafeArray params(0,
                         {Variant(u"Name"), Variant(u"Meier"), Variant(u"Betrag"), Variant(12.5)});
  EXPECT_EQ(Invoke(lib_, "tklSQLFilter", Args{Variant(params)}).result->as_string(),
            u"Name=\"Meier\" AND Betrag=12.5");
  EXPECT_EQ(Invoke(lib_, "tklSQLFilter", Args{Variant(SafeArray())}).result->as_string(), u"");
  // A value that is no array cannot be passed at all.
  EXPECT_EQ(ErrorOf([&] { Invoke(lib_, "tklSQLFilter", Args{Variant(u"x")}); }), 13);
}

TEST_P(NumericMembersTest, ErrorStylesReachTheCaller) {
  // Style none: the errors of the Parts.
  EXPECT_EQ(ErrorOf([&] { lib_.tklHex2Dbl(u"100000000000000"); }), 6);
  EXPECT_EQ(ErrorOf([&] { lib_.tklDbl2Hex(1e300); }), 6);
  EXPECT_EQ(ErrorOf([&] { lib_.tklLng2Str(-1); }), 5);
  EXPECT_EQ(ErrorOf([&] { lib_.tklStr2Lng(u"ab"); }), 5);
  EXPECT_EQ(ErrorOf([&] { lib_.tklStr2Lng(u"\u00FFab"); }), 6);
  EXPECT_EQ(ErrorOf([&] { lib_.tklSQLDate(Variant(u"2024-03-05")); }), 13);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCompare(0, 3e38f, 3e38f); }), 6);
  EXPECT_EQ(ErrorOf([&] { Invoke(lib_, "tklStr2Lng", Args{Variant(u"")}); }), 5);
  // Never raising: fallbacks and unchanged values.
  EXPECT_EQ(lib_.tklHexToDec(Variant(u"100000000")), 0);
  EXPECT_EQ(lib_.tklVal(u"abc"), 0);
  EXPECT_EQ(lib_.tklCVal(5, Variant(u"abc")).as_integer(), 0);
  EXPECT_EQ(lib_.tklRound(Variant(u"2.55"), 1).as_string(), u"2.55");
  EXPECT_EQ(lib_.tklSQLDouble(Variant::Null()), u"0");
}

INSTANTIATE_TEST_SUITE_P(Locales, NumericMembersTest, ::testing::Values("de-DE", "en-US"));

}  // namespace
}  // namespace norvik50
