#include "text/bracket_pairs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace norvik50 {
namespace {

using std::u16string;

TEST(CompleteBracketPairs, NestingQuotesAndStrayBrackets) {
  struct Case {
    const char16_t* text;
    std::vector<BracketPair> pairs;
  };
  const Case cases[] = {
      {u"", {}},
      {u"f(a(b)c)d(e)", {{1, 7}, {3, 5}, {9, 11}}},  // in the order of their "("
      {u")(a)", {{1, 3}}},                           // a ")" with none open
      {u"((a)", {{1, 3}}},                           // a "(" never closed
      {u"(\")\")", {{0, 4}}},                        // a bracket in a literal
      {u"\"(\" (x", {}},                             //
      {u"\"(a)", {}},                                // a literal left open runs on
  };
  for (const Case& c : cases) {
    EXPECT_EQ(CompleteBracketPairs(c.text), c.pairs) << ::testing::PrintToString(u16string(c.text));
  }
}

TEST(PhraseWithoutBrackets, TakesOutOutermostPairs) {
  struct Case {
    const char16_t* text;
    const char16_t* expected;
  };
  const Case cases[] = {
      {u"Müller (Kunde) GmbH", u"Müller GmbH"},  // the blanks before a pair go with it
      {u"f(x)", u"f"},
      {u"a(b)c", u"ac"},
      {u"(a) b (c)", u"b"},              // trimmed at both ends
      {u"a (b (c) d) e", u"a e"},        // nested pairs go with the outer one
      {u"a (b", u"a (b"},                // no partner: kept
      {u"a) b", u"a) b"},                //
      {u"x \"(y)\" (z)", u"x \"(y)\""},  // literals are kept whole
      {u"  plain  ", u"plain"},          //
      {u"", u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(PhraseWithoutBrackets(c.text), c.expected)
        << ::testing::PrintToString(u16string(c.text));
  }
}

}  // namespace
}  // namespace norvik50
