// Roots on different stores side by side: HKEY_CURRENT_USER on a settings
// server, everything else in the local files, as a configuration names them.
#include "settings/routing_store.h"

#include <gtest/gtest.h>

#include <fstream>

#include "settings/pg_server_for_tests.h"
#include "settings/registry_algorithms.h"
#include "settings/sqlite_store.h"
#include "settings/store_config.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kKey = u"Software\\Vendor";

std::u16string Read(RegistryStore& store, int32_t root, std::u16string_view name) {
  return RegReadValue(store, root, kKey, name, Variant(u""), false, nullptr).as_string();
}

class StoreConfigTest : public ::testing::Test {
 protected:
  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
  testing::ScopedEnv hklm_{"NORVIK50_STORE_HKLM", std::nullopt};
  testing::ScopedEnv hkcu_{"NORVIK50_STORE_HKCU", std::nullopt};
};

class RoutingStoreTest : public StoreConfigTest {
 protected:
  void SetUp() override {
    NORVIK50_NEED_TEST_SERVER();
    EmptyServer();
  }
};

TEST_F(StoreConfigTest, NothingConfiguredIsTheLocalStoreAlone) {
  EXPECT_NE(dynamic_cast<SqliteStore*>(MakeConfiguredStore().get()), nullptr);
  // An empty variable and a configuration file without the roots name none.
  testing::ScopedEnv empty("NORVIK50_STORE_HKCU", "");
  std::ofstream(dir_.File("store.conf")) << "# nothing yet\nHKCR = host=elsewhere\n";
  EXPECT_NE(dynamic_cast<SqliteStore*>(MakeConfiguredStore().get()), nullptr);
}

TEST_F(StoreConfigTest, TheVariableWinsOverTheFile) {
  std::ofstream(dir_.File("store.conf"))
      << "  # office\n\nHKCU=service=from_file  \nHKLM = service=machine\nnonsense line\n";
  auto choice = ServerStoreFor(HKEY_CURRENT_USER);
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->conninfo, "service=from_file");
  EXPECT_EQ(choice->source, dir_.File("store.conf"));
  EXPECT_EQ(ServerStoreFor(HKEY_LOCAL_MACHINE)->conninfo, "service=machine");
  EXPECT_FALSE(ServerStoreFor(HKEY_CLASSES_ROOT));  // only the two roots
  testing::ScopedEnv variable("NORVIK50_STORE_HKCU", "service=from_variable");
  choice = ServerStoreFor(HKEY_CURRENT_USER);
  EXPECT_EQ(choice->conninfo, "service=from_variable");
  EXPECT_EQ(choice->source, "NORVIK50_STORE_HKCU");
}

TEST_F(RoutingStoreTest, EachRootGoesToItsStore) {
  std::ofstream(dir_.File("store.conf"))
      << "hkey_current_user = " << ServerConninfo("alice") << "\n";
  const auto store = MakeConfiguredStore();
  auto* routing = dynamic_cast<RoutingStore*>(store.get());
  ASSERT_NE(routing, nullptr);
  EXPECT_NE(routing->ServerFor(HKEY_CURRENT_USER), nullptr);
  EXPECT_EQ(routing->ServerFor(HKEY_LOCAL_MACHINE), nullptr);

  ASSERT_TRUE(RegWriteValue(*store, HKEY_CURRENT_USER, kKey, u"Language", Variant(u"DE"), nullptr));
  ASSERT_TRUE(
      RegWriteValue(*store, HKEY_LOCAL_MACHINE, kKey, u"ResourceDLL", Variant(u"R"), nullptr));
  SqliteStore local;
  EXPECT_EQ(Read(*ServerStore("alice"), HKEY_CURRENT_USER, u"Language"), u"DE");
  EXPECT_EQ(Read(local, HKEY_CURRENT_USER, u"Language"), u"");
  EXPECT_EQ(Read(local, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"R");

  // Handles of both stores open at once, each answering for its own key.
  RegKey user = 0, machine = 0;
  ASSERT_EQ(store->OpenKey(HKEY_CURRENT_USER, kKey, KEY_QUERY_VALUE, user), 0);
  ASSERT_EQ(store->OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_QUERY_VALUE, machine), 0);
  EXPECT_NE(user, machine);
  int32_t type = 0;
  std::string data;
  EXPECT_EQ(store->QueryValue(user, u"Language", 1024, type, data), 0);
  EXPECT_EQ(store->QueryValue(machine, u"Language", 1024, type, data), 2);
  EXPECT_EQ(store->CloseKey(user), 0);
  EXPECT_EQ(store->CloseKey(machine), 0);
  EXPECT_EQ(store->CloseKey(user), 1010);
}

TEST_F(RoutingStoreTest, AUnitOverBothStoresKeepsAllOrNothing) {
  testing::ScopedEnv server("NORVIK50_STORE_HKCU", ServerConninfo("alice"));
  const auto store = MakeConfiguredStore();
  const int32_t both[] = {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};
  auto write_both = [&](const char16_t* value) {
    for (const int32_t root : both) {
      if (!RegWriteValue(*store, root, kKey, u"V", Variant(value), nullptr)) return 1011;
    }
    return 0;
  };
  EXPECT_EQ(store->RunAtomically(both, [&] { return write_both(u"kept"); }), 0);
  EXPECT_EQ(store->RunAtomically(both,
                                 [&] {
                                   write_both(u"gone");
                                   return 1010;
                                 }),
            1010);
  SqliteStore local;
  EXPECT_EQ(Read(local, HKEY_LOCAL_MACHINE, u"V"), u"kept");
  EXPECT_EQ(Read(*ServerStore("alice"), HKEY_CURRENT_USER, u"V"), u"kept");
  EXPECT_EQ(Read(*store, HKEY_CURRENT_USER, u"V"), u"kept");
}

}  // namespace
}  // namespace norvik50::settings
