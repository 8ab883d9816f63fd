// The cache of compiled XPath expressions: what it keeps and what it drops
// when full.
#include "resources/xpath_cache.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

std::u16string Numbered(std::u16string_view stem, std::size_t n) {
  return std::u16string(stem) + FromUtf8(std::to_string(n)) + u"\"]";
}

TEST(XPathCacheTest, SameTextSameQuery) {
  const auto first = CompiledXPath(u"/resources/item[@name=\"same\"]");
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(CompiledXPath(u"/resources/item[@name=\"same\"]"), first);
  EXPECT_NE(CompiledXPath(u"/resources/item[@name=\"other\"]"), first);
}

TEST(XPathCacheTest, BrokenExpressionIsNull) {
  EXPECT_EQ(CompiledXPath(u"/resources/item[@name=\"a\"\"]"), nullptr);
  EXPECT_EQ(CompiledXPath(u"/resources/item[@name=\"a\"\"]"), nullptr);  // kept as broken
}

// An expression in use survives any number of others passing through the
// full cache; one not used since is compiled afresh. (The queries are held
// here, so a recompiled one is a new object, never the old address.)
TEST(XPathCacheTest, FullCacheDropsTheLeastRecentlyUsed) {
  const std::u16string busy = u"/resources/item[@name=\"busy\"]";
  const auto busy_query = CompiledXPath(busy);
  const auto idle_query = CompiledXPath(Numbered(u"/resources/item[@name=\"idle", 0));
  std::vector<std::shared_ptr<const pugi::xpath_query>> held;
  for (std::size_t n = 0; n < 3 * kXPathCacheSize; ++n) {
    held.push_back(CompiledXPath(Numbered(u"/resources/item[@name=\"passing", n)));
    if (n % 100 == 0) {
      ASSERT_EQ(CompiledXPath(busy), busy_query) << "after " << n << " others";
    }
  }
  EXPECT_EQ(CompiledXPath(busy), busy_query);
  EXPECT_NE(CompiledXPath(Numbered(u"/resources/item[@name=\"idle", 0)), idle_query);
  // The last ones in are still kept.
  EXPECT_EQ(CompiledXPath(Numbered(u"/resources/item[@name=\"passing", 3 * kXPathCacheSize - 1)),
            held.back());
}

}  // namespace
}  // namespace norvik50
