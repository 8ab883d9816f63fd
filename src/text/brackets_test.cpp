#include "text/brackets.h"

#include <gtest/gtest.h>

#include <string>

namespace norvik50 {
namespace {

using std::u16string;

struct Cut {
  bool found;
  u16string term = u"T0";
  u16string before = u"B0";
  u16string after = u"A0";
};

Cut Extract(const u16string& source, bool start_with_bracket = false) {
  Cut c{};
  c.found = ExtractBrackets(source, c.term, c.before, c.after, start_with_bracket);
  return c;
}

TEST(ExtractBrackets, FirstPairWithNestingAndQuotes) {
  // The shape the decimal rewriting of format calls cuts.
  Cut c = Extract(u"x = format(d, \"0,00\") + 1");
  ASSERT_TRUE(c.found);
  EXPECT_EQ(c.before, u"x = format");
  EXPECT_EQ(c.term, u"d, \"0,00\"");
  EXPECT_EQ(c.after, u" + 1");
  // Nested pairs belong to the term.
  c = Extract(u"f(a(b)c)d(e)");
  EXPECT_EQ(c.term, u"a(b)c");
  EXPECT_EQ(c.after, u"d(e)");
  // Brackets inside double quotes do not count.
  c = Extract(u"f(\")\", x)");
  EXPECT_EQ(c.term, u"\")\", x");
  c = Extract(u"\"(\" f(y)");
  EXPECT_EQ(c.before, u"\"(\" f");
  // A closing bracket before any opening one is ignored.
  c = Extract(u")(a)");
  EXPECT_EQ(c.term, u"a");
  EXPECT_EQ(c.before, u")");
}

TEST(ExtractBrackets, NoPairLeavesOutputsAlone) {
  for (const char16_t* source : {u"abc", u"f(a", u"f(a(b)", u"\"(a)\""}) {
    const Cut c = Extract(source);
    EXPECT_FALSE(c.found) << ::testing::PrintToString(u16string(source));
    EXPECT_EQ(c.term, u"T0");
    EXPECT_EQ(c.before, u"B0");
    EXPECT_EQ(c.after, u"A0");
  }
}

TEST(ExtractBrackets, AnOutputMayBeTheSourceItself) {
  u16string text = u"f(x) + 1";
  u16string before, after;
  ASSERT_TRUE(ExtractBrackets(text, text, before, after));
  EXPECT_EQ(text, u"x");
  EXPECT_EQ(before, u"f");
  EXPECT_EQ(after, u" + 1");
}

TEST(ExtractBrackets, StartWithBracket) {
  EXPECT_TRUE(Extract(u"(a)b", true).found);
  EXPECT_TRUE(Extract(u"  (a)b", true).found);
  EXPECT_FALSE(Extract(u"x(a)", true).found);
}

}  // namespace
}  // namespace norvik50
