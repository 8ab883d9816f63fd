#include "core/name_fold.h"

#include <gtest/gtest.h>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

TEST(FoldNameTest, NamesThatDifferOnlyInCaseFoldAlike) {
  struct Case {
    const char16_t* a;
    const char16_t* b;
    bool same;
  } cases[] = {
      {u"Software", u"SOFTWARE", true},
      {u"\u00E4\u00F6\u00FC", u"\u00C4\u00D6\u00DC", true},  // äöü
      {u"\u0161\u0153\u00FF", u"\u0160\u0152\u0178", true},  // š œ ÿ against Š Œ Ÿ
      {u"\u00DF", u"SS", false},                             // one unit stays one unit
      {u"I", u"\u0131", false},                              // no Turkic dotless i
      {u"a b", u"A_B", false},
      {u"", u"", true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FoldName(c.a) == FoldName(c.b), c.same) << ToUtf8(c.a) << " / " << ToUtf8(c.b);
  }
  // The length never changes, so positions in a folded name are the name's.
  EXPECT_EQ(FoldName(u"STRA\u00DFE\u0130").size(), 7u);
}

}  // namespace
}  // namespace norvik50
