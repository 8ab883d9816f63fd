#include "text/search.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/error.h"
#include "testing/error_number.h"
#include "text/signs.h"

namespace norvik50 {
namespace {

using std::u16string;

using norvik50::testing::ErrorOf;

// ---- FindSubString --------------------------------------------------------

TEST(FindSubString, SmallestPositionWinsAndFindFirstOffTakesListOrder) {
  u16string found;
  // «a» at 2 beats «b» at 3 although «b» comes first in the list.
  EXPECT_EQ(FindSubString(u"xab", u"b|a", 1, true, true, false, &found), 2);
  EXPECT_EQ(found, u"a");
  // Without bFindFirst the first alternative that occurs anywhere wins.
  EXPECT_EQ(FindSubString(u"xab", u"b|a", 1, true, false, false, &found), 3);
  EXPECT_EQ(found, u"b");
}

TEST(FindSubString, EqualPositionsKeepTheEarlierAlternative) {
  u16string found;
  EXPECT_EQ(FindSubString(u"xab", u"ab|a", 1, true, true, false, &found), 2);
  EXPECT_EQ(found, u"ab");
  EXPECT_EQ(FindSubString(u"xab", u"a|ab", 1, true, true, false, &found), 2);
  EXPECT_EQ(found, u"a");
}

TEST(FindSubString, FoundIsTheAlternativeAsListedAndUntouchedOnMiss) {
  u16string found = u"keep";
  // Case-insensitive: the listed spelling comes back, not the source's.
  EXPECT_EQ(FindSubString(u"xABC", u"abc", 1, true, true, false, &found), 2);
  EXPECT_EQ(found, u"abc");
  found = u"keep";
  EXPECT_EQ(FindSubString(u"xyz", u"q|r", 1, true, true, false, &found), 0);
  EXPECT_EQ(found, u"keep");
}

TEST(FindSubString, WholeWordBoundaries) {
  struct Case {
    const char16_t* source;
    const char16_t* find;
    int expected;
    const char* why;
  };
  const Case cases[] = {
      {u"x AND y", u"AND", 3, "blanks on both sides"},
      {u"xANDy", u"AND", 0, "letters on both sides"},
      {u"ANDx", u"AND", 1, "exactly one unit follows: it is not tested"},
      {u"ABC", u"AB", 1, "the same rule at the text's end"},
      {u"ABCD", u"AB", 0, "two units follow: the next one is tested"},
      {u"AND", u"AND", 1, "the match is the whole text"},
      {u"xAND", u"AND", 0, "letter on the left"},
      {u"xab ab", u"ab", 5, "a rejected match resumes one unit later"},
      {u"x-ab-xy", u"ab", 0, "hyphen is no separator"},
      {u"x\tab\txy", u"ab", 0, "tab is no separator"},
      {u"x\rab\nxy", u"ab", 3, "CR and LF are separators"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FindSubString(c.source, c.find, 1, true, true, true), c.expected) << c.why;
  }
}

TEST(FindSubString, EveryListedSeparatorAndNoOther) {
  const u16string separators = u" !{}[]()?.;,:+=<>'*/&%$\u00A7\\\u00B4`\"\r\n";
  ASSERT_EQ(separators.size(), 30u);  // 28 signs plus CR and LF
  for (char16_t c = 1; c < 0x300; ++c) {
    // The word «ab» between two copies of c, with two more units after it
    // so the right side is really tested.
    const u16string text = u16string(u"x") + c + u"ab" + c + u"yz";
    const bool is_separator = separators.find(c) != u16string::npos;
    EXPECT_EQ(FindSubString(text, u"ab", 1, false, true, true), is_separator ? 3 : 0)
        << "unit " << static_cast<int>(c);
  }
}

TEST(FindSubString, CaseFoldingPerUnit) {
  EXPECT_EQ(FindSubString(u"xABC", u"abc", 1, true), 2);
  EXPECT_EQ(FindSubString(u"xABC", u"abc", 1, false), 0);
  // Capital sharp s folds to ß, one unit each, so positions stay put.
  EXPECT_EQ(FindSubString(u"Stra\u1E9Ee", u"\u00DFe", 1, true), 5);
  // Final sigma and capital sigma fold to the same letter as σ.
  EXPECT_EQ(FindSubString(u"\u03A3x\u03C2", u"\u03C3", 2, true), 3);
  // Kelvin sign folds to k.
  EXPECT_EQ(FindSubString(u"5\u212A", u"k", 1, true), 2);
}

TEST(FindSubString, StartAndEmptyInputs) {
  u16string found = u"keep";
  EXPECT_EQ(FindSubString(u"", u"a", 1, true, true, false, &found), 0);
  EXPECT_EQ(FindSubString(u"abc", u"", 1), 0);  // no alternatives at all
  // A start below 1 is swallowed by the member's handler.
  EXPECT_EQ(FindSubString(u"abc", u"a", 0, true, true, false, &found), 0);
  EXPECT_EQ(FindSubString(u"abc", u"a", -5), 0);
  EXPECT_EQ(found, u"keep");
  EXPECT_EQ(FindSubString(u"abc", u"c", 4), 0);  // past the end
  EXPECT_EQ(FindSubString(u"abcabc", u"a", 2), 4);
}

TEST(FindSubString, EmptyAlternativeIsFoundAtTheStart) {
  // Searching for nothing finds it where the search starts, inside the text.
  u16string found = u"keep";
  EXPECT_EQ(FindSubString(u"abc", u"b|", 1, true, true, false, &found), 1);
  EXPECT_EQ(found, u"");
  EXPECT_EQ(FindSubString(u"abc", u"|", 3), 3);
  // ... but nothing past the last unit.
  EXPECT_EQ(FindSubString(u"abc", u"x|", 4), 0);
}

TEST(FindSubString, MatchesPastThe16BitRangeDoNotCount) {
  u16string text(40000, u'.');
  text.replace(32766, 1, u"z");  // position 32767
  text.replace(35000, 1, u"y");
  EXPECT_EQ(FindSubString(text, u"z"), 32767);
  // «y» sits past 32767: its position would overflow, so it is not found.
  EXPECT_EQ(FindSubString(text, u"y"), 0);
  u16string found;
  EXPECT_EQ(FindSubString(text, u"y|z", 1, true, false, false, &found), 32767);
  EXPECT_EQ(found, u"z");
  text[32766] = u'.';
  text[32767] = u'z';  // position 32768
  EXPECT_EQ(FindSubString(text, u"z"), 0);
}

TEST(FindSubString, IgnoringCaseAnywhereInALongText) {
  // The folded copy is made as far as a search reaches; a match must be
  // found wherever it lies against the steps in which that happens.
  for (int at = 0; at < 20000; at += 97) {
    u16string text(20000, u'x');
    text.replace(at, 6, u"NeEdLe");
    text.resize(20000);
    const int expected = at + 6 <= 20000 ? at + 1 : 0;
    EXPECT_EQ(FindSubString(text, u"needle|zz", 1, true), expected) << at;
    EXPECT_EQ(CountSubString(text, u"nEEDLE", 1, true), expected > 0 ? 1 : 0) << at;
  }
  for (int at : {4090, 4091, 4093, 4095, 4096, 8187, 8190, 8191, 16380, 16383}) {
    u16string text(20000, u'x');
    text.replace(at, 6, u"NeEdLe");
    EXPECT_EQ(FindSubString(text, u"needle", 1, true), at + 1) << at;
    EXPECT_EQ(FindSubString(text, u"needle", 200, true, true, true), 0) << at;  // no word
    EXPECT_EQ(FindLastSubString(text, u"NEEDLE", 1, true), at + 1) << at;
  }
}

TEST(HasSubString, AlternativesAndFailures) {
  EXPECT_EQ(HasSubString(u"abc", u"z|c"), -1);
  EXPECT_EQ(HasSubString(u"abc", u"z|q"), 0);
  EXPECT_EQ(HasSubString(u"abc", u"A", 1, false), 0);
  EXPECT_EQ(HasSubString(u"abc", u"a", 0), 0);  // start below 1 gives 0, no error
  EXPECT_EQ(HasSubString(u"abc", u"a", 2), 0);
}

// ---- FindLastSubString ----------------------------------------------------

TEST(FindLastSubString, OverlappingAndLiteral) {
  EXPECT_EQ(FindLastSubString(u"aaaa", u"aa"), 3);      // overlaps allowed
  EXPECT_EQ(FindLastSubString(u"a|b a|b", u"a|b"), 5);  // "|" is literal here
  EXPECT_EQ(FindLastSubString(u"xAx", u"a", 1, true), 2);
  EXPECT_EQ(FindLastSubString(u"xAx", u"a", 1, false), 0);
  EXPECT_EQ(FindLastSubString(u"abab", u"ab", 4), 0);  // nothing at or after 4
  EXPECT_EQ(FindLastSubString(u"abab", u"ab", 3), 3);
  // Searching for nothing walks to the last unit.
  EXPECT_EQ(FindLastSubString(u"abc", u""), 3);
  EXPECT_EQ(FindLastSubString(u"", u""), 0);
}

TEST(FindLastSubString, Errors) {
  EXPECT_EQ(ErrorOf([] { FindLastSubString(u"abc", u"a", 0); }), kErrInvalidCall);
  // No empty-source shortcut here: the start is checked first.
  EXPECT_EQ(ErrorOf([] { FindLastSubString(u"", u"a", 0); }), kErrInvalidCall);
  u16string text(40000, u'.');
  text[39000] = u'q';
  EXPECT_EQ(ErrorOf([&] { FindLastSubString(text, u"q"); }), kErrOverflow);
  text[39000] = u'.';
  text[100] = u'q';
  EXPECT_EQ(FindLastSubString(text, u"q"), 101);  // a long text is fine below the limit
  EXPECT_EQ(ErrorOf([&] { FindLastSubString(text, u""); }), kErrOverflow);
}

// ---- CountSubString / CountSubStringExt -----------------------------------

TEST(CountSubString, NonOverlappingSummedOverAlternatives) {
  EXPECT_EQ(CountSubString(u"aaaa", u"aa"), 2);
  EXPECT_EQ(CountSubString(u"aa", u"a|a"), 4);    // the same text counts twice
  EXPECT_EQ(CountSubString(u"abb", u"ab|b"), 3);  // 1 + 2
  EXPECT_EQ(CountSubString(u"aAa", u"a", 1, true), 3);
  EXPECT_EQ(CountSubString(u"aAa", u"a", 1, false), 2);
  EXPECT_EQ(CountSubString(u"abab", u"ab", 2), 1);
  EXPECT_EQ(CountSubString(u"abc", u"x|", 4), 0);  // nothing past the end
}

TEST(CountSubString, EmptyInputsWinOverABadStart) {
  EXPECT_EQ(CountSubString(u"", u"a", 0), 0);
  EXPECT_EQ(CountSubString(u"abc", u"", -3), 0);
  EXPECT_EQ(CountSubStringExt(u"", u"a", 0, true, u"()"), 0);
  EXPECT_EQ(ErrorOf([] { CountSubString(u"abc", u"a", 0); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([] { CountSubStringExt(u"abc", u"a", 0); }), kErrInvalidCall);
}

TEST(CountSubString, Overflows) {
  // The empty alternative is counted again and again until the count
  // overflows: an error, never a hang, even when a and b are absent.
  EXPECT_EQ(ErrorOf([] { CountSubString(u"xyz", u"a||b"); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { CountSubStringExt(u"xyz", u"|", 1, true, u"''"); }), kErrOverflow);
  // 40000 occurrences within 20000 units: the count itself overflows.
  const u16string many(20000, u'a');
  EXPECT_EQ(ErrorOf([&] { CountSubString(many, u"a|a"); }), kErrOverflow);
  EXPECT_EQ(CountSubString(many, u"a"), 20000);
  // An occurrence past 32767 overflows its position.
  u16string text(40000, u'.');
  text[35000] = u'q';
  EXPECT_EQ(ErrorOf([&] { CountSubString(text, u"q"); }), kErrOverflow);
  // The start after the last occurrence is a 16-bit position as well: a
  // match ending exactly at 32767 makes it 32768.
  u16string edge(32767, u'.');
  edge.back() = u'q';
  EXPECT_EQ(ErrorOf([&] { CountSubString(edge, u"q"); }), kErrOverflow);
  edge.back() = u'.';
  edge[32765] = u'q';
  EXPECT_EQ(CountSubString(edge, u"q"), 1);
}

TEST(CountSubStringExt, SignPairs) {
  EXPECT_EQ(CountSubStringExt(u"a 'a' a", u"a", 1, true, u"''"), 2);
  EXPECT_EQ(CountSubStringExt(u"a 'a' \"a\" a", u"a", 1, true, u"\"\"|''"), 2);
  EXPECT_EQ(CountSubStringExt(u"(a) a (a)x", u"a", 1, true, u"()"), 1);
  // No pairs: counts like CountSubString.
  EXPECT_EQ(CountSubStringExt(u"a 'a' a", u"a", 1, true, u""), 3);
  // A pair that is not two units long never encloses anything.
  EXPECT_EQ(CountSubStringExt(u"(a)x", u"a", 1, true, u"(|()"), 0);
  EXPECT_EQ(CountSubStringExt(u"(a)x", u"a", 1, true, u"(|(()"), 1);
}

// ---- IsInSigns ------------------------------------------------------------

TEST(IsInSigns, Examples) {
  struct Case {
    const char16_t* source;
    const char16_t* signs;
    int start;
    int len;
    bool expected;
    const char* why;
  };
  const Case cases[] = {
      {u"x(y)z", u"()", 3, 1, true, "plain brackets"},
      {u"x(y)z", u"()", 1, 1, false, "start below 2"},
      {u"x(y", u"()", 3, 1, false, "no unit after the span"},
      {u"x(y)z", u"()", 3, 0, false, "empty span"},
      {u"x(y)z", u"(", 3, 1, false, "one sign only"},
      {u"x(y)z", u"(])", 3, 1, false, "three signs"},
      {u"a)x(b", u"()", 3, 1, true, "parity only: )x( counts as inside"},
      {u"((x))z", u"()", 3, 1, true, "nested: each walk stops at count 1"},
      {u"(a)x(b)", u"()", 4, 1, false, "between two pairs"},
      {u"'a' 'b' c", u"''", 4, 1, false, "same signs: two on the left"},
      {u"'a' 'b' c", u"''", 6, 1, true, "same signs: three left, one right"},
      {u"x(y)z", u"()", 2, 3, false, "the span covers the signs"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsInSigns(c.source, c.signs, c.start, c.len), c.expected) << c.why;
    // The profile used for counting must agree on every case.
    EXPECT_EQ(SignProfile(c.source, c.signs).Encloses(c.start, c.len), c.expected) << c.why;
  }
}

}  // namespace
}  // namespace norvik50
