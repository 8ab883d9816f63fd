#include "core/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

TEST(GetFullPathTest, ExactlyOneSeparatorAtTheJoint) {
  struct Case {
    const char16_t* path;
    const char16_t* file;
    const char16_t* joined;
  } cases[] = {
      {u"C:\\Temp", u"x.LOG", u"C:\\Temp\\x.LOG"},
      {u"C:\\Temp\\", u"x.LOG", u"C:\\Temp\\x.LOG"},
      {u"C:\\Temp\\", u"\\x.LOG", u"C:\\Temp\\x.LOG"},
      {u"", u"x", u"\\x"},        // an empty path becomes "\"
      {u"C:\\Temp", u"", u"C:\\Temp\\"},
      {u"C:\\Temp\\", u"\\\\x", u"C:\\Temp\\\\x"},  // only one "\" is dropped
  };
  for (const Case& c : cases) EXPECT_EQ(GetFullPath(c.path, c.file), c.joined);
}

TEST(SplitPathTest, FieldsOfTypicalPaths) {
  const std::u16string drive(1, CurrentFolder()[0]);
  struct Case {
    const char16_t* full;
    std::u16string drive, path, name, ext;
  } cases[] = {
      {u"c:\\data\\report.final.txt", u"C", u"c:\\data\\", u"report.final", u"txt"},
      // No folder and no dot: the current folder's drive.
      {u"readme", drive, u"", u"readme", u""},
      // The dot of a folder never gives the file an extension.
      {u"C:\\my.dir\\file", u"C", u"C:\\my.dir\\", u"file", u""},
      {u"\\\\server\\share\\a.b", drive, u"\\\\server\\share\\", u"a", u"b"},
      {u"d:\\", u"D", u"d:\\", u"", u""},
      {u"x.", drive, u"", u"x", u""},
      {u".profile", drive, u"", u"", u"profile"},
      {u"", drive, u"", u"", u""},
  };
  for (const Case& c : cases) {
    typFileInfo info;
    info.lpExt = u"stale";
    EXPECT_TRUE(SplitPath(c.full, info));
    EXPECT_EQ(info.lpDrive, c.drive) << ToUtf8(c.full);
    EXPECT_EQ(info.lpPath, c.path) << ToUtf8(c.full);
    EXPECT_EQ(info.lpFilename, c.name) << ToUtf8(c.full);
    EXPECT_EQ(info.lpExt, c.ext) << ToUtf8(c.full);
    EXPECT_EQ(info.lpFullName, c.full);
  }
}

class DrivesTest : public ::testing::Test {
 protected:
  void TearDown() override { ClearDriveRoot(u'C'); }
  testing::TempFolder temp_;
};

TEST_F(DrivesTest, WindowsPathsToLinux) {
  SetDriveRoot(u'c', temp_.path() + "/");
  struct Case {
    const char16_t* windows;
    std::optional<std::string> linux_path;
  } cases[] = {
      {u"Z:\\tmp\\x.LOG", "/tmp/x.LOG"},
      {u"z:\\", "/"},
      {u"C:\\App\\a.dll", temp_.path() + "/App/a.dll"},
      {u"c:", temp_.path()},
      {u"rel\\a.txt", "rel/a.txt"},
      {u"/etc/hosts", "/etc/hosts"},  // already a Linux path
      {u"Q:\\x", std::nullopt},          // no root for Q
      {u"\\\\server\\share", std::nullopt},
      {u"", std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(ToLinuxPath(c.windows), c.linux_path) << ToUtf8(c.windows);
  // No drive: the current folder's drive (Z for a folder under /).
  EXPECT_EQ(ToLinuxPath(u"\\var\\log"), "/var/log");
}

TEST_F(DrivesTest, LinuxPathsToWindowsTakeTheLongestRoot) {
  SetDriveRoot(u'C', temp_.path());
  EXPECT_EQ(ToWindowsPath("/tmp"), u"Z:\\tmp");
  EXPECT_EQ(ToWindowsPath("/"), u"Z:\\");
  EXPECT_EQ(ToWindowsPath(temp_.path() + "/App/x"), u"C:\\App\\x");
  EXPECT_EQ(ToWindowsPath(temp_.path()), u"C:\\");
  // A sibling that merely shares the prefix is not under C.
  EXPECT_EQ(ToWindowsPath(temp_.path() + "x/y")->substr(0, 3), u"Z:\\");
}

TEST_F(DrivesTest, FileAndFolderTests) {
  SetDriveRoot(u'C', temp_.path());
  std::filesystem::create_directory(temp_.File("dir.d"));
  std::ofstream(temp_.File("file.txt")) << "x";
  EXPECT_TRUE(FileExists(u"C:\\file.txt"));
  EXPECT_FALSE(FileExists(u"C:\\dir.d"));  // a folder is not a file
  EXPECT_FALSE(FileExists(u"C:\\missing.txt"));
  EXPECT_FALSE(FileExists(u""));
  EXPECT_FALSE(FileExists(u"Q:\\file.txt"));
  EXPECT_EQ(PathIsDirectory(u"C:\\dir.d"), 16);  // the attribute, not True
  EXPECT_EQ(PathIsDirectory(u"C:\\dir.d\\"), 16);
  EXPECT_EQ(PathIsDirectory(u"C:\\file.txt"), 0);
  EXPECT_EQ(PathIsDirectory(u""), 0);
}

}  // namespace
}  // namespace norvik50
