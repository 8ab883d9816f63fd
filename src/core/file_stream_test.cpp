#include "core/file_stream.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "norvik50/encoding.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/as_other_user.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

namespace fs = std::filesystem;
using testing::ErrorOf;

std::string AllBytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes.push_back(static_cast<char>(b));
  return bytes;
}

class FileStreamTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  void SetUp() override {
    SetDriveRoot(u'C', temp_.path());
    fs::create_directories(temp_.File("Data/Sub"));
  }
  void TearDown() override { ClearDriveRoot(u'C'); }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(temp_.File(name), std::ios::binary) << bytes;
  }
};

TEST_F(FileStreamTest, EveryByteIsOneCharacterBothWays) {
  Write("Data/all.bin", AllBytes());
  const std::u16string text = ReadFileStream(u"C:\\DATA\\ALL.BIN");
  ASSERT_EQ(text.size(), 256u);
  EXPECT_EQ(text, BytesToText(AllBytes()));
  EXPECT_EQ(text[0x80], u'\u20AC');  // Windows-1252: 0x80 is the euro sign
  EXPECT_EQ(text[0x81], u'\u0081');  // undefined bytes keep their value
  WriteFileStream(u"C:\\Data\\copy.bin", text);
  EXPECT_EQ(temp_.Read("Data/copy.bin"), AllBytes());
  WriteFileStream(u"C:\\Data\\empty.bin", u"");
  EXPECT_TRUE(fs::is_regular_file(temp_.File("Data/empty.bin")));
  EXPECT_EQ(ReadFileStream(u"C:\\Data\\empty.bin"), u"");
}

// Writing replaces the content entirely, also with a shorter one, in the
// file as found without case, keeping its mode and its links.
TEST_F(FileStreamTest, WritingReplacesTheContentInPlace) {
  Write("Data/Report.txt", "a long old content");
  ::chmod(temp_.File("Data/Report.txt").c_str(), 0640);
  fs::create_hard_link(temp_.File("Data/Report.txt"), temp_.File("Data/hard.txt"));
  fs::create_symlink(temp_.File("Data/Report.txt"), temp_.File("Data/soft.txt"));
  WriteFileStream(u"c:\\data\\REPORT.TXT", u"new");
  EXPECT_EQ(temp_.Read("Data/Report.txt"), "new");
  EXPECT_EQ(temp_.Read("Data/hard.txt"), "new");
  EXPECT_FALSE(fs::exists(temp_.File("Data/REPORT.TXT")));
  EXPECT_EQ(fs::status(temp_.File("Data/Report.txt")).permissions() & fs::perms::all,
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  WriteFileStream(u"C:\\Data\\soft.txt", u"through the link");
  EXPECT_TRUE(fs::is_symlink(temp_.File("Data/soft.txt")));
  EXPECT_EQ(temp_.Read("Data/Report.txt"), "through the link");
  // A new file takes the name as given, in the folder as found.
  WriteFileStream(u"C:\\DATA\\SUB\\New.Txt", u"x");
  EXPECT_EQ(temp_.Read("Data/Sub/New.Txt"), "x");
}

TEST_F(FileStreamTest, FailuresAreNumberedAndLeaveFilesAlone) {
  Write("Data/keep.txt", "kept");
  ::mkfifo(temp_.File("Data/pipe").c_str(), 0644);
  const struct {
    const char* what;
    std::function<void()> action;
    int32_t error;
  } cases[] = {
      {"read missing", [] { (void)ReadFileStream(u"C:\\Data\\none.txt"); }, 53},
      {"read folder", [] { (void)ReadFileStream(u"C:\\Data\\Sub"); }, 75},
      // A pipe nobody writes must not block the read.
      {"read pipe", [] { (void)ReadFileStream(u"C:\\Data\\pipe"); }, 75},
      {"read empty name", [] { (void)ReadFileStream(u""); }, 52},
      {"read unmapped", [] { (void)ReadFileStream(u"Q:\\x"); }, 52},
      {"read share", [] { (void)ReadFileStream(u"\\\\srv\\share\\x"); }, 52},
      {"read NUL", [] { (void)ReadFileStream(std::u16string(u"C:\\Data\\keep.txt\0x", 18)); }, 52},
      {"write no folder", [] { WriteFileStream(u"C:\\None\\x.txt", u"x"); }, 76},
      {"write folder", [] { WriteFileStream(u"C:\\Data\\Sub", u"x"); }, 75},
      {"write pipe", [] { WriteFileStream(u"C:\\Data\\pipe", u"x"); }, 75},
      {"write unmapped", [] { WriteFileStream(u"Q:\\x", u"x"); }, 52},
      // No byte for the character: the file keeps its content.
      {"write no byte", [] { WriteFileStream(u"C:\\Data\\keep.txt", u"ok \u4E2D"); }, 5},
  };
  for (const auto& c : cases) EXPECT_EQ(ErrorOf(c.action), c.error) << c.what;
  EXPECT_EQ(temp_.Read("Data/keep.txt"), "kept");
  EXPECT_FALSE(fs::exists(temp_.File("None")));
}

TEST_F(FileStreamTest, FilesThatMayNotBeReadOrWritten) {
  Write("Data/secret.txt", "s");
  ::chmod(temp_.File("Data/secret.txt").c_str(), 0200);
  Write("Data/frozen.txt", "f");
  ::chmod(temp_.File("Data/frozen.txt").c_str(), 0444);
  ::chmod(temp_.path().c_str(), 0755);
  ::chmod(temp_.File("Data").c_str(), 0755);
  EXPECT_EQ(testing::AsOrdinaryUser(
                [] { return ErrorOf([] { (void)ReadFileStream(u"C:\\Data\\secret.txt"); }); }),
            70);
  EXPECT_EQ(testing::AsOrdinaryUser(
                [] { return ErrorOf([] { WriteFileStream(u"C:\\Data\\frozen.txt", u"x"); }); }),
            70);
  EXPECT_EQ(temp_.Read("Data/frozen.txt"), "f");
}

TEST_F(FileStreamTest, PropertyGetAndLetOnTheObject) {
  testing::ScopedEnv tmpdir("TMPDIR", temp_.path());
  LIB lib;
  const std::u16string bytes(u"\u00FF\u0000\u20AC", 3);
  lib.tklFileStream(u"C:\\Data\\p.bin", bytes);
  EXPECT_EQ(temp_.Read("Data/p.bin"), std::string("\xFF\0\x80", 3));
  EXPECT_EQ(lib.tklFileStream(u"C:\\Data\\p.bin"), bytes);
  EXPECT_EQ(ErrorOf([&] { (void)lib.tklFileStream(u"C:\\Data\\none"); }), 53);
}

}  // namespace
}  // namespace norvik50
