// Placeholder substitution, in both locales where numbers and dates appear.
#include "resources/res_conv.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>

#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "numeric/convert_to_type.h"
#include "numeric/format.h"
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

// Texts and values whose placeholders are made by the values themselves or
// across the edge of a value put in: each value goes where the first
// placeholder of its kind stands in the text as it is at that moment.
TEST(ResConvTest, PlaceholdersMadeByValues) {
  struct Case {
    const char16_t* source;
    std::vector<Variant> values;
    const char16_t* want;
  };
  const Case cases[] = {
      // "%" + "s" left behind: the "%" before and the "s" after make one.
      {u"%ss", {Variant(u"%"), Variant(u"x")}, u"x"},
      // An empty value joins the "%" before it with the "s" after it.
      {u"%%ss", {Variant(u""), Variant(u"y")}, u"y"},
      // A value ending in "%" meets the "d" after it.
      {u"%sd %d", {Variant(u"a%"), Variant(int16_t{1})}, u"a1 %d"},
      // A value starting with "d" after a "%".
      {u"%%sx %d", {Variant(u"d"), Variant(int16_t{2})}, u"2x %d"},
      // A text value brings a "%d" that comes before the one in the text.
      {u"%s %d", {Variant(u"<%d>"), Variant(int16_t{3}), Variant(int16_t{4})}, u"<3> 4"},
      // A number written where a "%s" is made ("%" + "s").
      {u"%%ds", {Variant(int16_t{5}), Variant(u"t")}, u"%5s"},
      {u"%d%s", {Variant(u"%"), Variant(int16_t{6})}, u"6%"},
      // The value itself holds its kind's placeholder: filled next.
      {u"%s%s", {Variant(u"%s"), Variant(u"a"), Variant(u"b")}, u"ab"},
      // A value that ends the text, and one that begins it.
      {u"ab%s", {Variant(u"%")}, u"ab%"},
      {u"%sd", {Variant(u""), Variant(int16_t{7})}, u"d"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToUtf8(ResConv(c.source, Values(c.values))), ToUtf8(c.want)) << ToUtf8(c.source);
  }
}

// The substitution as first written: each value searched from the start of
// the text and spliced in place, the escapes turned one after the other.
// Slow on long texts, plainly right; the one-pass filler must agree.
std::u16string ReferenceResConv(std::u16string source, const std::vector<Variant>& values) {
  for (const Variant& value : values) {
    std::u16string placeholder = u"%s", text;
    if (value.type() == VarType::kInteger) {
      placeholder = u"%d";
      text = FormatValue(value, u"0");
    } else if (value.type() == VarType::kBoolean) {
      placeholder = u"%d";
      text = FormatValue(value, u"True / False");
    } else {
      text = ConvertToType(8, value).as_string();
    }
    const std::size_t at = source.find(placeholder);
    if (at != std::u16string::npos) source.replace(at, 2, text);
  }
  for (const auto& [escape, control] :
       {std::pair{u"\\t", u'\t'}, std::pair{u"\\r", u'\r'}, std::pair{u"\\n", u'\n'}}) {
    const std::u16string_view e(escape);
    for (std::size_t at = source.find(e); at != std::u16string::npos; at = source.find(e, at + 1)) {
      source.replace(at, e.size(), 1, control);
    }
  }
  return source;
}

// Texts and values built from the units that make placeholders and
// escapes ("%", "s", "d", "\\", "t", "n"), so that values make, break and
// fill placeholders of both kinds across their edges.
TEST(ResConvTest, AgreesWithSearchingFromTheStartForEachValue) {
  std::mt19937 rng(4321);
  const std::u16string_view units[] = {u"%", u"s",  u"d", u"%s", u"%d",
                                       u"x", u"\\", u"t", u"n",  u" "};
  auto random_text = [&](std::size_t max_pieces) {
    std::u16string text;
    for (std::size_t k = rng() % (max_pieces + 1); k > 0; --k)
      text += units[rng() % std::size(units)];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::u16string source = random_text(12);
    std::vector<Variant> values;
    for (std::size_t k = rng() % 8; k > 0; --k) {
      switch (rng() % 4) {
        case 0:
          values.emplace_back(static_cast<int16_t>(rng() % 100));
          break;
        case 1:
          values.emplace_back(rng() % 2 == 0);
          break;
        default:
          values.emplace_back(random_text(4));
      }
    }
    ASSERT_EQ(ToUtf8(ResConv(source, Values(values))), ToUtf8(ReferenceResConv(source, values)))
        << "\"" << ToUtf8(source) << "\" with " << values.size() << " values, round " << round;
  }
}

// Long texts: many values over a long text, with the occasional value that
// makes a placeholder of the other kind.
TEST(ResConvTest, AgreesOnLongTexts) {
  std::mt19937 rng(99);
  for (int round = 0; round < 20; ++round) {
    std::u16string source;
    std::vector<Variant> values;
    for (int k = 0; k < 500; ++k) {
      source += rng() % 3 == 0 ? u"%d, " : u"%s; ";
      if (rng() % 50 == 0) source += u"\\n%";
      if (rng() % 2 == 0) {
        values.emplace_back(static_cast<int16_t>(k));
      } else {
        values.emplace_back(rng() % 40 == 0 ? u"(%d)" : rng() % 40 == 0 ? u"d%" : u"name");
      }
    }
    ASSERT_EQ(ResConv(source, Values(values)), ReferenceResConv(source, values)) << round;
  }
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
