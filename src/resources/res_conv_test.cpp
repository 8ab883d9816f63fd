// Placeholder substitution, in both locales where numbers and dates appear.
#include "resources/res_conv.h"

#include <gtest/gtest.h>

#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

SafeArray Values(std::vector<Variant> items) { return SafeArray(0, std::move(items)); }

TEST(ResConvTest, EachKindFillsItsOwnPlaceholder) {
  const std::u16string text = u"%s has %d new messages";
  EXPECT_EQ(ResConv(text, Values({Variant(u"Anna"), Variant(int16_t{3})})),
            u"Anna has 3 new messages");
  // The order of the values between the kinds does not matter.
  EXPECT_EQ(ResConv(text, Values({Variant(int16_t{3}), Variant(u"Anna")})),
            u"Anna has 3 new messages");
}

TEST(ResConvTest, PackedTexts) {
  EXPECT_EQ(ResConv(u"%s and %s", Values({Variant(u"^A|B")})), u"A and B");
  EXPECT_EQ(ResConv(u"%s and %s", Values({Variant(u"A|B")})), u"A|B and %s");
  // The packed form gives only texts: "%d" stays.
  EXPECT_EQ(ResConv(u"%d %s", Values({Variant(u"^12")})), u"%d 12");
  EXPECT_EQ(ResConv(u"%s", Values({Variant(u"^")})), u"%s");
  // Two elements are never packed.
  EXPECT_EQ(ResConv(u"%s %s", Values({Variant(u"^A|B"), Variant(u"C")})), u"^A|B C");
}

TEST(ResConvTest, SurplusAndMissingValues) {
  EXPECT_EQ(ResConv(u"%s", Values({Variant(u"a"), Variant(u"b")})), u"a");
  EXPECT_EQ(ResConv(u"%s-%s", Values({Variant(u"a")})), u"a-%s");
  EXPECT_EQ(ResConv(u"%s x", Values({})), u"%s x");
  EXPECT_EQ(ResConv(u"%s x", SafeArray()), u"%s x");  // never dimensioned
  // Inserted text is searched by later values.
  EXPECT_EQ(ResConv(u"%s!", Values({Variant(u"<%s>"), Variant(u"in")})), u"<in>!");
}

TEST(ResConvTest, OtherTypesAreText) {
  EXPECT_EQ(ResConv(u"[%s][%s]", Values({Variant(), Variant::Null()})), u"[][]");
  EXPECT_EQ(ResConv(u"[%s]", Values({Variant(Decimal::Parse("1.5").value())})), u"[1.5]");
}

TEST(ResConvTest, Escapes) {
  EXPECT_EQ(ResConv(u"Line1\\nLine2", Values({})), u"Line1\nLine2");
  EXPECT_EQ(ResConv(u"a\\tb\\rc\\x\\", Values({})), u"a\tb\rc\\x\\");
  // Escapes are turned after the values are in.
  EXPECT_EQ(ResConv(u"%s", Values({Variant(u"a\\nb")})), u"a\nb");
}

class ResConvLocaleTest : public ::testing::TestWithParam<const char*> {
 protected:
  testing::ScopedLocale locale_{GetParam()};
  bool german_ = std::string(GetParam()) == "de-DE";
};

INSTANTIATE_TEST_SUITE_P(Locales, ResConvLocaleTest, ::testing::Values("en-US", "de-DE"));

TEST_P(ResConvLocaleTest, NumbersDatesAndBooleansByType) {
  EXPECT_EQ(ResConv(u"%d", Values({Variant(1234.5)})), german_ ? u"1.234,50" : u"1,234.50");
  EXPECT_EQ(ResConv(u"%d", Values({Variant(1234.5f)})), german_ ? u"1.234,50" : u"1,234.50");
  EXPECT_EQ(ResConv(u"%d", Values({Variant(int32_t{1234567})})), u"1234567");
  EXPECT_EQ(ResConv(u"%d", Values({Variant(uint8_t{7})})), u"7");
  EXPECT_EQ(ResConv(u"%d", Values({Variant(Currency::FromScaled(12345000))})),
            german_ ? u"1.234,50 €" : u"$1,234.50");
  EXPECT_EQ(ResConv(u"%d", Values({Variant(Date::FromCivil({2024, 3, 5, 14, 7, 9}))})),
            german_ ? u"05.03.2024" : u"3/5/2024");
  // "True / False" is a pattern of its own, not the named format; the
  // engine reads "s" as seconds and "/" as the date separator.
  EXPECT_EQ(ResConv(u"%d", Values({Variant(true)})), german_ ? u"True . Fal0e" : u"True / Fal0e");
}

TEST(ResConvMemberTest, ReachableThroughLib) {
  LIB lib;
  EXPECT_EQ(lib.tklResConv(u"%s\\t%d", Values({Variant(int16_t{5}), Variant(u"x")})), u"x\t5");
}

}  // namespace
}  // namespace norvik50
