// The server store's cache: what it knows after notes and after being told
// that something changed elsewhere.
#include "settings/pg_read_cache.h"

#include <gtest/gtest.h>

namespace norvik50::settings {
namespace {

constexpr int32_t kUser = -2147483647, kMachine = -2147483646;

std::vector<std::string> Folds(const std::vector<CachedChild>* list) {
  std::vector<std::string> folds;
  if (list != nullptr) {
    for (const auto& c : *list) folds.push_back(c.fold);
  }
  return folds;
}

TEST(PgReadCacheTest, ValuesAndKeysAsNoted) {
  PgReadCache cache;
  EXPECT_EQ(cache.Value(kUser, "a", "v"), nullptr);  // nothing known
  cache.NoteValue(kUser, "a", "v", CachedValue{1, "x"});
  ASSERT_NE(cache.Value(kUser, "a", "v"), nullptr);
  EXPECT_EQ((*cache.Value(kUser, "a", "v"))->data, "x");
  EXPECT_EQ(cache.KeyExists(kUser, "a"), true);         // a stored value proves its key
  EXPECT_EQ(cache.Value(kMachine, "a", "v"), nullptr);  // roots are apart
  // A missing value is known as missing, and proves nothing of its key.
  cache.NoteValue(kUser, "b", "v", std::nullopt);
  ASSERT_NE(cache.Value(kUser, "b", "v"), nullptr);
  EXPECT_FALSE(cache.Value(kUser, "b", "v")->has_value());
  EXPECT_EQ(cache.KeyExists(kUser, "b"), std::nullopt);
  // A key known to be gone has every value gone.
  cache.NoteKey(kUser, "a", false);
  ASSERT_NE(cache.Value(kUser, "a", "other"), nullptr);
  EXPECT_FALSE(cache.Value(kUser, "a", "v")->has_value());
}

TEST(PgReadCacheTest, ListsFollowThisProcesssChangesAndForgetOthers) {
  PgReadCache cache;
  cache.NoteChildren(kUser, "p", {{"B", "b"}, {"D", "d"}});
  cache.ChildAdded(kUser, "p\\c", "C");
  cache.ChildAdded(kUser, "p\\a", "A");
  cache.ChildAdded(kUser, "p\\c", "c");  // already there: kept as first written
  EXPECT_EQ(Folds(cache.Children(kUser, "p")), (std::vector<std::string>{"a", "b", "c", "d"}));
  EXPECT_EQ((*cache.Children(kUser, "p"))[2].name, "C");
  cache.ChildRemoved(kUser, "p\\b");
  cache.ChildRemoved(kUser, "p\\zz");  // not listed: nothing happens
  EXPECT_EQ(Folds(cache.Children(kUser, "p")), (std::vector<std::string>{"a", "c", "d"}));
  // Root level: the parent is the root itself ("").
  cache.NoteChildren(kUser, "", {{"P", "p"}});
  cache.ChildAdded(kUser, "q", "Q");
  EXPECT_EQ(Folds(cache.Children(kUser, "")), (std::vector<std::string>{"p", "q"}));
  // Another process changed p\c: its entry and its parent's list go, the
  // grandparent's list stays.
  cache.NoteValue(kUser, "p\\c", "v", CachedValue{1, "x"});
  cache.ForgetKey(kUser, "p\\c");
  EXPECT_EQ(cache.Children(kUser, "p"), nullptr);
  EXPECT_EQ(cache.Value(kUser, "p\\c", "v"), nullptr);
  EXPECT_NE(cache.Children(kUser, ""), nullptr);
  cache.ForgetRoot(kUser);
  EXPECT_EQ(cache.size(), 0u);
}

TEST(PgReadCacheTest, StartsAgainWhenFull) {
  PgReadCache cache;
  for (std::size_t i = 0; i < PgReadCache::kMaxKeys; ++i) {
    cache.NoteKey(kMachine, "k" + std::to_string(i), true);
  }
  EXPECT_EQ(cache.size(), PgReadCache::kMaxKeys);
  cache.NoteKey(kMachine, "one more", true);
  EXPECT_EQ(cache.size(), 1u);
  EXPECT_EQ(cache.KeyExists(kMachine, "one more"), true);
  EXPECT_EQ(cache.KeyExists(kMachine, "k0"), std::nullopt);
}

}  // namespace
}  // namespace norvik50::settings
