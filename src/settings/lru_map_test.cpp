#include "settings/lru_map.h"

#include <gtest/gtest.h>

#include <string>

namespace norvik50::settings {
namespace {

std::string Key(int i) { return "software\\vendor\\key" + std::to_string(i); }

// Which of keys 0..n-1 are kept.
std::string Kept(LruMap<int>& map, int n) {
  std::string kept;
  for (int i = 0; i < n; ++i) {
    // Find refreshes the entry, which is harmless here: every key is looked
    // at once, in order, after the test's own uses.
    if (map.Find(Key(i))) kept += std::to_string(i);
  }
  return kept;
}

TEST(LruMapTest, ForgetsTheLeastRecentlyUsedEntryOneAtATime) {
  struct Case {
    const char* what;
    void (*use)(LruMap<int>&);  // after putting 0, 1, 2 into a map of 3
    const char* kept;           // after putting 3
  } cases[] = {
      {"nothing used: the oldest goes", [](LruMap<int>&) {}, "123"},
      {"a lookup keeps an entry", [](LruMap<int>& m) { (void)m.Find(Key(0)); }, "023"},
      {"a new value keeps an entry", [](LruMap<int>& m) { m.Put(Key(0), 7); }, "023"},
      {"a missed lookup changes nothing", [](LruMap<int>& m) { (void)m.Find(Key(9)); }, "123"},
      {"the last used of several stays",
       [](LruMap<int>& m) {
         (void)m.Find(Key(1));
         (void)m.Find(Key(0));
       },
       "013"},
  };
  for (const Case& c : cases) {
    LruMap<int> map(3);
    for (int i = 0; i < 3; ++i) map.Put(Key(i), i);
    c.use(map);
    map.Put(Key(3), 3);
    EXPECT_EQ(map.size(), 3u) << c.what;
    EXPECT_EQ(Kept(map, 4), c.kept) << c.what;
  }
}

TEST(LruMapTest, ReplacingAValueKeepsOneEntry) {
  LruMap<int> map(2);
  map.Put("a", 1);
  map.Put("a", 2);
  EXPECT_EQ(map.size(), 1u);
  EXPECT_EQ(map.Find("a"), 2);
}

// A walk over more keys than the map holds: the map stays full and keeps
// the most recent keys, instead of emptying itself when it fills.
TEST(LruMapTest, AWalkLargerThanTheBoundKeepsTheMapFull) {
  constexpr int kCapacity = 64;
  LruMap<int> map(kCapacity);
  for (int i = 0; i < 10 * kCapacity; ++i) {
    map.Put(Key(i), i);
    ASSERT_EQ(map.size(), static_cast<std::size_t>(std::min(i + 1, kCapacity))) << i;
  }
  for (int i = 9 * kCapacity; i < 10 * kCapacity; ++i) {
    EXPECT_EQ(map.Find(Key(i)), i);
  }
  EXPECT_FALSE(map.Find(Key(9 * kCapacity - 1)));
  map.Clear();
  EXPECT_EQ(map.size(), 0u);
  EXPECT_FALSE(map.Find(Key(10 * kCapacity - 1)));
}

}  // namespace
}  // namespace norvik50::settings
