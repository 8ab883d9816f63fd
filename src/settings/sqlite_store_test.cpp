// Registry semantics on each store: the SQLite store on real database
// files in a temporary folder, and the settings server store on a real
// server. What only concerns the local files is checked on those alone.
#include "settings/sqlite_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>

#include "norvik50/encoding.h"
#include "settings/pg_server_for_tests.h"
#include "settings/registry_algorithms.h"
#include "settings/registry_names.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using testing::ScopedEnv;
using testing::TempFolder;

class StoreRulesTest : public ::testing::TestWithParam<StoreKind> {
 protected:
  void SetUp() override {
    if (local()) return;
    NORVIK50_NEED_TEST_SERVER();
    EmptyServer();
  }
  bool local() const { return GetParam() == StoreKind::kLocal; }
  // Another connection to the same store, as another program has.
  std::shared_ptr<RegistryStore> Fresh() {
    if (local()) return std::make_shared<SqliteStore>();
    return ServerStore("desk");
  }

  TempFolder dir_;
  ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  std::shared_ptr<RegistryStore> owned_ = Fresh();
  RegistryStore& store_ = *owned_;

  RegKey Create(std::u16string_view path, int32_t root = HKEY_CURRENT_USER) {
    RegKey key = 0;
    EXPECT_EQ(store_.CreateKey(root, path, 0, KEY_ALL_ACCESS, key, nullptr), 0) << ToUtf8(path);
    return key;
  }
  // The local store sees another connection's commit at its next read;
  // the server store once the commit's announcement arrived, which is
  // waited for here (up to five seconds) until `seen` says so.
  template <class Seen>
  void AwaitOthersCommit(Seen seen) {
    auto* server = dynamic_cast<PgStore*>(&store_);
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (server != nullptr && !seen() && std::chrono::steady_clock::now() < give_up) {
      server->AwaitChanges(50);
    }
  }
  std::vector<std::u16string> Children(RegKey key) {
    std::vector<std::u16string> names;
    std::u16string name;
    for (uint32_t i = 0; store_.EnumKey(key, i, 256, name) == 0; ++i) names.push_back(name);
    return names;
  }
};

TEST_P(StoreRulesTest, KeyNamesIgnoreCaseAcrossWindows1252AndKeepTheirCase) {
  const RegKey k = Create(u"Software\\Äpfel\\ŠKODA\\Œuvre\\ŸES");
  ASSERT_EQ(store_.CloseKey(k), 0);
  struct Case {
    std::u16string path;
    int32_t code;
  } cases[] = {
      {u"software\\äpfel\\škoda\\œuvre\\ÿes", 0},  // every letter folded, umlauts and
                                                   // the 0x80-0x9F letters included
      {u"SOFTWARE\\ÄPFEL\\ŠKODA\\ŒUVRE\\ŸES", 0},
      {u"Software\\Apfel", 2},       // no accent folding: another name
      {u"Software\\Äpfel\\", 0},     // one trailing separator is allowed
      {u"Software\\\\Äpfel", 1010},  // an empty name inside the path
  };
  for (const auto& c : cases) {
    RegKey key = 0;
    EXPECT_EQ(store_.OpenKey(HKEY_CURRENT_USER, c.path, KEY_QUERY_VALUE, key), c.code)
        << ToUtf8(c.path);
    if (c.code == 0) store_.CloseKey(key);
  }
  // The name is kept as first written, whatever case later calls use.
  RegKey sw = 0;
  ASSERT_EQ(store_.OpenKey(HKEY_CURRENT_USER, u"SOFTWARE", KEY_QUERY_VALUE, sw), 0);
  EXPECT_EQ(Children(sw), std::vector<std::u16string>{u"Äpfel"});
  int32_t disposition = 0;
  RegKey again = 0;
  ASSERT_EQ(store_.CreateKey(HKEY_CURRENT_USER, u"software\\ÄPFEL", 0, 63, again, &disposition), 0);
  EXPECT_EQ(disposition, REG_OPENED_EXISTING_KEY);
  EXPECT_EQ(Children(sw), std::vector<std::u16string>{u"Äpfel"});
}

TEST_P(StoreRulesTest, ValueNamesIgnoreCaseAndKeepTheFirstSpelling) {
  const RegKey k = Create(u"App");
  ASSERT_EQ(store_.SetValue(k, u"Größe", REG_SZ, "1"), 0);
  ASSERT_EQ(store_.SetValue(k, u"GRÖSSE", REG_SZ, "2"), 0);  // ß does not fold to SS
  ASSERT_EQ(store_.SetValue(k, u"gröSSe", REG_SZ, "3"), 0);  // same name as GRÖSSE
  int32_t type = 0;
  std::string data;
  ASSERT_EQ(store_.QueryValue(k, u"GRÖSSE", 1024, type, data), 0);
  EXPECT_EQ(data, std::string("3\0", 2));
  ASSERT_EQ(store_.QueryValue(k, u"größe", 1024, type, data), 0);
  EXPECT_EQ(data, std::string("1\0", 2));
  std::u16string name;
  // Name order: "grösse" before "größe" (s < ß); the spelling of the first
  // write survives later overwrites.
  ASSERT_EQ(store_.EnumValue(k, 0, name, type, data), 0);
  EXPECT_EQ(name, u"GRÖSSE");
  ASSERT_EQ(store_.EnumValue(k, 1, name, type, data), 0);
  EXPECT_EQ(name, u"Größe");
  EXPECT_EQ(store_.EnumValue(k, 2, name, type, data), ERROR_NO_MORE_ITEMS);
}

TEST_P(StoreRulesTest, SubKeysEnumerateInCaseInsensitiveOrder) {
  for (const auto* n : {u"beta", u"Alpha", u"Öl", u"gamma", u"ALPHA2", u"Zeta", u"_x"}) {
    store_.CloseKey(Create(std::u16string(u"Root\\") + n));
  }
  RegKey root = 0;
  ASSERT_EQ(store_.OpenKey(HKEY_CURRENT_USER, u"root", KEY_ENUMERATE_SUB_KEYS, root), 0);
  // Folded order: "_" sorts before letters once they are folded to lower case,
  // "ö" after every ASCII letter.
  const std::vector<std::u16string> expected{u"_x",    u"Alpha", u"ALPHA2", u"beta",
                                             u"gamma", u"Zeta",  u"Öl"};
  EXPECT_EQ(Children(root), expected);
  // Index access out of order gives the same names as walking.
  std::u16string name;
  ASSERT_EQ(store_.EnumKey(root, 4, 256, name), 0);
  EXPECT_EQ(name, u"gamma");
  ASSERT_EQ(store_.EnumKey(root, 0, 256, name), 0);
  EXPECT_EQ(name, u"_x");
  EXPECT_EQ(store_.EnumKey(root, 7, 256, name), ERROR_NO_MORE_ITEMS);
}

// Walking by index continues from the last entry a handle saw, in either
// direction; whatever the order of the indexes, each gives the entry at
// that place in fold order, and a change to the store between two calls
// is seen at once.
TEST_P(StoreRulesTest, EnumerationByIndexInAnyOrder) {
  const RegKey parent = Create(u"Walk");
  std::vector<std::u16string> keys, values;
  for (int i = 0; i < 60; ++i) {
    // Mixed case and widths, so that fold order is not insertion order.
    const std::u16string n = (i % 3 == 0 ? u"K" : u"k") + FromUtf8(std::to_string(i * 37 % 61));
    store_.CloseKey(Create(u"Walk\\" + n));
    ASSERT_EQ(store_.SetValue(parent, u"V" + n, REG_SZ, "x"), 0);
    keys.push_back(n);
    values.push_back(u"V" + n);
  }
  auto by_fold = [](const std::u16string& a, const std::u16string& b) {
    return FoldName(a) < FoldName(b);
  };
  std::sort(keys.begin(), keys.end(), by_fold);
  std::sort(values.begin(), values.end(), by_fold);
  std::vector<uint32_t> descending(60), shuffled(60);
  for (uint32_t i = 0; i < 60; ++i) descending[i] = 59 - i;
  for (uint32_t i = 0; i < 60; ++i) shuffled[i] = (i * 23) % 60;
  const std::vector<std::vector<uint32_t>> orders{
      descending, shuffled, {0, 0, 1, 1, 30, 29, 31, 2, 58, 59, 60, 59, 0}};
  RegKey walk = 0;
  ASSERT_EQ(store_.OpenKey(HKEY_CURRENT_USER, u"Walk", KEY_QUERY_VALUE, walk), 0);
  for (const auto& order : orders) {
    for (const uint32_t i : order) {
      std::u16string name;
      int32_t type = 0;
      std::string data;
      if (i >= 60) {
        EXPECT_EQ(store_.EnumKey(walk, i, 256, name), ERROR_NO_MORE_ITEMS);
        EXPECT_EQ(store_.EnumValue(walk, i, name, type, data), ERROR_NO_MORE_ITEMS);
        continue;
      }
      ASSERT_EQ(store_.EnumKey(walk, i, 256, name), 0) << i;
      EXPECT_EQ(name, keys[i]) << i;
      ASSERT_EQ(store_.EnumValue(walk, i, name, type, data), 0) << i;
      EXPECT_EQ(name, values[i]) << i;
    }
  }
  // Another program adds an entry in front while this handle walks: the
  // next index counts it, though the store did not change through us.
  std::u16string name;
  int32_t type = 0;
  std::string data;
  ASSERT_EQ(store_.EnumKey(walk, 10, 256, name), 0);
  ASSERT_EQ(store_.EnumValue(walk, 10, name, type, data), 0);
  const auto other_store = Fresh();
  RegistryStore& other = *other_store;
  RegKey theirs = 0;
  ASSERT_EQ(other.CreateKey(HKEY_CURRENT_USER, u"Walk\\0first", 0, 63, theirs, nullptr), 0);
  ASSERT_EQ(other.SetValue(theirs, u"", REG_SZ, "x"), 0);
  RegKey their_parent = 0;
  ASSERT_EQ(other.OpenKey(HKEY_CURRENT_USER, u"Walk", KEY_SET_VALUE, their_parent), 0);
  ASSERT_EQ(other.SetValue(their_parent, u"0first", REG_SZ, "x"), 0);
  AwaitOthersCommit([&] { return store_.EnumKey(walk, 0, 256, name) == 0 && name == u"0first"; });
  ASSERT_EQ(store_.EnumKey(walk, 10, 256, name), 0);
  ASSERT_EQ(store_.EnumValue(walk, 10, name, type, data), 0);
  ASSERT_EQ(store_.EnumKey(walk, 11, 256, name), 0);
  EXPECT_EQ(name, keys[10]);
  ASSERT_EQ(store_.EnumValue(walk, 11, name, type, data), 0);
  EXPECT_EQ(name, values[10]);
  ASSERT_EQ(store_.EnumKey(walk, 0, 256, name), 0);
  EXPECT_EQ(name, u"0first");
}

TEST_P(StoreRulesTest, DeleteKeyRules) {
  store_.CloseKey(Create(u"A\\B\\C"));
  const RegKey a = Create(u"A");
  ASSERT_EQ(store_.SetValue(a, u"v", REG_SZ, "x"), 0);
  EXPECT_EQ(store_.DeleteKey(HKEY_CURRENT_USER, u"A"), 5);     // still has sub-keys
  EXPECT_EQ(store_.DeleteKey(HKEY_CURRENT_USER, u"A\\X"), 2);  // missing
  EXPECT_EQ(store_.DeleteKey(HKEY_CURRENT_USER, u""), 5);      // a root stays
  EXPECT_EQ(store_.DeleteKey(a, u"b\\c"), 0);                  // relative to a handle
  EXPECT_EQ(store_.DeleteKey(HKEY_CURRENT_USER, u"a\\B"), 0);
  EXPECT_EQ(store_.DeleteKey(HKEY_CURRENT_USER, u"A"), 0);
  // The open handle now names a deleted key: writes through it are refused
  // instead of leaving a value no key owns.
  EXPECT_EQ(store_.SetValue(a, u"v", REG_SZ, "y"), 1010);
  store_.CloseKey(Create(u"A"));
  int32_t type = 0;
  std::string data;
  RegKey fresh = 0;
  ASSERT_EQ(store_.OpenKey(HKEY_CURRENT_USER, u"A", KEY_QUERY_VALUE, fresh), 0);
  EXPECT_EQ(store_.QueryValue(fresh, u"v", 1024, type, data), 2);  // values went with the key
}

TEST_P(StoreRulesTest, NameLengthLimits) {
  const std::u16string k255(255, u'k'), k256(256, u'k');
  const std::u16string v16383(16383, u'v'), v16384(16384, u'v');
  RegKey key = 0;
  EXPECT_EQ(store_.CreateKey(HKEY_CURRENT_USER, k255, 0, 63, key, nullptr), 0);
  EXPECT_EQ(store_.CreateKey(HKEY_CURRENT_USER, k256, 0, 63, key, nullptr), 1010);
  // Keys nest at most 512 deep, counted from the root through any handle.
  std::u16string deep = u"d";
  for (int i = 1; i < 512; ++i) deep += u"\\d";
  EXPECT_EQ(store_.CreateKey(HKEY_CURRENT_CONFIG, deep, 0, 63, key, nullptr), 0);
  EXPECT_EQ(store_.CreateKey(key, u"e", 0, 63, key, nullptr), 1010);
  EXPECT_EQ(store_.CreateKey(HKEY_CURRENT_CONFIG, deep + u"\\e", 0, 63, key, nullptr), 1010);
  const RegKey k = Create(u"Limits");
  EXPECT_EQ(store_.SetValue(k, v16383, REG_SZ, "a"), 0);
  EXPECT_EQ(store_.SetValue(k, v16384, REG_SZ, "a"), 1010);
  // A 255-character name needs a buffer of 256 (its terminator included).
  RegKey root = HKEY_CURRENT_USER;
  std::u16string name;
  EXPECT_EQ(store_.EnumKey(root, 0, 255, name), kRegMoreData);
  EXPECT_EQ(store_.EnumKey(root, 0, 256, name), 0);
  EXPECT_EQ(name, k255);
}

TEST_P(StoreRulesTest, QueryBufferCountsCharactersForTextAndBytesOtherwise) {
  const RegKey k = Create(u"Buf");
  const std::string ascii(1023, 'a');  // 1023 characters + terminator = 1024
  std::u16string umlauts(1023, u'ä');  // two UTF-8 bytes each, one for the caller
  ASSERT_EQ(store_.SetValue(k, u"a", REG_SZ, ascii), 0);
  ASSERT_EQ(store_.SetValue(k, u"u", REG_SZ, ToUtf8(umlauts)), 0);
  ASSERT_EQ(store_.SetValue(k, u"long", REG_SZ, ascii + "b"), 0);
  ASSERT_EQ(store_.SetValue(k, u"bin", REG_BINARY, std::string(1025, '\x01')), 0);
  int32_t type = 0;
  std::string data;
  EXPECT_EQ(store_.QueryValue(k, u"a", 1024, type, data), 0);
  EXPECT_EQ(data.size(), 1024u);
  EXPECT_EQ(store_.QueryValue(k, u"u", 1024, type, data), 0);
  EXPECT_EQ(store_.QueryValue(k, u"long", 1024, type, data), kRegMoreData);
  EXPECT_EQ(store_.QueryValue(k, u"bin", 1024, type, data), kRegMoreData);
  EXPECT_EQ(store_.QueryValue(k, u"bin", 1025, type, data), 0);
}

TEST_P(StoreRulesTest, TextGetsExactlyOneTerminator) {
  const RegKey k = Create(u"T");
  struct Case {
    int32_t type;
    std::string written, stored;
  } cases[] = {
      {REG_SZ, "", std::string("\0", 1)},  // the empty text is one zero byte
      {REG_SZ, "abc", std::string("abc\0", 4)},
      {REG_SZ, std::string("abc\0", 4), std::string("abc\0", 4)},  // not doubled
      {REG_EXPAND_SZ, "%X%", std::string("%X%\0", 4)},
      {REG_MULTI_SZ, std::string("a\0b\0\0", 5), std::string("a\0b\0\0", 5)},  // as given
      {REG_BINARY, "", ""},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(store_.SetValue(k, u"v", c.type, c.written), 0);
    int32_t type = 0;
    std::string data;
    ASSERT_EQ(store_.QueryValue(k, u"v", 1024, type, data), 0);
    EXPECT_EQ(type, c.type);
    EXPECT_EQ(data, c.stored) << c.type;
  }
}

TEST_P(StoreRulesTest, ReadsOfAMissingStoreCreateNothing) {
  RegKey key = 0;
  EXPECT_EQ(store_.OpenKey(HKEY_LOCAL_MACHINE, u"Software", KEY_QUERY_VALUE, key), 2);
  EXPECT_EQ(store_.OpenKey(HKEY_LOCAL_MACHINE, u"", KEY_QUERY_VALUE, key), 0);
  std::u16string name;
  EXPECT_EQ(store_.EnumKey(key, 0, 255, name), ERROR_NO_MORE_ITEMS);
  EXPECT_EQ(store_.DeleteKey(HKEY_LOCAL_MACHINE, u"X"), 2);
  if (local()) {
    EXPECT_FALSE(std::ifstream(dir_.File("HKEY_LOCAL_MACHINE.db")).good());
  }
  EXPECT_EQ(store_.OpenKey(HKEY_PERFORMANCE_DATA, u"", KEY_QUERY_VALUE, key), 1010);
  EXPECT_EQ(store_.CloseKey(12345), 1010);  // never handed out
}

// The per-user file is private; the machine-wide ones are for every user
// to read, wherever the files lie.
TEST_P(StoreRulesTest, OneFilePerRootPrivateOnlyForTheUser) {
  if (!local()) GTEST_SKIP() << "the local store's files and handles only";
  store_.CloseKey(Create(u"U", HKEY_CURRENT_USER));
  store_.CloseKey(Create(u"M", HKEY_LOCAL_MACHINE));
  RegKey key = 0;
  EXPECT_EQ(store_.OpenKey(HKEY_LOCAL_MACHINE, u"U", KEY_QUERY_VALUE, key), 2);
  struct stat st {};
  ASSERT_EQ(::stat(dir_.File("HKEY_CURRENT_USER.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  ASSERT_EQ(::stat(dir_.File("HKEY_LOCAL_MACHINE.db").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0644u);
}

TEST_P(StoreRulesTest, FollowsAChangedStoreFolder) {
  if (!local()) GTEST_SKIP() << "the local store's files and handles only";
  store_.CloseKey(Create(u"First"));
  TempFolder other;
  ScopedEnv moved("NORVIK50_REGISTRY_DIR", other.path());
  RegKey key = 0;
  EXPECT_EQ(store_.OpenKey(HKEY_CURRENT_USER, u"First", KEY_QUERY_VALUE, key), 2);
  store_.CloseKey(Create(u"Second"));
  EXPECT_TRUE(std::ifstream(other.File("HKEY_CURRENT_USER.db")).good());
}

TEST_P(StoreRulesTest, HandlesAreReleased) {
  if (!local()) GTEST_SKIP() << "the local store's files and handles only";
  for (int i = 0; i < 5; ++i) store_.CloseKey(Create(u"H"));
  EXPECT_EQ(static_cast<SqliteStore&>(store_).open_handles(), 0u);
}

// Two stores in one process stand for two programs sharing the files: each
// sees what the other committed, without reopening anything.
TEST_P(StoreRulesTest, SeesChangesOfAnotherConnection) {
  const auto other_store = Fresh();
  RegistryStore& other = *other_store;
  const RegKey mine = Create(u"Shared");
  int32_t type = 0;
  std::string data;
  EXPECT_EQ(store_.QueryValue(mine, u"v", 1024, type, data), 2);  // statements now prepared
  RegKey theirs = 0;
  ASSERT_EQ(other.CreateKey(HKEY_CURRENT_USER, u"Shared", 0, 63, theirs, nullptr), 0);
  ASSERT_EQ(other.SetValue(theirs, u"v", REG_DWORD, std::string("\x07\0\0\0", 4)), 0);
  AwaitOthersCommit([&] { return store_.QueryValue(mine, u"v", 1024, type, data) == 0; });
  ASSERT_EQ(store_.QueryValue(mine, u"v", 1024, type, data), 0);
  EXPECT_EQ(type, REG_DWORD);
  RegKey sub = 0;
  ASSERT_EQ(other.CreateKey(theirs, u"Child", 0, 63, sub, nullptr), 0);
  AwaitOthersCommit([&] { return !Children(mine).empty(); });
  EXPECT_EQ(Children(mine), std::vector<std::u16string>{u"Child"});
  ASSERT_EQ(other.DeleteKey(theirs, u"Child"), 0);
  AwaitOthersCommit([&] { return Children(mine).empty(); });
  EXPECT_TRUE(Children(mine).empty());
}

// Listing a key's sub-keys teaches the store their ids, which the next
// open uses. A sub-key deleted and made again after the listing, by this
// connection or another one, is the new key when it is opened. "A" is made
// last, so SQLite hands its id to the next key made, a filler holding -1.
TEST_P(StoreRulesTest, AKeyOpenedAfterItsNameWasListedIsTheOneThereNow) {
  const auto other_store = Fresh();
  RegistryStore& other = *other_store;
  for (RegistryStore* remaker : {&store_, &other}) {
    const RegKey parent = Create(u"Listed");
    for (const char16_t* name : {u"B", u"A"})
      store_.CloseKey(Create(std::u16string(u"Listed\\") + name));
    ASSERT_EQ(Children(parent), (std::vector<std::u16string>{u"A", u"B"}));
    ASSERT_EQ(remaker->DeleteKey(HKEY_CURRENT_USER, u"Listed\\A"), 0);
    RegKey filler = 0, again = 0;
    ASSERT_EQ(remaker->CreateKey(HKEY_CURRENT_USER, u"Filler", 0, 63, filler, nullptr), 0);
    ASSERT_EQ(remaker->SetValue(filler, u"v", REG_DWORD, std::string("\xff\xff\xff\xff", 4)), 0);
    ASSERT_EQ(remaker->CreateKey(HKEY_CURRENT_USER, u"Listed\\A", 0, 63, again, nullptr), 0);
    ASSERT_EQ(remaker->SetValue(again, u"v", REG_DWORD, std::string("\x02\0\0\0", 4)), 0);
    RegKey opened = 0;
    ASSERT_EQ(store_.OpenKey(parent, u"A", KEY_QUERY_VALUE, opened), 0);
    int32_t type = 0;
    std::string data;
    ASSERT_EQ(store_.QueryValue(opened, u"v", 1024, type, data), 0);
    EXPECT_EQ(data, std::string("\x02\0\0\0", 4)) << (remaker == &store_ ? "same" : "other");
    for (const RegKey k : {parent, filler, again, opened}) {
      store_.CloseKey(k);
      other.CloseKey(k);
    }
    ASSERT_EQ(RegDeleteKeyTree(store_, HKEY_CURRENT_USER, u"Listed", true), 0);
    ASSERT_EQ(RegDeleteKeyTree(store_, HKEY_CURRENT_USER, u"Filler", true), 0);
  }
}

// A tree with more keys than a connection keeps ids for is counted and
// walked right, twice over (the second walk meets what the first one left
// in the cache).
TEST_P(StoreRulesTest, TreesLargerThanTheIdCacheAreWalkedRight) {
  constexpr int kUpper = 50, kLeaves = 100;  // 5,051 keys with the top one
  for (int u = 0; u < kUpper; ++u) {
    for (int l = 0; l < kLeaves; ++l) {
      store_.CloseKey(Create(FromUtf8("Tree\\u" + std::to_string(u) + "\\l" + std::to_string(l))));
    }
  }
  for (int pass = 0; pass < 2; ++pass) {
    EXPECT_EQ(RegCountKeys(store_, HKEY_CURRENT_USER, u"Tree"), 1 + kUpper * (1 + kLeaves)) << pass;
  }
  const SafeArray last = RegListSubKeys(store_, HKEY_CURRENT_USER, u"Tree\\u49");
  EXPECT_EQ(last.size(), static_cast<std::size_t>(kLeaves));
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreRulesTest,
                         ::testing::Values(StoreKind::kLocal, StoreKind::kServer),
                         [](const auto& info) { return StoreKindName(info.param); });

}  // namespace
}  // namespace norvik50::settings
