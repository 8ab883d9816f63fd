#include "text/replace_ext.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/error.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using norvik50::testing::ErrorOf;
using std::u16string;

struct Case {
  const char16_t* source;
  const char16_t* find;
  const char16_t* with;
  ExtendedReplaceRules rules;
  const char16_t* expected;
};

void Check(const Case& c) {
  EXPECT_EQ(ReplaceInStringExt(c.source, c.find, c.with, 1, c.rules), c.expected)
      << ::testing::PrintToString(u16string(c.source)) << " "
      << ::testing::PrintToString(u16string(c.find));
}

ExtendedReplaceRules NotNumeric() { return {.not_numeric = true}; }
ExtendedReplaceRules OnlyNumeric() { return {.only_numeric = true}; }
ExtendedReplaceRules Signs(std::u16string_view pairs) { return {.not_in_signs = pairs}; }

TEST(ReplaceInStringExt, NumericWordsInGerman) {
  norvik50::testing::ScopedLocale locale("de-DE");
  const Case cases[] = {
      // Decimal commas to points, the list commas left alone.
      {u"a, b = 1,5, 2,25", u",", u".", OnlyNumeric(), u"a, b = 1.5, 2.25"},
      // The word around the match decides, not the match alone.
      {u"Feld1 = 1", u"1", u"x", NotNumeric(), u"Feldx = 1"},
      {u"Feld1 = 1", u"1", u"x", OnlyNumeric(), u"Feld1 = x"},
      {u"x = 1.234,5 + 1.2", u"2", u"9", OnlyNumeric(), u"x = 1.934,5 + 1.2"},
      // A minus belongs to the word, as in whole-word matching.
      {u"-5 a-5", u"5", u"7", OnlyNumeric(), u"-7 a-5"},
      // A separator between two digits joins, one before a blank does not.
      {u"(1,5,x)", u"5", u"0", NotNumeric(), u"(1,5,x)"},
      {u"Round(x,2)", u"2", u"0", OnlyNumeric(), u"Round(x,0)"},
      // Both rules at once spare every match.
      {u"1 a", u"1|a", u"z", {.not_numeric = true, .only_numeric = true}, u"1 a"},
  };
  for (const Case& c : cases) Check(c);
}

TEST(ReplaceInStringExt, NumericWordsFollowTheLocale) {
  const ExtendedReplaceRules only = OnlyNumeric();
  {
    norvik50::testing::ScopedLocale locale("en-US");
    EXPECT_EQ(ReplaceInStringExt(u"1,234.5 1.234,5", u"4", u"_", 1, only), u"1,23_.5 1.234,5");
  }
  norvik50::testing::ScopedLocale locale("de-DE");
  EXPECT_EQ(ReplaceInStringExt(u"1,234.5 1.234,5", u"4", u"_", 1, only), u"1,234.5 1.23_,5");
}

TEST(ReplaceInStringExt, SignPairs) {
  const Case cases[] = {
      // Brackets protect what they enclose; a bracket left open does not.
      {u"f(a) a", u"a", u"x", Signs(u"()"), u"f(a) x"},
      {u"(a b", u"a", u"x", Signs(u"()"), u"(x b"},
      // Single quotes as a pair of equal signs; an open literal runs on.
      {u"'a' a 'a", u"a", u"x", Signs(u"''"), u"'a' x 'a"},
      // Several pairs; the double quotes still protect.
      {u"\"a\" (a) 'a' a", u"a", u"x", Signs(u"\"\"|()"), u"\"a\" (a) 'x' x"},
      // Empty spares nothing; a pair that is not two signs protects nothing.
      {u"\"a\" (a)", u"a", u"x", Signs(u""), u"\"x\" (x)"},
      {u"(a)", u"a", u"x", Signs(u"(|)"), u"(x)"},
      // A bracket brought in by a replacement counts for later matches.
      {u"x a) a", u"x|a", u"(", Signs(u"()"), u"( a) ("},
      // So does a quote.
      {u"x a a", u"x", u"'", Signs(u"''"), u"' a a"},
      {u"q a", u"q|a", u"'", Signs(u"''"), u"' a"},
  };
  for (const Case& c : cases) Check(c);
}

TEST(ReplaceInStringExt, SharedRulesOfThePlainReplace) {
  // Case is always ignored; inserted text is never searched again.
  EXPECT_EQ(ReplaceInStringExt(u"Abc abc", u"ABC", u"x", 1, {}), u"x x");
  EXPECT_EQ(ReplaceInStringExt(u"aa", u"a", u"aa", 1, {}), u"aaaa");
  // Whole words, and the start.
  EXPECT_EQ(ReplaceInStringExt(u"cat concat cat", u"cat", u"dog", 5, {.whole_word = true}),
            u"cat concat dog");
  // Only a leading term, once; the numeric rules still apply to it.
  EXPECT_EQ(ReplaceInStringExt(u"  1 1", u"1", u"2", 1, {.only_at_beginning = true}), u"  2 1");
  EXPECT_EQ(
      ReplaceInStringExt(u"1 1", u"1", u"2", 1, {.only_at_beginning = true, .not_numeric = true}),
      u"1 1");
  EXPECT_EQ(ReplaceInStringExt(u"(a) a", u"(", u"[", 1,
                               {.only_at_beginning = true, .not_in_signs = u"()"}),
            u"[a) a");
}

TEST(ReplaceInStringExt, ErrorsOfThePlainReplace) {
  EXPECT_EQ(ErrorOf([] { ReplaceInStringExt(u"abc", u"z|", u"", 1, {}); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { ReplaceInStringExt(u16string(20000, u'a'), u"a", u"bb", 1, {}); }),
            kErrOverflow);
  EXPECT_EQ(ErrorOf([] {
              ReplaceInStringExt(u"abc ", u"ab", u"x", 1,
                                 {.only_at_beginning = true, .whole_word = true});
            }),
            kErrInvalidCall);
}

// A long word with a match at every unit: each test reuses the word's
// edges, so this finishes at once rather than in quadratic time.
TEST(ReplaceInStringExt, LongWordsStayLinear) {
  norvik50::testing::ScopedLocale locale("en-US");
  const u16string digits(30000, u'1');
  EXPECT_EQ(ReplaceInStringExt(digits, u"1", u"2", 1, OnlyNumeric()), u16string(30000, u'2'));
  const u16string text = u"(" + u16string(30000, u'a') + u")";
  EXPECT_EQ(ReplaceInStringExt(text, u"a", u"b", 1, Signs(u"()")), text);
}

}  // namespace
}  // namespace norvik50
