// Several store operations as one unit: kept whole or taken back whole, on
// one root or several, and unseen by other connections until kept; on the
// local files and on a settings server.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <string>
#include <vector>

#include "norvik50/encoding.h"
#include "settings/pg_server_for_tests.h"
#include "settings/sqlite_store.h"
#include "settings/value_bytes.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr int32_t kUser = HKEY_CURRENT_USER;
constexpr int32_t kMachine = HKEY_LOCAL_MACHINE;
constexpr int32_t kBoth[] = {kMachine, kUser};

class StoreUnitsTest : public ::testing::TestWithParam<StoreKind> {
 protected:
  void SetUp() override {
    if (!local()) {
      NORVIK50_NEED_TEST_SERVER();
      EmptyServer();
    }
    // Both stores exist and hold "Old" = 1 in Software\Unit.
    for (const int32_t root : kBoth) ASSERT_EQ(Set(store_, root, u"Software\\Unit", 1), 0);
  }
  bool local() const { return GetParam() == StoreKind::kLocal; }
  // A connection to the store under test, as `role` on the server.
  std::shared_ptr<RegistryStore> Connect(const std::string& role = "desk") {
    if (local()) return std::make_shared<SqliteStore>();
    return ServerStore(role);
  }

  static int32_t Set(RegistryStore& store, int32_t root, std::u16string_view path, uint32_t value,
                     std::u16string_view name = u"Old") {
    RegKey key = 0;
    int32_t code = store.CreateKey(root, path, 0, KEY_ALL_ACCESS, key, nullptr);
    if (code == 0) code = store.SetValue(key, name, REG_DWORD, DwordBytes(value));
    store.CloseKey(key);
    return code;
  }
  // The value as `store` reads it now; -1 when the key or value is missing.
  static int64_t Get(RegistryStore& store, int32_t root, std::u16string_view path,
                     std::u16string_view name = u"Old") {
    RegKey key = 0;
    if (store.OpenKey(root, path, KEY_QUERY_VALUE, key) != 0) return -1;
    int32_t type = 0;
    std::string data;
    const int32_t code = store.QueryValue(key, name, 1024, type, data);
    store.CloseKey(key);
    if (code != 0 || data.size() != 4) return -1;
    return static_cast<uint8_t>(data[0]) | static_cast<uint8_t>(data[1]) << 8;
  }

  // What `reader` reads once the announcements of changes another
  // connection committed have arrived (a server store learns of them so);
  // waits until it reads `expected`, at most five seconds.
  static int64_t Settled(RegistryStore& reader, int32_t root, std::u16string_view path,
                         int64_t expected, std::u16string_view name = u"Old") {
    auto* server = dynamic_cast<PgStore*>(&reader);
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    int64_t now = Get(reader, root, path, name);
    while (server != nullptr && now != expected && std::chrono::steady_clock::now() < give_up) {
      server->AwaitChanges(50);
      now = Get(reader, root, path, name);
    }
    return now;
  }

  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  std::shared_ptr<RegistryStore> owned_ = Connect(), other_owned_ = Connect();
  RegistryStore& store_ = *owned_;
  RegistryStore& other_ = *other_owned_;  // another program on the same store
};

TEST_P(StoreUnitsTest, KeepsEveryChangeOrNone) {
  struct Case {
    const char* what;
    int32_t body_returns;
    int32_t result;
    int64_t old_value, new_value;  // afterwards, in both stores
  } cases[] = {
      {"body succeeds: all kept", 0, 0, 2, 3},
      {"body fails: all taken back", 1010, 1010, 1, -1},
  };
  for (const Case& c : cases) {
    for (const int32_t root : kBoth) {
      store_.DeleteKey(root, u"Software\\Unit\\New");
      ASSERT_EQ(Set(store_, root, u"Software\\Unit", 1), 0);
      ASSERT_EQ(Settled(other_, root, u"Software\\Unit", 1), 1);
    }
    const int32_t code = store_.RunAtomically(kBoth, [&] {
      for (const int32_t root : kBoth) {
        EXPECT_EQ(Set(store_, root, u"Software\\Unit", 2), 0);
        EXPECT_EQ(Set(store_, root, u"Software\\Unit\\New", 3, u"New"), 0);
        // The unit reads its own changes; nobody else sees them yet.
        EXPECT_EQ(Get(store_, root, u"Software\\Unit"), 2) << c.what;
        EXPECT_EQ(Get(other_, root, u"Software\\Unit"), 1) << c.what;
        EXPECT_EQ(Get(other_, root, u"Software\\Unit\\New", u"New"), -1) << c.what;
      }
      return c.body_returns;
    });
    EXPECT_EQ(code, c.result) << c.what;
    for (RegistryStore* reader : {&store_, &other_}) {
      for (const int32_t root : kBoth) {
        EXPECT_EQ(Settled(*reader, root, u"Software\\Unit", c.old_value), c.old_value)
            << c.what << " " << root;
        EXPECT_EQ(Settled(*reader, root, u"Software\\Unit\\New", c.new_value, u"New"), c.new_value)
            << c.what << " " << root;
      }
    }
  }
}

// A root this user may not write is refused before anything is done.
TEST_P(StoreUnitsTest, ARootThatCannotBeWrittenRefusesTheWholeUnit) {
  const std::string machine = dir_.File("HKEY_LOCAL_MACHINE.db");
  if (local()) {
    ASSERT_EQ(::chmod(machine.c_str(), 0444), 0);
  }
  // On the server: a role that may only read the machine-wide settings.
  const auto owned = Connect("alice");
  RegistryStore& store = *owned;
  bool ran = false;
  EXPECT_EQ(store.RunAtomically(kBoth,
                                [&] {
                                  ran = true;
                                  return Set(store, kUser, u"Software\\Unit", 2);
                                }),
            5);
  EXPECT_FALSE(ran);
  EXPECT_EQ(Get(other_, kUser, u"Software\\Unit"), 1);
  const StoreProblem problem = store.TakeStoreProblem();
  EXPECT_EQ(problem.number, 5);
  const std::string why =
      local() ? machine + " cannot be written" : "role alice may not write HKEY_LOCAL_MACHINE";
  EXPECT_NE(ToUtf8(problem.description).find(why), std::string::npos)
      << ToUtf8(problem.description);
  if (local()) ::chmod(machine.c_str(), 0644);
}

// An operation inside the unit that fails takes back only itself; the body
// decides about the rest.
TEST_P(StoreUnitsTest, AFailedOperationInsideTheUnitLeavesTheOthers) {
  std::u16string too_deep = u"Software";
  for (int i = 0; i < 600; ++i) too_deep += u"\\k";
  EXPECT_EQ(store_.RunAtomically(kBoth,
                                 [&] {
                                   EXPECT_EQ(Set(store_, kUser, u"Software\\Unit", 2), 0);
                                   EXPECT_EQ(Set(store_, kUser, too_deep, 1), 1010);
                                   return 0;
                                 }),
            0);
  EXPECT_EQ(Settled(other_, kUser, u"Software\\Unit", 2), 2);
}

// Keys made in a unit that was taken back are gone, also for the handles and
// key ids the connection learnt inside it; a unit inside a unit is part of
// the outer one.
TEST_P(StoreUnitsTest, WhatAUnitTakesBackIsGoneForItsOwnConnectionToo) {
  RegKey made = 0;
  EXPECT_EQ(store_.RunAtomically(
                kBoth,
                [&] {
                  EXPECT_EQ(
                      store_.CreateKey(kUser, u"Software\\Gone", 0, KEY_ALL_ACCESS, made, nullptr),
                      0);
                  EXPECT_EQ(store_.RunAtomically(
                                kBoth, [&] { return Set(store_, kMachine, u"Software\\Unit", 5); }),
                            0);
                  return 1;
                }),
            1);
  EXPECT_EQ(Get(store_, kMachine, u"Software\\Unit"), 1);
  // A new key may take the id the taken-back one had.
  ASSERT_EQ(Set(store_, kUser, u"Software\\Other", 7), 0);
  RegKey key = 0;
  EXPECT_EQ(store_.OpenKey(kUser, u"Software\\Gone", KEY_QUERY_VALUE, key), 2);
  EXPECT_NE(store_.SetValue(made, u"v", REG_DWORD, DwordBytes(1)), 0);
  store_.CloseKey(made);
  EXPECT_EQ(Get(store_, kUser, u"Software\\Other"), 7);
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreUnitsTest,
                         ::testing::Values(StoreKind::kLocal, StoreKind::kServer),
                         [](const auto& info) { return StoreKindName(info.param); });

}  // namespace
}  // namespace norvik50::settings
