// The user's key file: made once and privately, refused rather than
// repaired when it is not as it was made, and one key for processes that
// make it at the same moment.
#include "settings/value_key.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "settings/child_process_for_tests.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using norvik50::testing::ErrorOf;

std::string KeyHex(const ValueKey& key) {
  std::string hex;
  char byte[3];
  for (std::size_t i = 0; i < kValueKeyBytes; ++i) {
    std::snprintf(byte, sizeof byte, "%02x", key.data()[i]);
    hex += byte;
  }
  return hex;
}

// In a child: waits for a line on stdin, so that all children start
// together, then reads (making) the key at the path and prints it.
[[maybe_unused]] const bool kMakerRan = RunJobIfAsked("make-key", [](const std::string& path) {
  char go[8];
  if (std::fgets(go, sizeof go, stdin) == nullptr) return 2;
  try {
    ValueKey key;
    ReadValueKey(path, true, key);
    std::printf("%s\n", KeyHex(key).c_str());
  } catch (const Error& e) {
    std::printf("error %d\n", e.number());
  }
  return 0;
});

class ValueKeyTest : public ::testing::Test {
 protected:
  norvik50::testing::TempFolder temp_;
  std::string path_ = temp_.File("settings/HKEY_CURRENT_USER.key");

  void WriteKeyFile(const std::string& bytes, mode_t mode) {
    std::filesystem::create_directories(temp_.File("settings"));
    std::ofstream(path_, std::ios::binary) << bytes;
    ASSERT_EQ(::chmod(path_.c_str(), mode), 0);
  }
};

TEST_F(ValueKeyTest, MadeOnFirstUseThenKept) {
  ValueKey first;
  ReadValueKey(path_, true, first);
  struct stat st {};
  ASSERT_EQ(::stat(path_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0600u);
  EXPECT_EQ(st.st_size, 32);
  // The missing folder was made private too.
  ASSERT_EQ(::stat(temp_.File("settings").c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 0777, 0700u);
  EXPECT_EQ(temp_.Read("settings/HKEY_CURRENT_USER.key"),
            std::string(reinterpret_cast<const char*>(first.data()), kValueKeyBytes));
  ValueKey second;
  ReadValueKey(path_, true, second);
  ReadValueKey(path_, false, second);
  EXPECT_EQ(KeyHex(first), KeyHex(second));
  EXPECT_NE(KeyHex(first), std::string(64, '0'));
  // Nothing but the key is left in the folder.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp_.File("settings")),
                          std::filesystem::directory_iterator()),
            1);
}

TEST_F(ValueKeyTest, AMissingKeyIsOnlyMadeWhenAsked) {
  ValueKey key;
  EXPECT_EQ(ErrorOf([&] { ReadValueKey(path_, false, key); }), kErrFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(ValueKeyTest, AKeyFileNotAsMadeIsRefusedAndLeftAlone) {
  const std::string good(32, '\x5A');
  // Each row: what lies at the path, and the error every read gives. The
  // file is never rewritten: a new key would lose every value sealed with
  // the old one.
  struct Case {
    const char* what;
    std::string bytes;
    mode_t mode;
    int error;
  } cases[] = {
      {"readable by the group", good, 0640, 70},    {"readable by everyone", good, 0644, 70},
      {"writable by others", good, 0602, 70},       {"empty", "", 0600, 75},
      {"one byte short", good.substr(1), 0600, 75}, {"one byte long", good + "x", 0600, 75},
  };
  for (const Case& c : cases) {
    WriteKeyFile(c.bytes, c.mode);
    ValueKey key;
    for (const bool create : {false, true}) {
      EXPECT_EQ(ErrorOf([&] { ReadValueKey(path_, create, key); }), c.error) << c.what;
    }
    EXPECT_EQ(temp_.Read("settings/HKEY_CURRENT_USER.key"), c.bytes) << c.what;
    struct stat st {};
    ASSERT_EQ(::stat(path_.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, c.mode) << c.what;
  }
  // The description names the file and the remedy.
  WriteKeyFile(good, 0644);
  try {
    ValueKey key;
    ReadValueKey(path_, true, key);
    ADD_FAILURE() << "a key others may read was used";
  } catch (const Error& e) {
    EXPECT_NE(ToUtf8(e.description()).find("chmod 600 " + path_), std::string::npos);
  }
  // A good file reads as it is.
  WriteKeyFile(good, 0600);
  ValueKey key;
  ReadValueKey(path_, false, key);
  std::string expected;
  for (int i = 0; i < 32; ++i) expected += "5a";
  EXPECT_EQ(KeyHex(key), expected);
}

TEST_F(ValueKeyTest, SomethingOtherThanAFileIsRefusedWithoutWaiting) {
  std::filesystem::create_directories(temp_.File("settings"));
  // A pipe would block a plain open for reading until a writer came.
  ASSERT_EQ(::mkfifo(path_.c_str(), 0600), 0);
  ValueKey key;
  EXPECT_EQ(ErrorOf([&] { ReadValueKey(path_, true, key); }), 75);
  std::filesystem::remove(path_);
  std::filesystem::create_directory(path_);
  EXPECT_EQ(ErrorOf([&] { ReadValueKey(path_, true, key); }), 75);
}

TEST_F(ValueKeyTest, AnotherUsersKeyIsRefused) {
  if (::geteuid() != 0) GTEST_SKIP() << "giving a file away needs root";
  WriteKeyFile(std::string(32, 'k'), 0600);
  ASSERT_EQ(::chown(path_.c_str(), 65534, 65534), 0);
  ValueKey key;
  EXPECT_EQ(ErrorOf([&] { ReadValueKey(path_, true, key); }), 70);
}

TEST_F(ValueKeyTest, ProcessesMakingTheKeyAtOnceAgreeOnOne) {
  // Several rounds, each a fresh folder raced for by eight processes.
  for (int round = 0; round < 5; ++round) {
    const std::string path = temp_.File("round" + std::to_string(round) + "/HKEY_CURRENT_USER.key");
    std::vector<ChildProcess> children;
    for (int i = 0; i < 8; ++i) children.push_back(StartChild("make-key:" + path));
    for (ChildProcess& c : children) {
      std::fputs("go\n", c.in);
      std::fflush(c.in);
    }
    std::string first;
    for (ChildProcess& c : children) {
      std::string out;
      const int status = FinishChild(c, &out);
      EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << out;
      ASSERT_EQ(out.size(), 65u) << out;  // 64 hex digits and a line break
      if (first.empty()) first = out;
      EXPECT_EQ(out, first) << "round " << round;
    }
    ValueKey key;
    ReadValueKey(path, false, key);
    EXPECT_EQ(KeyHex(key) + "\n", first);
    // No temporary file of a loser stays behind.
    EXPECT_EQ(std::distance(
                  std::filesystem::directory_iterator(temp_.File("round" + std::to_string(round))),
                  std::filesystem::directory_iterator()),
              1);
  }
}

}  // namespace
}  // namespace norvik50::settings
