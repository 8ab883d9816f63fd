// Several processes on one store: no lost updates, a writer killed in the
// middle loses nothing it had been told was stored, and what one process
// writes the other reads at once. The other processes are this test
// program itself, started again for a job.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "norvik50/encoding.h"
#include "settings/child_process_for_tests.h"
#include "settings/registry_algorithms.h"
#include "settings/sqlite_store.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kKey = u"Software\\Shared";

// In a writer process: writes values PREFIX0 ... PREFIX<count-1> (Long i)
// into kKey and prints "i" on stdout once each is stored.
[[maybe_unused]] const bool kWriterRan = RunJobIfAsked("write", [](const std::string& s) {
  const std::size_t colon = s.find(':');
  const std::u16string prefix = FromUtf8(s.substr(0, colon));
  const int count = std::atoi(s.c_str() + colon + 1);
  SqliteStore store;
  for (int i = 0; i < count; ++i) {
    const std::u16string name = prefix + FromUtf8(std::to_string(i));
    if (!RegWriteValue(store, HKEY_CURRENT_USER, kKey, name, Variant(int32_t{i}), nullptr)) {
      return 3;
    }
    std::printf("%d\n", i);
    std::fflush(stdout);
  }
  return 0;
});

// One side of a game of turns on the value "Turn": each side reads the
// number the other just wrote and answers with the next one. Every fifth
// turn the writer deletes the key and makes it again, after a filler key
// that takes over the deleted key's id and holds -1: a reader that kept
// the old id would read -1 or nothing.
constexpr std::u16string_view kTurnKey = u"Software\\Turns";

void WriteTurn(SqliteStore& store, int turn) {
  if (turn % 5 == 0) {
    RegDeleteKeyTree(store, HKEY_CURRENT_USER, kTurnKey, true);
    RegWriteValue(store, HKEY_CURRENT_USER, u"Software\\Filler" + FromUtf8(std::to_string(turn)),
                  u"Turn", Variant(int32_t{-1}), nullptr);
  }
  RegWriteValue(store, HKEY_CURRENT_USER, kTurnKey, u"Turn", Variant(int32_t{turn}), nullptr);
}

int32_t ReadTurn(SqliteStore& store) {
  const Variant v = RegReadValue(store, HKEY_CURRENT_USER, kTurnKey, u"Turn", Variant(int32_t{-2}),
                                 false, nullptr);
  return v.type() == VarType::kLong ? v.as_long() : -3;
}

// The child's side: told a turn on stdin, reads it, prints what it read,
// and writes the next turn.
[[maybe_unused]] const bool kTurnsRan = RunJobIfAsked("turns", [](const std::string&) {
  SqliteStore store;
  int turn = 0;
  while (std::scanf("%d", &turn) == 1) {
    std::printf("%d\n", ReadTurn(store));
    WriteTurn(store, turn + 1);
    std::printf("%d\n", turn + 1);
    std::fflush(stdout);
  }
  return 0;
});

ChildProcess StartWriter(const std::string& prefix, int count) {
  return StartChild("write:" + prefix + ":" + std::to_string(count));
}

int Wait(pid_t pid) {
  int status = 0;
  ::waitpid(pid, &status, 0);
  return status;
}

// Every value of kKey, read through a store of this process.
std::map<std::u16string, int32_t> ReadAll() {
  SqliteStore store;
  std::map<std::u16string, int32_t> values;
  RegKey key = 0;
  if (store.OpenKey(HKEY_CURRENT_USER, kKey, KEY_QUERY_VALUE, key) != 0) return values;
  std::u16string name;
  int32_t type = 0;
  std::string data;
  for (uint32_t i = 0; store.EnumValue(key, i, name, type, data) == 0; ++i) {
    int32_t v = 0;
    for (int b = 3; b >= 0; --b) v = (v << 8) | static_cast<uint8_t>(data[b]);
    values[name] = type == REG_DWORD && data.size() == 4 ? v : -1;
  }
  store.CloseKey(key);
  return values;
}

class StoreProcessesTest : public ::testing::Test {
 protected:
  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
};

TEST_F(StoreProcessesTest, TwoWritersLoseNoUpdate) {
  constexpr int kEach = 1000;
  ChildProcess a = StartWriter("a", kEach);
  ChildProcess b = StartWriter("b", kEach);
  // Both run at once; their confirmations are drained so neither blocks.
  int n = 0, lines = 0;
  while (std::fscanf(a.out, "%d", &n) == 1) ++lines;
  while (std::fscanf(b.out, "%d", &n) == 1) ++lines;
  for (ChildProcess* c : {&a, &b}) {
    std::fclose(c->out);
    std::fclose(c->in);
  }
  EXPECT_EQ(lines, 2 * kEach);
  const int sa = Wait(a.pid), sb = Wait(b.pid);
  ASSERT_TRUE(WIFEXITED(sa) && WEXITSTATUS(sa) == 0) << sa;
  ASSERT_TRUE(WIFEXITED(sb) && WEXITSTATUS(sb) == 0) << sb;
  const auto values = ReadAll();
  ASSERT_EQ(values.size(), 2u * kEach);
  for (int i = 0; i < kEach; ++i) {
    for (const char16_t p : {u'a', u'b'}) {
      const auto it = values.find(std::u16string(1, p) + FromUtf8(std::to_string(i)));
      ASSERT_NE(it, values.end()) << i;
      EXPECT_EQ(it->second, i);
    }
  }
}

TEST_F(StoreProcessesTest, AKilledWriterKeepsEveryConfirmedValue) {
  ChildProcess w = StartWriter("k", 1000000);
  std::vector<int> confirmed;
  int i = 0;
  while (confirmed.size() < 400 && std::fscanf(w.out, "%d", &i) == 1) confirmed.push_back(i);
  ASSERT_EQ(::kill(w.pid, SIGKILL), 0);
  // Confirmations already in the pipe count too: they were printed after
  // their commit.
  while (std::fscanf(w.out, "%d", &i) == 1) confirmed.push_back(i);
  std::fclose(w.out);
  std::fclose(w.in);
  const int status = Wait(w.pid);
  ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  ASSERT_GE(confirmed.size(), 400u);
  SqliteStore check;
  const auto values = ReadAll();
  for (const int c : confirmed) {
    const auto it = values.find(u"k" + FromUtf8(std::to_string(c)));
    ASSERT_NE(it, values.end()) << "confirmed value " << c << " lost";
    EXPECT_EQ(it->second, c);
  }
  // The store is usable afterwards, with nothing to report.
  RegKey key = 0;
  EXPECT_EQ(check.CreateKey(HKEY_CURRENT_USER, u"After", 0, 63, key, nullptr), 0);
  EXPECT_EQ(check.TakeProblem(), u"");
}

// A value written by one process is what the other reads next, through
// its kept key ids, even when the key was deleted and made again between.
TEST_F(StoreProcessesTest, AlternatingProcessesNeverReadAStaleValue) {
  constexpr int kTurns = 300;
  SqliteStore store;
  ChildProcess other = StartChild("turns:");
  for (int turn = 0; turn < kTurns; turn += 2) {
    WriteTurn(store, turn);
    std::fprintf(other.in, "%d\n", turn);
    std::fflush(other.in);
    int seen = 0, written = 0;
    ASSERT_EQ(std::fscanf(other.out, "%d %d", &seen, &written), 2) << turn;
    EXPECT_EQ(seen, turn) << "the other process read a stale value";
    EXPECT_EQ(ReadTurn(store), written) << "this process read a stale value";
  }
  const int status = FinishChild(other);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

}  // namespace
}  // namespace norvik50::settings
