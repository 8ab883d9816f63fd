#include "text/split.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/error.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using std::u16string;

using norvik50::testing::ErrorOf;

// ---- GetSubString ---------------------------------------------------------

TEST(GetSubString, BetweenTwoTerms) {
  EXPECT_EQ(GetSubString(u"key = value;", u"=", u";"), u"value");
  // A missing closing term gives "", not the rest of the text.
  EXPECT_EQ(GetSubString(u"key = value;", u"=", u"#"), u"");
  EXPECT_EQ(GetSubString(u"key = value;", u"#", u";"), u"");
  // Open sides.
  EXPECT_EQ(GetSubString(u"key = value;", u"", u"="), u"key");
  EXPECT_EQ(GetSubString(u"key = value;", u"=", u""), u"value;");
  // Nothing to cut: the text comes back as it is, blanks included.
  EXPECT_EQ(GetSubString(u"  x  ", u"", u""), u"  x  ");
}

TEST(GetSubString, StartIsIgnored) {
  // Both searches always start at 1.
  EXPECT_EQ(GetSubString(u"a=1; b=2;", u"=", u";", 6), u"1");
}

TEST(GetSubString, AlternativesCaseAndWords) {
  EXPECT_EQ(GetSubString(u"x: 5 END", u"=|:", u"end"), u"5");
  EXPECT_EQ(GetSubString(u"x: 5 END", u"=|:", u"end", 1, false), u"");
  // Whole words: «ab» inside «abc» does not close the span.
  EXPECT_EQ(GetSubString(u"( x abc ab y", u"(", u"ab", 1, true, true), u"x abc");
  // Only blanks are trimmed; a tab stays.
  EXPECT_EQ(GetSubString(u"=\tv ;", u"=", u";"), u"\tv");
}

// ---- SeparateString -------------------------------------------------------

struct Parts {
  u16string before = u"B0";
  u16string term = u"T0";
  u16string after = u"A0";
};

Parts Separate(const u16string& source, const u16string& find, int64_t start = 1,
               bool ignore_case = true) {
  Parts p;
  SeparateString(source, find, p.before, p.term, p.after, start, ignore_case);
  return p;
}

TEST(SeparateString, FirstAlternativeThatOccursWins) {
  const Parts p = Separate(u"a+b-c", u"-|+");
  EXPECT_EQ(p.before, u"a+b");
  EXPECT_EQ(p.term, u"-");
  EXPECT_EQ(p.after, u"c");
}

TEST(SeparateString, TrimsBlanksOnly) {
  const Parts p = Separate(u"\ta - b\t", u"-");
  EXPECT_EQ(p.before, u"\ta");
  EXPECT_EQ(p.term, u"-");
  EXPECT_EQ(p.after, u"b\t");
}

TEST(SeparateString, TermIsTheSourceText) {
  const Parts p = Separate(u"aXb", u"x");
  EXPECT_EQ(p.term, u"X");
  const Parts exact = Separate(u"aXb", u"x", 1, false);
  EXPECT_EQ(exact.term, u"T0");  // not found: outputs untouched
  EXPECT_EQ(exact.before, u"B0");
  EXPECT_EQ(exact.after, u"A0");
}

TEST(SeparateString, EmptyFindAndStart) {
  const Parts p = Separate(u" a ", u"", 0);  // no search, so no start check
  EXPECT_EQ(p.before, u"");
  EXPECT_EQ(p.term, u" a ");
  EXPECT_EQ(p.after, u"");
  const Parts later = Separate(u"a-b-c", u"-", 3);
  EXPECT_EQ(later.before, u"a-b");
  EXPECT_EQ(later.after, u"c");
  EXPECT_EQ(ErrorOf([] { Separate(u"a-b", u"-", 0); }), kErrInvalidCall);
  u16string text(40000, u'.');
  text[35000] = u'-';
  EXPECT_EQ(ErrorOf([&] { Separate(text, u"-"); }), kErrOverflow);
}

TEST(SeparateString, AnOutputMayBeTheSourceItself) {
  u16string text = u"left - right";
  u16string term, after;
  SeparateString(text, u"-", text, term, after);
  EXPECT_EQ(text, u"left");
  EXPECT_EQ(term, u"-");
  EXPECT_EQ(after, u"right");
}

TEST(SeparateString, EmptyAlternativeSplitsAtTheStart) {
  const Parts p = Separate(u"ab", u"z|", 2);
  EXPECT_EQ(p.before, u"a");
  EXPECT_EQ(p.term, u"");
  EXPECT_EQ(p.after, u"b");
}

// ---- Mid ------------------------------------------------------------------

TEST(Mid, Get) {
  EXPECT_EQ(Mid(u"abcdef", 3), u"cdef");
  EXPECT_EQ(Mid(u"abcdef", 3, 2), u"cd");
  EXPECT_EQ(Mid(u"abcdef", 3, 0), u"");
  EXPECT_EQ(Mid(u"abcdef", 5, 10), u"ef");
  EXPECT_EQ(Mid(u"abcdef", 10), u"");
  EXPECT_EQ(ErrorOf([] { Mid(u"abc", 0); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([] { Mid(u"abc", 1, -2); }), kErrInvalidCall);
}

TEST(Mid, LetIsASplice) {
  struct Case {
    const char16_t* source;
    int64_t start;
    int64_t length;
    const char16_t* value;
    const char16_t* expected;
    const char* why;
  };
  const Case cases[] = {
      {u"abcdef", 3, -1, u"XY", u"abXYef", "-1 replaces as many units as the value has"},
      {u"abcdef", 3, 1, u"XY", u"abXYdef", "one unit out, two in"},
      {u"abcdef", 3, 0, u"XY", u"abXYcdef", "length 0 inserts"},
      {u"abc", 3, -1, u"XYZ", u"abXYZ", "a value running past the end lengthens"},
      {u"abc", 4, -1, u"XY", u"abcXY", "one past the end appends"},
      {u"abc", 10, 2, u"XY", u"abcXY", "far past the end appends with no gap"},
      {u"", 1, -1, u"XY", u"XY", "empty text"},
      {u"abcdef", 5, -2, u"X", u"abcdXcdef", "a negative length resumes before the cut"},
  };
  for (const Case& c : cases) {
    u16string s = c.source;
    MidLet(s, c.start, c.length, c.value);
    EXPECT_EQ(s, c.expected) << c.why;
  }
  u16string s = u"abc";
  EXPECT_EQ(ErrorOf([&] { MidLet(s, 0, -1, u"x"); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { MidLet(s, 1, -3, u"x"); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { MidLet(s, 2147483647, 5, u"x"); }), kErrOverflow);
  EXPECT_EQ(s, u"abc");  // failures leave the text alone
}

}  // namespace
}  // namespace norvik50
