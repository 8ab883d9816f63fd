#include "text/replace.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/error.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using std::u16string;

using norvik50::testing::ErrorOf;

// Defaults as the member has them: start 1, ignore case, everywhere,
// protect double quotes, not whole words.
u16string Replace(const u16string& source, const u16string& find, const u16string& with) {
  return ReplaceInString(source, find, with);
}

TEST(ReplaceInString, AlwaysIgnoresCase) {
  EXPECT_EQ(Replace(u"Abc abc", u"ABC", u"x"), u"x x");
  // The caller's case flag is not read.
  EXPECT_EQ(ReplaceInString(u"Abc abc", u"ABC", u"x", 1, false), u"x x");
}

TEST(ReplaceInString, DoubleQuotesProtectButSingleQuotesDoNot) {
  EXPECT_EQ(Replace(u"a \"b\" b", u"b", u"c"), u"a \"b\" c");
  EXPECT_EQ(ReplaceInString(u"a \"b\" b", u"b", u"c", 1, true, false, false), u"a \"c\" c");
  EXPECT_EQ(Replace(u"a 'b' b", u"b", u"c"), u"a 'c' c");
  // A quote brought in by the replacement protects the matches after it.
  EXPECT_EQ(Replace(u"q b q", u"q|b", u"\""), u"\" b q");
  EXPECT_EQ(ReplaceInString(u"q b q", u"q|b", u"\"", 1, true, false, false), u"\" \" \"");
}

TEST(ReplaceInString, InsertedTextIsNeverSearchedAgain) {
  EXPECT_EQ(Replace(u"aa", u"a", u"aa"), u"aaaa");
  EXPECT_EQ(Replace(u"abab", u"ab", u"b"), u"bb");
}

TEST(ReplaceInString, AlternativesSmallestPositionFirst) {
  EXPECT_EQ(Replace(u"ab", u"b|a", u"x"), u"xx");
  // At one position the earlier alternative wins, even if it is shorter.
  EXPECT_EQ(Replace(u"abc", u"a|ab", u"x"), u"xbc");
  EXPECT_EQ(Replace(u"abc", u"ab|a", u"x"), u"xc");
}

TEST(ReplaceInString, StartAndEmptyInputs) {
  EXPECT_EQ(ReplaceInString(u"b b b", u"b", u"c", 3), u"b c c");
  EXPECT_EQ(ReplaceInString(u"b b b", u"b", u"c", 6), u"b b b");
  EXPECT_EQ(ReplaceInString(u"b b b", u"b", u"c", 0), u"b b b");  // search gives 0
  EXPECT_EQ(Replace(u"abc", u"", u"x"), u"abc");
  EXPECT_EQ(Replace(u"", u"a", u"x"), u"");
  EXPECT_EQ(Replace(u"abc", u"b", u""), u"ac");
  EXPECT_EQ(Replace(u"aaa", u"a", u""), u"");
}

TEST(ReplaceInString, WholeWords) {
  EXPECT_EQ(ReplaceInString(u"cat concat cat", u"cat", u"dog", 1, true, false, true, true),
            u"dog concat dog");
  // The unit left of a match can be the end of an inserted text: after
  // «a» became «,» the second «a» stands after a separator.
  EXPECT_EQ(ReplaceInString(u"aa", u"a", u",", 1, true, false, true, true), u",,");
  EXPECT_EQ(ReplaceInString(u"aa", u"a", u"x", 1, true, false, true, true), u"xa");
}

TEST(ReplaceInString, OnlyAtBeginning) {
  // Only the leading term, once; leading blanks stay.
  EXPECT_EQ(ReplaceInString(u"  x x", u"x", u"y", 1, true, true), u"  y x");
  EXPECT_EQ(ReplaceInString(u"a x", u"x", u"y", 1, true, true), u"a x");
  // The start is not used in this form.
  EXPECT_EQ(ReplaceInString(u"x x", u"x", u"y", 3, true, true), u"y x");
  // Quotes play no part here.
  EXPECT_EQ(ReplaceInString(u"\"x", u"\"", u"", 1, true, true), u"x");
}

TEST(ReplaceInString, OnlyAtBeginningWithoutUntrimmedMatch) {
  // In «ab» (trimmed) the word «ab» stands at 1, since the single following
  // unit is untested; in «abc » two units follow and «c» rejects it. The
  // splice would then cut the text at -1: invalid argument.
  EXPECT_EQ(ErrorOf([] { ReplaceInString(u"abc ", u"ab", u"x", 1, true, true, true, true); }),
            kErrInvalidCall);
}

TEST(ReplaceInString, EndlessEmptyMatchesEndInOverflow) {
  // Nothing replaced by nothing would stay at the same place for ever.
  EXPECT_EQ(ErrorOf([] { Replace(u"abc", u"z|", u""); }), kErrOverflow);
  // Nothing replaced by something moves on until the position overflows.
  EXPECT_EQ(ErrorOf([] { Replace(u"abc", u"|", u"x"); }), kErrOverflow);
  // Inside quotes the empty match is skipped one unit at a time and ends.
  EXPECT_EQ(ReplaceInString(u"\"abc", u"|", u"", 2), u"\"abc");
}

TEST(ReplaceInString, SixteenBitPositions) {
  // Growing replacements push the start past 32767.
  const u16string long_text(20000, u'a');
  EXPECT_EQ(ErrorOf([&] { Replace(long_text, u"a", u"bb"); }), kErrOverflow);
  // Shrinking ones keep every position small enough.
  EXPECT_EQ(Replace(long_text, u"aa", u"b"), u16string(10000, u'b'));
  // A match past 32767 is not reported by the search: it stays as it is.
  u16string text(40000, u'.');
  text[100] = u'a';
  text[35000] = u'a';
  u16string expected = text;
  expected[100] = u'b';
  EXPECT_EQ(Replace(text, u"a", u"b"), expected);
}

}  // namespace
}  // namespace norvik50
