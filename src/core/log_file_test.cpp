#include "core/log_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(LogFileTest, LineLayout) {
  EXPECT_EQ(FormatLogLine(u"hello", {2024, 3, 5, 7, 9, 59}),
            "05.03.2024 07:09            hello\r\n");
  // Seconds never show; the message always starts at column 29.
  EXPECT_EQ(FormatLogLine(u"", {999, 12, 31, 23, 59, 0}).size(), 28u + 2u);
}

TEST(LogFileTest, ErrorLineAndNumberText) {
  EXPECT_EQ(FormatErrorLine(13, u"Type mismatch", u"LIB:tkrSetValue()"),
            u"ERR=13 'Type mismatch' (Source=LIB:tkrSetValue())");
  EXPECT_EQ(FormatErrorLine(-5, u"", u""), u"ERR=-5 '' (Source=)");
  EXPECT_EQ(ErrorNumberText(438), u"438");
  EXPECT_EQ(ErrorNumberText(-2147467259), u"&H80004005");
  EXPECT_EQ(ErrorNumberText(-1), u"&HFFFFFFFF");
  EXPECT_EQ(ErrorNumberText(0), u"0");
}

TEST(LogFileTest, TruncateOrAppend) {
  testing::TempFolder temp;
  const std::string path = temp.File("a.LOG");
  EXPECT_TRUE(WriteLogBytes(path, "one\r\n", false));  // append creates
  EXPECT_TRUE(WriteLogBytes(path, "two\r\n", false));
  EXPECT_EQ(temp.Read("a.LOG"), "one\r\ntwo\r\n");
  EXPECT_TRUE(WriteLogBytes(path, "three\r\n", true));
  EXPECT_EQ(temp.Read("a.LOG"), "three\r\n");
  EXPECT_FALSE(WriteLogBytes(temp.path(), "x", true));  // a folder
  EXPECT_FALSE(WriteLogBytes(temp.File("no/such/x"), "x", false));
}

// Another user plants a link under the log's name in a shared temporary
// folder: neither the link's target nor the link may change.
TEST(LogFileTest, APlantedLinkIsNeverFollowed) {
  testing::TempFolder temp;
  std::ofstream(temp.File("victim")) << "precious";
  std::filesystem::create_symlink(temp.File("victim"), temp.File("a.LOG"));
  EXPECT_FALSE(WriteLogBytes(temp.File("a.LOG"), "x\r\n", true));
  EXPECT_FALSE(WriteLogBytes(temp.File("a.LOG"), "x\r\n", false));
  // A dangling link must not create its target either.
  std::filesystem::create_symlink(temp.File("made"), temp.File("b.LOG"));
  EXPECT_FALSE(WriteLogBytes(temp.File("b.LOG"), "x\r\n", false));
  EXPECT_EQ(temp.Read("victim"), "precious");
  EXPECT_FALSE(std::filesystem::exists(temp.File("made")));
  EXPECT_TRUE(std::filesystem::is_symlink(temp.File("a.LOG")));
}

TEST(LogFileTest, APlantedFifoNeitherBlocksNorTakesTheLine) {
  testing::TempFolder temp;
  ASSERT_EQ(::mkfifo(temp.File("p.LOG").c_str(), 0666), 0);
  EXPECT_FALSE(WriteLogBytes(temp.File("p.LOG"), "x\r\n", false));  // returns at once
  EXPECT_FALSE(WriteLogBytes(temp.File("p.LOG"), "x\r\n", true));
}

TEST(LogFileTest, AFileOfAnotherUserIsNeitherEmptiedNorWritten) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "needs root to give a file to another user";
  }
  testing::TempFolder temp;
  std::ofstream(temp.File("theirs.LOG")) << "their lines\r\n";
  ::chmod(temp.File("theirs.LOG").c_str(), 0666);
  ASSERT_EQ(::chown(temp.File("theirs.LOG").c_str(), 65534, 65534), 0);
  EXPECT_FALSE(WriteLogBytes(temp.File("theirs.LOG"), "mine\r\n", true));
  EXPECT_EQ(temp.Read("theirs.LOG"), "their lines\r\n");
  // Planted with write access for everyone, it still takes none of this
  // user's lines.
  EXPECT_FALSE(WriteLogBytes(temp.File("theirs.LOG"), "mine\r\n", false));
  EXPECT_EQ(temp.Read("theirs.LOG"), "their lines\r\n");
}

// The whole way in: a LIB object of this user meets a log another user
// planted in the shared folder; none of its lines, errors included, lands
// there.
TEST(LogFileTest, ALibObjectWritesNothingIntoAPlantedLog) {
  if (::geteuid() != 0) {
    GTEST_SKIP() << "needs root to give a file to another user";
  }
  testing::TempFolder temp;
  testing::ScopedEnv tmpdir("TMPDIR", temp.path());
  std::ofstream(temp.File("nvk50err.LOG")) << "planted\r\n";
  ::chmod(temp.File("nvk50err.LOG").c_str(), 0666);
  ASSERT_EQ(::chown(temp.File("nvk50err.LOG").c_str(), 65534, 65534), 0);
  {
    LIB lib;
    lib.tklLogAction(u"secret action");
    lib.tklLogError(13, u"secret description", u"LIB:test", false);
  }
  EXPECT_EQ(temp.Read("nvk50err.LOG"), "planted\r\n");
}

// The whole way in: a LIB object starts its log afresh in the temporary
// folder, where the planted link sits; the line is lost, silently.
TEST(LogFileTest, ALibObjectLeavesALinkedLogsTargetAlone) {
  testing::TempFolder temp;
  testing::ScopedEnv tmpdir("TMPDIR", temp.path());
  std::ofstream(temp.File("victim")) << "precious";
  std::filesystem::create_symlink(temp.File("victim"), temp.File("nvk50err.LOG"));
  {
    LIB lib;
    lib.tklLogAction(u"more");
  }
  EXPECT_EQ(temp.Read("victim"), "precious");
  EXPECT_TRUE(std::filesystem::is_symlink(temp.File("nvk50err.LOG")));
}

}  // namespace
}  // namespace norvik50
