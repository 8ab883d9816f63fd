// The settings server store against a real PostgreSQL server: who may read
// and write what (the server decides), the cache kept coherent across
// processes, the local copy while the server is away, and acknowledged
// writes surviving a server crash.
#include "settings/pg_store.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "norvik50/encoding.h"
#include "settings/child_process_for_tests.h"
#include "settings/pg_server_for_tests.h"
#include "settings/reg_transfer.h"
#include "settings/registry_algorithms.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kKey = u"Software\\Vendor";

// One value's text through the registry routine, "" when missing.
std::u16string Read(RegistryStore& store, int32_t root, std::u16string_view name) {
  return RegReadValue(store, root, kKey, name, Variant(u""), false, nullptr).as_string();
}

bool Write(RegistryStore& store, int32_t root, std::u16string_view name, std::u16string_view text) {
  return RegWriteValue(store, root, kKey, name, Variant(std::u16string(text)), nullptr);
}

// Rows of a table as `role` sees them with plain SQL; -1 when refused.
int VisibleRows(const std::string& role, const std::string& sql) {
  std::string error;
  auto conn = PgConnection::Connect(ServerConninfo(role), 10, error);
  if (!conn) return -1;
  PgFailure failure;
  const auto r = conn->Exec(sql, {}, failure);
  return r ? r->rows() : -1;
}

// In a child: writes `value` as "Shared" through its own connection
// (argument "CONNINFO|VALUE") and says "done".
[[maybe_unused]] const bool kWriterRan = RunJobIfAsked("pgwrite", [](const std::string& arg) {
  const auto bar = arg.find('|');
  PgStoreOptions options;
  options.conninfo = arg.substr(0, bar);
  PgStore store(options);
  if (!Write(store, HKEY_LOCAL_MACHINE, u"Shared", FromUtf8(arg.substr(bar + 1)))) return 1;
  std::printf("done\n");
  return 0;
});

// In a child: writes values "v1", "v2", ... until told to stop on stdin,
// printing the number of every write the server acknowledged; a refused
// write (server away) is tried again with the next number.
[[maybe_unused]] const bool kCounterRan = RunJobIfAsked("pgcount", [](const std::string& arg) {
  PgStoreOptions options;
  options.conninfo = arg;
  options.retry_interval = std::chrono::milliseconds(0);
  options.connect_timeout_seconds = 2;
  PgStore store(options);
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  for (int i = 1; i <= 400; ++i) {
    const std::u16string name = u"v" + FromUtf8(std::to_string(i));
    if (RegWriteValue(store, HKEY_CURRENT_USER, kKey, name, Variant(int32_t{i}), nullptr)) {
      std::printf("%d\n", i);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return 0;
});

class PgStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    NORVIK50_NEED_TEST_SERVER();
    EmptyServer();
  }
  testing::TempFolder temp_;
};

TEST_F(PgStoreTest, TheServerDecidesWhoMayReadAndWrite) {
  auto admin = ServerStore("desk");
  auto alice = ServerStore("alice");
  auto bob = ServerStore("bob");
  ASSERT_TRUE(Write(*admin, HKEY_LOCAL_MACHINE, u"ResourceDLL", u"C:\\App\\Res_%L.dll"));
  // Every user reads the machine-wide settings ...
  EXPECT_EQ(Read(*alice, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"C:\\App\\Res_%L.dll");
  // ... and none writes them: refused with 5, as a local file this user
  // may not write is, and the reason is there to log.
  RegKey key = 0;
  ASSERT_EQ(alice->OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_SET_VALUE, key), 0);
  EXPECT_EQ(alice->SetValue(key, u"ResourceDLL", REG_SZ, "mine"), 5);
  const StoreProblem problem = alice->TakeStoreProblem();
  EXPECT_EQ(problem.number, 5);
  EXPECT_NE(ToUtf8(problem.description).find("refused the write: permission denied for table"),
            std::string::npos)
      << ToUtf8(problem.description);
  EXPECT_EQ(alice->SetValue(key, u"ResourceDLL", REG_SZ, "again"), 5);
  EXPECT_EQ(alice->TakeStoreProblem().number, 0);  // said once per process
  EXPECT_EQ(alice->DeleteValue(key, u"ResourceDLL"), 5);
  alice->CloseKey(key);
  RegKey made = 0;
  EXPECT_EQ(alice->CreateKey(HKEY_LOCAL_MACHINE, u"Mine", 0, KEY_ALL_ACCESS, made, nullptr), 5);
  EXPECT_EQ(alice->DeleteKey(HKEY_LOCAL_MACHINE, kKey), 5);
  EXPECT_FALSE(Write(*alice, HKEY_LOCAL_MACHINE, u"ResourceDLL", u"mine"));
  EXPECT_EQ(Read(*bob, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"C:\\App\\Res_%L.dll");

  // Each user's own settings are theirs alone.
  ASSERT_TRUE(Write(*alice, HKEY_CURRENT_USER, u"Language", u"DE"));
  ASSERT_TRUE(Write(*bob, HKEY_CURRENT_USER, u"Language", u"EN"));
  EXPECT_EQ(Read(*alice, HKEY_CURRENT_USER, u"Language"), u"DE");
  EXPECT_EQ(Read(*bob, HKEY_CURRENT_USER, u"Language"), u"EN");
  ASSERT_EQ(RegDeleteKeyTree(*bob, HKEY_CURRENT_USER, u"Software", true), 0);
  EXPECT_EQ(Read(*alice, HKEY_CURRENT_USER, u"Language"), u"DE");  // bob deleted only his

  // Even with plain SQL, bob sees none of alice's rows and cannot make one.
  EXPECT_EQ(VisibleRows("alice", "SELECT * FROM norvik50.user_values"), 1);
  EXPECT_EQ(VisibleRows("bob", "SELECT * FROM norvik50.user_values"), 0);
  EXPECT_EQ(VisibleRows("bob", "SELECT * FROM norvik50.user_keys WHERE owner = 'alice'"), 0);
  EXPECT_EQ(VisibleRows("bob", "UPDATE norvik50.user_values SET data = 'x' RETURNING 1"), 0);
  EXPECT_EQ(VisibleRows("bob",
                        "INSERT INTO norvik50.user_keys VALUES ('alice', -2147483647, 'x', '', "
                        "'x', 'x') RETURNING 1"),
            -1);
  EXPECT_EQ(VisibleRows("bob", "DELETE FROM norvik50.machine_values RETURNING 1"), -1);
  EXPECT_EQ(Read(*alice, HKEY_CURRENT_USER, u"Language"), u"DE");
}

TEST_F(PgStoreTest, AnImportThatMayNotWriteEveryRootKeepsNothing) {
  auto alice = ServerStore("alice");
  RegFile file;
  RegParseError error;
  const auto parsed = ParseRegFile(
      "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Vendor]\r\n\"Language\"=\"DE\"\r\n\r\n"
      "[HKEY_LOCAL_MACHINE\\Software\\Vendor]\r\n\"ResourceDLL\"=\"x\"\r\n",
      error);
  ASSERT_TRUE(parsed);
  std::u16string failed;
  EXPECT_EQ(ImportKeys(*alice, *parsed, failed), 5);
  EXPECT_EQ(Read(*alice, HKEY_CURRENT_USER, u"Language"), u"");
  // Without the machine-wide part it goes through.
  RegFile mine = *parsed;
  mine.keys.resize(1);
  EXPECT_EQ(ImportKeys(*alice, mine, failed), 0) << ToUtf8(failed);
  EXPECT_EQ(Read(*alice, HKEY_CURRENT_USER, u"Language"), u"DE");
}

TEST_F(PgStoreTest, OtherProcessesChangesArriveAndOwnWritesAreSeenAtOnce) {
  auto store = ServerStore("desk");
  ASSERT_TRUE(Write(*store, HKEY_LOCAL_MACHINE, u"Shared", u"one"));
  EXPECT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"Shared"), u"one");  // now cached
  ChildProcess child = StartChild("pgwrite:" + ServerConninfo("desk") + "|two");
  std::string said;
  ASSERT_EQ(FinishChild(child, &said), 0);
  ASSERT_EQ(said, "done\n");
  // The change is committed; its announcement reaches this process within
  // its delivery time, and the next read after that sees it.
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  std::u16string seen = Read(*store, HKEY_LOCAL_MACHINE, u"Shared");
  while (seen != u"two" && std::chrono::steady_clock::now() < give_up) {
    store->AwaitChanges(100);
    seen = Read(*store, HKEY_LOCAL_MACHINE, u"Shared");
  }
  EXPECT_EQ(seen, u"two");
  // This process's own write is read back at once.
  ASSERT_TRUE(Write(*store, HKEY_LOCAL_MACHINE, u"Shared", u"three"));
  EXPECT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"Shared"), u"three");
}

// Changes made past the library, with plain SQL, are announced as well.
TEST_F(PgStoreTest, ChangesMadeWithPlainSqlArriveToo) {
  auto store = ServerStore("alice");
  ASSERT_TRUE(Write(*ServerStore("desk"), HKEY_LOCAL_MACHINE, u"ResourceDLL", u"A"));
  ASSERT_TRUE(Write(*store, HKEY_CURRENT_USER, u"Language", u"DE"));
  ASSERT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"A");  // cached from here on
  ASSERT_EQ(Read(*store, HKEY_CURRENT_USER, u"Language"), u"DE");
  auto await = [&](int32_t root, std::u16string_view name, std::u16string_view expected) {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (Read(*store, root, name) != expected && std::chrono::steady_clock::now() < give_up) {
      store->AwaitChanges(100);
    }
    return Read(*store, root, name);
  };
  ASSERT_EQ(AsSuperuser("UPDATE norvik50.machine_values SET data = 'B\\000'::bytea"), "");
  EXPECT_EQ(await(HKEY_LOCAL_MACHINE, u"ResourceDLL", u"B"), u"B");
  ASSERT_EQ(AsSuperuser("TRUNCATE norvik50.user_values, norvik50.user_keys"), "");
  EXPECT_EQ(await(HKEY_CURRENT_USER, u"Language", u""), u"");
  ASSERT_EQ(AsSuperuser("TRUNCATE norvik50.machine_values, norvik50.machine_keys"), "");
  EXPECT_EQ(await(HKEY_LOCAL_MACHINE, u"ResourceDLL", u""), u"");
}

TEST_F(PgStoreTest, ReadsNeedNoRoundTripOnceCached) {
  auto store = ServerStore("desk");  // no local copy: only the cache can answer
  ASSERT_TRUE(Write(*store, HKEY_LOCAL_MACHINE, u"ResourceDLL", u"R"));
  ASSERT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"R");
  auto& server = norvik50::testing::PgTestServer::Shared();
  ASSERT_TRUE(server.Stop());
  EXPECT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"R");
  EXPECT_EQ(Read(*store, HKEY_LOCAL_MACHINE, u"Never"), u"");
  ASSERT_TRUE(server.Start());
}

TEST_F(PgStoreTest, WithTheServerAwayAFreshProcessReadsItsCopyAndRefusesWrites) {
  const std::string copy = temp_.File("cfg/server-copy.db");
  {
    auto before = ServerStore("alice", copy);
    ASSERT_TRUE(Write(*before, HKEY_CURRENT_USER, u"Language", u"DE"));
    ASSERT_TRUE(Write(*ServerStore("desk"), HKEY_LOCAL_MACHINE, u"ResourceDLL", u"R_%L.dll"));
    ASSERT_EQ(Read(*before, HKEY_LOCAL_MACHINE, u"ResourceDLL"), u"R_%L.dll");
    ASSERT_EQ(Read(*before, HKEY_CURRENT_USER, u"Missing"), u"");
  }
  // The copy holds this user's settings: for this user alone.
  struct stat st {};
  ASSERT_EQ(::stat(copy.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0600u);
  auto& server = norvik50::testing::PgTestServer::Shared();
  ASSERT_TRUE(server.Stop());
  auto store = ServerStore("alice", copy);  // nothing cached: all from the copy
  std::vector<std::u16string> log;
  const ErrorReport report = [&](int32_t n, std::u16string_view d, std::u16string_view s) {
    log.push_back(FromUtf8(std::to_string(n)) + u" " + std::u16string(s) + u" " +
                  std::u16string(d));
  };
  auto get = [&](int32_t root, std::u16string_view name, std::u16string_view dflt, bool create) {
    return RegReadValue(*store, root, kKey, name, Variant(std::u16string(dflt)), create, report)
        .as_string();
  };
  EXPECT_EQ(get(HKEY_CURRENT_USER, u"Language", u"", false), u"DE");
  EXPECT_EQ(get(HKEY_LOCAL_MACHINE, u"ResourceDLL", u"", false), u"R_%L.dll");
  // The default, and its write-back refused.
  EXPECT_EQ(get(HKEY_CURRENT_USER, u"Missing", u"dflt", true), u"dflt");
  EXPECT_FALSE(RegWriteValue(*store, HKEY_CURRENT_USER, kKey, u"Language", Variant(u"EN"), report));
  EXPECT_FALSE(RegWriteValue(*store, HKEY_CURRENT_USER, kKey, u"Other", Variant(u"x"), report));
  // One line for the whole outage, with the reason.
  ASSERT_EQ(log.size(), 1u);
  EXPECT_NE(ToUtf8(log[0]).find("1011 LIB:tkrGetValue() settings server user=alice "),
            std::string::npos)
      << ToUtf8(log[0]);
  EXPECT_NE(ToUtf8(log[0]).find("is unreachable"), std::string::npos) << ToUtf8(log[0]);
  EXPECT_EQ(Read(*store, HKEY_CURRENT_USER, u"Language"), u"DE");  // nothing half-written
  ASSERT_TRUE(server.Start());
  // Back: the same store connects again by itself.
  EXPECT_TRUE(Write(*store, HKEY_CURRENT_USER, u"Language", u"EN"));
  EXPECT_EQ(Read(*ServerStore("alice"), HKEY_CURRENT_USER, u"Language"), u"EN");
}

// A server host that is off does not refuse, it makes every attempt wait
// for the connect timeout. Stand-in: a socket that listens and never
// answers. After the first slow attempt, reads no longer wait for any.
TEST_F(PgStoreTest, ASilentServerDelaysOnlyTheFirstAttempt) {
  const int silent = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  ASSERT_EQ(::bind(silent, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
  ASSERT_EQ(::listen(silent, 64), 0);
  ASSERT_EQ(::getsockname(silent, reinterpret_cast<sockaddr*>(&addr), &len), 0);
  PgStoreOptions options;
  options.conninfo = "host=127.0.0.1 port=" + std::to_string(ntohs(addr.sin_port)) + " user=x";
  options.connect_timeout_seconds = 1;
  options.retry_interval = std::chrono::milliseconds(0);
  PgStore store(options);
  const auto first = std::chrono::steady_clock::now();
  EXPECT_EQ(Read(store, HKEY_CURRENT_USER, u"Language"), u"");
  EXPECT_GE(std::chrono::steady_clock::now() - first, std::chrono::milliseconds(900));
  const auto later = std::chrono::steady_clock::now();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Read(store, HKEY_CURRENT_USER, u"Language"), u"");
  EXPECT_LT(std::chrono::steady_clock::now() - later, std::chrono::milliseconds(900));
  ::close(silent);
}

// A server that goes away inside a unit takes the unit with it: what
// follows in the body is not made outside the unit on a new connection.
TEST_F(PgStoreTest, AUnitCutShortByTheServerKeepsNothing) {
  auto store = ServerStore("alice");
  auto& server = norvik50::testing::PgTestServer::Shared();
  const int32_t roots[] = {HKEY_CURRENT_USER};
  const int32_t code = store->RunAtomically(roots, [&] {
    EXPECT_TRUE(Write(*store, HKEY_CURRENT_USER, u"First", u"1"));
    EXPECT_TRUE(server.Stop());
    EXPECT_TRUE(server.Start());
    EXPECT_FALSE(Write(*store, HKEY_CURRENT_USER, u"Second", u"2"));
    return 0;
  });
  EXPECT_EQ(code, 1011);
  auto fresh = ServerStore("alice");
  EXPECT_EQ(Read(*fresh, HKEY_CURRENT_USER, u"First"), u"");
  EXPECT_EQ(Read(*fresh, HKEY_CURRENT_USER, u"Second"), u"");
  // The store goes on after the unit, on a new connection.
  EXPECT_TRUE(Write(*store, HKEY_CURRENT_USER, u"Third", u"3"));
  EXPECT_EQ(Read(*ServerStore("alice"), HKEY_CURRENT_USER, u"Third"), u"3");
}

TEST_F(PgStoreTest, AServerCrashLosesNoAcknowledgedWrite) {
  ChildProcess child = StartChild("pgcount:" + ServerConninfo("alice"));
  auto& server = norvik50::testing::PgTestServer::Shared();
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  ASSERT_TRUE(server.Stop());  // immediate: as a crash
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  ASSERT_TRUE(server.Start());
  std::string said;
  ASSERT_EQ(FinishChild(child, &said), 0);
  std::vector<int> acknowledged;
  for (std::size_t at = 0; at < said.size();) {
    const std::size_t end = said.find('\n', at);
    acknowledged.push_back(std::stoi(said.substr(at, end - at)));
    at = end + 1;
  }
  ASSERT_GT(acknowledged.size(), 10u);
  EXPECT_LT(acknowledged.size(), 400u) << "the crash should have refused some writes";
  auto alice = ServerStore("alice");
  for (const int i : acknowledged) {
    const Variant v =
        RegReadValue(*alice, HKEY_CURRENT_USER, kKey, u"v" + FromUtf8(std::to_string(i)),
                     std::nullopt, false, nullptr);
    ASSERT_EQ(v.type(), VarType::kLong) << i;
    EXPECT_EQ(v.as_long(), i);
  }
}

TEST_F(PgStoreTest, InitIsIdempotentAndKeepsTheVersion) {
  std::string error;
  auto conn = PgConnection::Connect(ServerConninfo("postgres"), 10, error);
  ASSERT_TRUE(conn) << error;
  ASSERT_TRUE(Write(*ServerStore("desk"), HKEY_LOCAL_MACHINE, u"Kept", u"yes"));
  std::vector<std::string> done;
  PgFailure failure;
  ASSERT_EQ(InitServerSchema(*conn, done, failure), 0) << failure.message;
  ASSERT_EQ(InitServerSchema(*conn, done, failure), 0) << failure.message;
  EXPECT_EQ(done.front(), "schema norvik50 is at version 1");
  EXPECT_EQ(ServerSchemaVersion(*conn, failure), kServerSchemaVersion);
  EXPECT_EQ(Read(*ServerStore("bob"), HKEY_LOCAL_MACHINE, u"Kept"), u"yes");
  // A role without the schema's grants is turned away with the reason.
  ASSERT_EQ(AsSuperuser("DROP ROLE IF EXISTS stranger; CREATE ROLE stranger LOGIN"), "");
  auto stranger = ServerStore("stranger");
  const std::string refused = stranger->Check();
  EXPECT_NE(refused, "");
  RegKey key = 0;
  EXPECT_EQ(stranger->OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_QUERY_VALUE, key), 2) << refused;
}

}  // namespace
}  // namespace norvik50::settings
