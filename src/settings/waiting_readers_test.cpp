#include "settings/waiting_readers.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <future>
#include <thread>

#include "testing/temp_folder.h"

namespace norvik50::settings {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

class WaitingReadersTest : public ::testing::Test {
 protected:
  // How long the owner's LetIn(limit) took, in milliseconds.
  static double LetInTook(WaitingReaders& owner, milliseconds limit) {
    const auto start = Clock::now();
    owner.LetIn(limit);
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
  }

  testing::TempFolder dir_;
  std::string path_ = dir_.File("store.db-readers");
};

TEST_F(WaitingReadersTest, TheOwnerMakesTheSideFileForEveryReader) {
  ASSERT_TRUE(WaitingReaders::Make(path_, 0644));
  struct stat st {};
  ASSERT_EQ(::stat(path_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0644u) << "the umask must not apply";
  // Made already: nothing changes.
  ASSERT_EQ(::chmod(path_.c_str(), 0640), 0);
  EXPECT_TRUE(WaitingReaders::Make(path_, 0644));
  ASSERT_EQ(::stat(path_.c_str(), &st), 0);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
}

// The owner waits while a reader says it waits, and goes on as soon as it
// no longer does, or when the limit is reached.
TEST_F(WaitingReadersTest, TheOwnerWaitsForReadersThatSayTheyWait) {
  ASSERT_TRUE(WaitingReaders::Make(path_, 0644));
  WaitingReaders owner(path_), reader(path_), other_reader(path_);
  EXPECT_LT(LetInTook(owner, milliseconds(2000)), 500) << "nobody waits";

  reader.Join();
  other_reader.Join();
  ASSERT_TRUE(reader.joined());
  EXPECT_GE(LetInTook(owner, milliseconds(100)), 100) << "a reader that never leaves";

  auto leave = std::async(std::launch::async, [&] {
    std::this_thread::sleep_for(milliseconds(150));
    reader.Leave();
    std::this_thread::sleep_for(milliseconds(150));
    other_reader.Leave();
  });
  const double took = LetInTook(owner, milliseconds(5000));
  leave.get();
  EXPECT_GE(took, 290) << "left before both readers were through";
  EXPECT_LT(took, 2500) << "still waited after both readers left";
  EXPECT_FALSE(reader.joined());

  // The owner's own sign (it waited as a reader before) does not hold it up.
  owner.Join();
  EXPECT_LT(LetInTook(owner, milliseconds(2000)), 500);
  owner.Leave();
}

// Without the side file (an older store, a per-user store) nothing is said
// and nobody waits; a file made later is found.
TEST_F(WaitingReadersTest, WithoutTheSideFileNobodyWaits) {
  WaitingReaders none, owner(path_), reader(path_);
  none.Join();
  reader.Join();
  EXPECT_FALSE(none.joined());
  EXPECT_FALSE(reader.joined());
  EXPECT_LT(LetInTook(owner, milliseconds(2000)), 500);
  ASSERT_TRUE(WaitingReaders::Make(path_, 0644));
  reader.Join();
  EXPECT_TRUE(reader.joined());
  EXPECT_GE(LetInTook(owner, milliseconds(50)), 50);
}

}  // namespace
}  // namespace norvik50::settings
