// Several processes on one store: no lost updates, and a writer killed in
// the middle loses nothing it had been told was stored. The writers are
// this test program itself, started again with NORVIK50_SETTINGS_WRITER.
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
#include "settings/registry_algorithms.h"
#include "settings/sqlite_store.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr std::u16string_view kKey = u"Software\\Shared";

// In a writer process: writes values PREFIX0 ... PREFIX<count-1> (Long i)
// into kKey and prints "i" on stdout once each is stored; then exits
// without returning to the test runner.
[[maybe_unused]] const bool kWriterRan = [] {
  const char* job = std::getenv("NORVIK50_SETTINGS_WRITER");
  if (job == nullptr) return false;
  const std::string s(job);
  const std::size_t colon = s.find(':');
  const std::u16string prefix = FromUtf8(s.substr(0, colon));
  const int count = std::atoi(s.c_str() + colon + 1);
  SqliteStore store;
  for (int i = 0; i < count; ++i) {
    const std::u16string name = prefix + FromUtf8(std::to_string(i));
    if (!RegWriteValue(store, HKEY_CURRENT_USER, kKey, name, Variant(int32_t{i}), nullptr)) {
      std::_Exit(3);
    }
    std::printf("%d\n", i);
    std::fflush(stdout);
  }
  std::_Exit(0);
}();

struct Writer {
  pid_t pid = -1;
  FILE* out = nullptr;  // the writer's confirmations
};

Writer StartWriter(const std::string& prefix, int count) {
  int fds[2];
  EXPECT_EQ(::pipe(fds), 0);
  Writer w;
  w.pid = ::fork();
  if (w.pid == 0) {
    ::dup2(fds[1], STDOUT_FILENO);
    ::close(fds[0]);
    ::close(fds[1]);
    const std::string job = prefix + ":" + std::to_string(count);
    ::setenv("NORVIK50_SETTINGS_WRITER", job.c_str(), 1);
    char* const args[] = {const_cast<char*>("settings_tests"), nullptr};
    ::execv("/proc/self/exe", args);
    std::_Exit(127);
  }
  ::close(fds[1]);
  w.out = ::fdopen(fds[0], "r");
  return w;
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
  Writer a = StartWriter("a", kEach);
  Writer b = StartWriter("b", kEach);
  // Both run at once; their confirmations are drained so neither blocks.
  int n = 0, lines = 0;
  while (std::fscanf(a.out, "%d", &n) == 1) ++lines;
  while (std::fscanf(b.out, "%d", &n) == 1) ++lines;
  std::fclose(a.out);
  std::fclose(b.out);
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
  Writer w = StartWriter("k", 1000000);
  std::vector<int> confirmed;
  int i = 0;
  while (confirmed.size() < 400 && std::fscanf(w.out, "%d", &i) == 1) confirmed.push_back(i);
  ASSERT_EQ(::kill(w.pid, SIGKILL), 0);
  // Confirmations already in the pipe count too: they were printed after
  // their commit.
  while (std::fscanf(w.out, "%d", &i) == 1) confirmed.push_back(i);
  std::fclose(w.out);
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

}  // namespace
}  // namespace norvik50::settings
