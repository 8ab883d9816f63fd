// The machine-wide store as every other user meets it: a file its owner
// wrote, which they may read but not write, in a folder they may not write.
// The reader is another process; when the tests run as root (root may
// write anything, so it cannot stand for an ordinary user), that process
// first becomes the unprivileged user 65534.
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <thread>

#include "norvik50/encoding.h"
#include "settings/child_process_for_tests.h"
#include "settings/registry_algorithms.h"
#include "settings/sqlite_store.h"
#include "settings/value_bytes.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

constexpr uid_t kNobody = 65534;
constexpr std::u16string_view kKey = u"Software\\Vendor";

bool AsRoot() { return ::geteuid() == 0; }

// In the child: becomes user 65534 when asked ("drop"), or stays.
bool BecomeReader(const std::string& how) {
  if (how != "drop") return true;
  return ::setgroups(0, nullptr) == 0 && ::setresgid(kNobody, kNobody, kNobody) == 0 &&
         ::setresuid(kNobody, kNobody, kNobody) == 0;
}

// Reads the store as the other user and prints what it met, one "name=value"
// line each, for the test to judge.
[[maybe_unused]] const bool kReaderRan = RunJobIfAsked("read", [](const std::string& how) {
  if (!BecomeReader(how)) return 90;
  SqliteStore store;
  RegKey key = 0;
  std::printf("open=%d\n", store.OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_QUERY_VALUE, key));
  int32_t type = 0;
  std::string data;
  const int32_t query = store.QueryValue(key, u"ResourceDLL", 1024, type, data);
  std::printf("query=%d\nvalue=%s\n", query, data.c_str());
  std::u16string name;
  std::printf("enum=%d\n", store.EnumKey(HKEY_LOCAL_MACHINE, 0, 256, name));
  std::printf("set=%d\n", store.SetValue(key, u"ResourceDLL", REG_SZ, "mine"));
  const StoreProblem first = store.TakeStoreProblem();
  std::printf("problem=%d %s\n", first.number, ToUtf8(first.description).c_str());
  RegKey created = 0;
  std::printf("create=%d\n",
              store.CreateKey(HKEY_LOCAL_MACHINE, u"Mine", 0, KEY_ALL_ACCESS, created, nullptr));
  std::printf("delete=%d\n", store.DeleteValue(key, u"ResourceDLL"));
  std::printf("again=%d\n", store.TakeStoreProblem().number);
  return 0;
});

// Reads "Counter" as the other user until it reads `last`, and prints
// "bad=N" for any read that was missing or went backwards.
[[maybe_unused]] const bool kWatcherRan = RunJobIfAsked("watch", [](const std::string& arg) {
  const std::size_t colon = arg.find(':');
  if (!BecomeReader(arg.substr(0, colon))) return 90;
  const int32_t last = std::atoi(arg.c_str() + colon + 1);
  SqliteStore store;
  int32_t seen = -1;
  int reads = 0, bad = 0;
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (seen < last && std::chrono::steady_clock::now() < give_up) {
    const Variant v = RegReadValue(store, HKEY_LOCAL_MACHINE, kKey, u"Counter",
                                   Variant(int32_t{-1}), false, nullptr);
    const int32_t now = v.type() == VarType::kLong ? v.as_long() : -1;
    if (now < seen || now < 0) ++bad;
    seen = std::max(seen, now);
    ++reads;
  }
  std::printf("reads=%d\nbad=%d\nlast=%d\n", reads, bad, seen);
  return 0;
});

// The values of "Counter" in the streak test: the last one, and one only
// ever written in units that are taken back.
constexpr int32_t kDone = 1000000;
constexpr int32_t kNeverKept = 999999999;

// Reads "Counter" as the other user until it reads kDone, a host's reads
// a millisecond apart, and prints the number of reads, those that were
// missing or went backwards ("bad"), those that saw a value never
// committed ("unkept"), and the slowest read in milliseconds.
[[maybe_unused]] const bool kStreakWatcherRan = RunJobIfAsked("streak", [](const std::string& how) {
  if (!BecomeReader(how)) return 90;
  SqliteStore store;
  int32_t seen = -1;
  int reads = 0, bad = 0, unkept = 0;
  double slowest_ms = 0;
  const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  while (seen < kDone && std::chrono::steady_clock::now() < give_up) {
    const auto start = std::chrono::steady_clock::now();
    const Variant v = RegReadValue(store, HKEY_LOCAL_MACHINE, kKey, u"Counter",
                                   Variant(int32_t{-1}), false, nullptr);
    slowest_ms =
        std::max(slowest_ms,
                 std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                     .count());
    const int32_t now = v.type() == VarType::kLong ? v.as_long() : -1;
    if (now == kNeverKept) {
      ++unkept;
    } else {
      if (now < seen || now < 0) ++bad;
      seen = std::max(seen, now);
    }
    ++reads;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  std::printf("reads=%d\nbad=%d\nunkept=%d\nslowest=%.0f\nlast=%d\n", reads, bad, unkept,
              slowest_ms, seen);
  return 0;
});

std::map<std::string, std::string> Lines(const std::string& text) {
  std::map<std::string, std::string> lines;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    const std::size_t eq = line.find('=');
    if (eq != std::string::npos) lines[line.substr(0, eq)] = line.substr(eq + 1);
  }
  return lines;
}

// Every file of the folder with its size, time and bytes.
std::map<std::string, std::string> Snapshot(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    struct stat st {};
    ::stat(entry.path().c_str(), &st);
    std::ostringstream what;
    what << st.st_size << ' ' << st.st_mtim.tv_sec << '.' << st.st_mtim.tv_nsec << ' ' << st.st_mode
         << ' ';
    std::FILE* f = std::fopen(entry.path().c_str(), "rb");
    for (int c; f != nullptr && (c = std::fgetc(f)) != EOF;) what << static_cast<char>(c);
    if (f != nullptr) std::fclose(f);
    files[entry.path().filename()] = what.str();
  }
  return files;
}

class StoreOtherUsersTest : public ::testing::Test {
 protected:
  void SetUp() override {
    // The unprivileged reader must be able to pass through every folder
    // above the temporary one (a private TMPDIR would stop it).
    for (auto p = std::filesystem::path(dir_.path()).parent_path(); p != p.root_path();
         p = p.parent_path()) {
      struct stat st {};
      if (AsRoot() && (::stat(p.c_str(), &st) != 0 || (st.st_mode & S_IXOTH) == 0)) {
        GTEST_SKIP() << p << " is closed to other users; point TMPDIR elsewhere";
      }
    }
    // Others may enter the folder; the owner writes the store as installers do.
    ASSERT_EQ(::chmod(dir_.path().c_str(), 0755), 0);
    // The owner's process ends before others read, as an installer's does.
    SqliteStore owner;
    RegKey key = 0;
    ASSERT_EQ(owner.CreateKey(HKEY_LOCAL_MACHINE, kKey, 0, KEY_ALL_ACCESS, key, nullptr), 0);
    ASSERT_EQ(owner.SetValue(key, u"ResourceDLL", REG_SZ, "C:\\App\\Res_%L.dll"), 0);
    ASSERT_EQ(owner.SetValue(key, u"Counter", REG_DWORD, std::string(4, '\0')), 0);
  }
  void TearDown() override { ::chmod(dir_.path().c_str(), 0700); }

  // Root reads as user 65534; anyone else reads as themselves, with the
  // folder made read-only (neither needs a read-only mount).
  std::string How() const { return AsRoot() ? "drop" : "stay"; }

  testing::TempFolder dir_;
  testing::ScopedEnv env_{"NORVIK50_REGISTRY_DIR", dir_.path()};
};

TEST_F(StoreOtherUsersTest, AReaderWhoMayNotWriteReadsTheCommittedValues) {
  if (!AsRoot()) {
    ASSERT_EQ(::chmod(dir_.path().c_str(), 0555), 0);
  }
  const auto before = Snapshot(dir_.path());
  ChildProcess reader = StartChild("read:" + How());
  std::string out;
  const int status = FinishChild(reader, &out);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << "\n" << out;
  const auto seen = Lines(out);
  EXPECT_EQ(seen.at("open"), "0") << out;
  EXPECT_EQ(seen.at("query"), "0") << out;
  EXPECT_EQ(seen.at("value"), std::string("C:\\App\\Res_%L.dll")) << out;
  EXPECT_EQ(seen.at("enum"), "0") << out;  // "Software"
  // Every kind of write is refused with 5, and said once with its reason.
  EXPECT_EQ(seen.at("set"), "5");
  EXPECT_EQ(seen.at("create"), "5");
  EXPECT_EQ(seen.at("delete"), "5");
  const std::string problem = seen.at("problem");
  EXPECT_EQ(problem.rfind("5 settings database " + dir_.File("HKEY_LOCAL_MACHINE.db"), 0), 0u)
      << problem;
  EXPECT_NE(problem.find(AsRoot() ? "belongs to another user" : "folder this user cannot write"),
            std::string::npos)
      << problem;
  EXPECT_EQ(seen.at("again"), "0") << "a refusal is reported once";
  if (!AsRoot()) {
    ASSERT_EQ(::chmod(dir_.path().c_str(), 0755), 0);
  }
  EXPECT_EQ(Snapshot(dir_.path()), before) << "the reader changed the owner's files";
}

// While the owner writes, the reader sees each committed value and never a
// missing or older one.
TEST_F(StoreOtherUsersTest, AReaderFollowsTheOwnerWritingAtTheSameTime) {
  if (!AsRoot()) {
    GTEST_SKIP() << "needs root: the owner must write while another user reads";
  }
  constexpr int32_t kLast = 60;
  ChildProcess watcher = StartChild("watch:drop:" + std::to_string(kLast));
  SqliteStore owner;
  RegKey key = 0;
  ASSERT_EQ(owner.OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_SET_VALUE, key), 0);
  for (int32_t i = 1; i <= kLast; ++i) {
    ASSERT_EQ(owner.SetValue(key, u"Counter", REG_DWORD, DwordBytes(i)), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  std::string out;
  const int status = FinishChild(watcher, &out);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << "\n" << out;
  const auto seen = Lines(out);
  EXPECT_EQ(seen.at("bad"), "0") << out;
  EXPECT_EQ(seen.at("last"), std::to_string(kLast)) << out;
}

// An installer committing value after value for seconds does not shut the
// other user out: each read waits for about one commit, never for the
// whole streak, and still sees only committed values, in order. (Runs for
// any user: a second process of the same user meets the same locks.)
TEST_F(StoreOtherUsersTest, ReadsGoOnWhileTheOwnerCommitsBackToBack) {
  ChildProcess watcher = StartChild("streak:" + How());
  SqliteStore owner;
  RegKey key = 0;
  ASSERT_EQ(owner.OpenKey(HKEY_LOCAL_MACHINE, kKey, KEY_SET_VALUE, key), 0);
  constexpr int32_t kMachine[] = {HKEY_LOCAL_MACHINE};
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
  int32_t commits = 0;
  while (std::chrono::steady_clock::now() < end) {
    ASSERT_EQ(owner.SetValue(key, u"Counter", REG_DWORD, DwordBytes(++commits)), 0);
    if (commits % 10 == 0) {
      EXPECT_EQ(owner.RunAtomically(kMachine,
                                    [&] {
                                      owner.SetValue(key, u"Counter", REG_DWORD,
                                                     DwordBytes(kNeverKept));
                                      return 1;
                                    }),
                1);
    }
  }
  ASSERT_EQ(owner.SetValue(key, u"Counter", REG_DWORD, DwordBytes(kDone)), 0);
  std::string out;
  const int status = FinishChild(watcher, &out);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << "\n" << out;
  const auto seen = Lines(out);
  EXPECT_EQ(seen.at("bad"), "0") << out;
  EXPECT_EQ(seen.at("unkept"), "0") << out;
  EXPECT_EQ(seen.at("last"), std::to_string(kDone)) << out;
  // Shut out, a reader waited for the whole streak (seconds); let in, for
  // about a commit (tens of milliseconds on a loaded disk at worst).
  EXPECT_LT(std::stod(seen.at("slowest")), 1000.0) << out << commits << " commits";
  EXPECT_GT(std::stoi(seen.at("reads")), 10) << out;
}

// A store file another user may not read at all is a refusal, not damage.
TEST_F(StoreOtherUsersTest, AFileTheReaderMayNotOpenIsARefusal) {
  if (!AsRoot()) {
    ASSERT_EQ(::chmod(dir_.path().c_str(), 0555), 0);
  }
  const std::string file = dir_.File("HKEY_LOCAL_MACHINE.db");
  ASSERT_EQ(::chmod(file.c_str(), AsRoot() ? 0600 : 0200), 0);
  ChildProcess reader = StartChild("read:" + How());
  std::string out;
  const int status = FinishChild(reader, &out);
  ::chmod(file.c_str(), 0644);
  if (!AsRoot()) ::chmod(dir_.path().c_str(), 0755);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << "\n" << out;
  const auto seen = Lines(out);
  EXPECT_EQ(seen.at("open"), "5") << out;
  EXPECT_EQ(seen.at("problem").rfind("5 settings database " + file + " cannot be read", 0), 0u)
      << out;
  EXPECT_EQ(seen.at("again"), "0");
}

}  // namespace
}  // namespace norvik50::settings
