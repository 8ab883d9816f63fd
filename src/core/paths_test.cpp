#include "core/paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
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
      {u"", u"x", u"\\x"},  // an empty path becomes "\"
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
      {u"Q:\\x", std::nullopt},       // no root for Q
      {u"\\\\server\\share", std::nullopt},
      {u"", std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(ToLinuxPath(c.windows), c.linux_path) << ToUtf8(c.windows);
  // No drive: the current folder's drive (Z for a folder under /).
  EXPECT_EQ(ToLinuxPath(u"\\var\\log"), "/var/log");
}

// "." and ".." are read from the text, as Windows reads them, and never
// lead out of the drive's root folder; names lose the dots and spaces
// Windows drops.
TEST_F(DrivesTest, RelativeNamesAndTrailingDotsStayBelowTheRoot) {
  SetDriveRoot(u'C', temp_.path());
  const std::string root = temp_.path();
  struct Case {
    const char16_t* windows;
    std::string linux_path;
  } cases[] = {
      {u"C:\\..\\..\\etc\\passwd", root + "/etc/passwd"},
      {u"C:\\App\\..\\..\\..\\x", root + "/x"},
      {u"C:\\App\\Sub\\..\\a.dll", root + "/App/a.dll"},
      {u"C:\\App\\.\\a.dll", root + "/App/a.dll"},
      {u"C:\\\\App\\\\\\a.dll", root + "/App/a.dll"},
      {u"C:..\\x", root + "/x"},
      {u"C:\\..", root},
      {u"C:\\App.\\a.dll", root + "/App/a.dll"},
      {u"C:\\App\\a.dll. . ", root + "/App/a.dll"},
      {u"C:\\App\\a.dll. \\", root + "/App/a.dll. /"},
      {u"C:\\App\\...\\a", root + "/App/.../a"},
      {u"C:/App/../b", root + "/b"},
      {u"Z:\\..\\tmp", "/tmp"},
  };
  for (const Case& c : cases) EXPECT_EQ(ToLinuxPath(c.windows), c.linux_path) << ToUtf8(c.windows);
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

// A tree as a host's files lie on a Linux disk, in the case their
// installer gave them, while the host's stored paths use another.
class CaseTest : public DrivesTest {
 protected:
  testing::TempFolder log_folder_;  // where the LIB objects' own log goes
  testing::ScopedEnv tmpdir_{"TMPDIR", log_folder_.path()};
  void SetUp() override {
    SetDriveRoot(u'C', temp_.path());
    Make("Prog/Res_DE.dll");
    Make("Prog/Data/");
    Make("Mixed/README.txt");  // two names that differ only in case
    Make("Mixed/readme.TXT");
    Make("Mixed/Notes.txt");
    Make(
        "\xC3\x9C"
        "ber/\xC3\x84pfel \xC5\x93uvre.txt");  // "Über/Äpfel œuvre.txt"
    Make(
        "Stra\xC3\x9F"
        "e.txt");  // "Straße.txt"
  }
  // Creates a file, or a folder for a name ending in "/", with its parents.
  void Make(const std::string& relative) {
    const std::filesystem::path path = temp_.File(relative);
    if (relative.back() == '/') {
      std::filesystem::create_directories(path);
    } else {
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path) << relative;
    }
  }
  std::string Disk(const std::string& relative) { return temp_.File(relative); }
};

TEST_F(CaseTest, ComponentsAreFoundWhateverTheirCase) {
  struct Case {
    const char16_t* windows;
    std::string found;  // below the root of C:
  } cases[] = {
      {u"C:\\PROG\\RES_DE.DLL", "Prog/Res_DE.dll"},
      {u"c:\\prog\\res_de.dll", "Prog/Res_DE.dll"},
      {u"C:\\Prog\\Res_DE.dll", "Prog/Res_DE.dll"},  // exact
      {u"C:\\pRoG\\DATA\\", "Prog/Data/"},           // a trailing "\" stays
      {u"C:\\prog\\\\data", "Prog/Data"},            // repeated separators count once
      {u"C:\\prog\\.\\data\\..\\RES_de.dll", "Prog/Res_DE.dll"},  // read from the text
      // The exact name wins over one that differs only in case ...
      {u"C:\\MIXED\\readme.TXT", "Mixed/readme.TXT"},
      {u"C:\\MIXED\\README.txt", "Mixed/README.txt"},
      // ... and without one the smallest name, so every run picks the same.
      {u"C:\\MIXED\\ReadMe.Txt", "Mixed/README.txt"},
      // Windows-1252 letters fold as the registry's names do.
      {u"C:\\\u00FCBER\\\u00E4PFEL \u0152UVRE.TXT",
       "\xC3\x9C"
       "ber/\xC3\x84pfel \xC5\x93uvre.txt"},
      // One unit folds to one unit: "SS" is not "ß".
      {u"C:\\STRASSE.TXT", "STRASSE.TXT"},
      {u"C:\\STRA\u00DF"
       "E.TXT",
       "Stra\xC3\x9F"
       "e.txt"},
      // A name that is not there keeps its spelling under the folder found:
      // a file created there gets the name the caller gave.
      {u"C:\\PROG\\New.LOG", "Prog/New.LOG"},
      {u"C:\\PROG\\NoSuch\\Deeper\\x.txt", "Prog/NoSuch/Deeper/x.txt"},
      {u"C:\\nothing\\PROG", "nothing/PROG"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ToLinuxPath(c.windows), Disk(c.found)) << ToUtf8(c.windows);
  }
}

TEST_F(CaseTest, FileMembersFindFilesWhateverTheirCase) {
  LIB lib;
  EXPECT_TRUE(lib.tklFileExists(u"C:\\PROG\\RES_DE.DLL"));
  EXPECT_TRUE(lib.tklFileExists(u"c:\\prog\\res_de.dll"));
  EXPECT_FALSE(lib.tklFileExists(u"C:\\PROG\\RES_FR.DLL"));
  EXPECT_FALSE(lib.tklFileExists(u"C:\\PROG\\DATA"));  // a folder is not a file
  EXPECT_EQ(lib.tklPathExists(u"c:\\prog\\data"), 16);
  EXPECT_EQ(lib.tklPathExists(u"C:\\PROG\\DATA\\"), 16);
  EXPECT_EQ(lib.tklPathExists(u"C:\\PROG\\RES_DE.DLL"), 0);
  EXPECT_EQ(lib.tklPathExists(u"C:\\PROG\\NONE"), 0);
}

TEST_F(CaseTest, LinuxFoldersKeepTheirOwnCase) {
  // An absolute Linux path and a drive's root are Linux names, spelt as
  // the disk has them; only the Windows part of a path is looked up
  // without case.
  EXPECT_EQ(ToLinuxPath(FromUtf8(Disk("PROG/RES_DE.DLL"))), Disk("PROG/RES_DE.DLL"));
  EXPECT_FALSE(FileExists(FromUtf8(Disk("PROG/RES_DE.DLL"))));
  SetDriveRoot(u'C', Disk("PROG"));
  EXPECT_FALSE(FileExists(u"C:\\Res_DE.dll"));
  SetDriveRoot(u'C', Disk("Prog"));
  EXPECT_TRUE(FileExists(u"C:\\RES_DE.DLL"));
}

TEST_F(CaseTest, RelativePathsAreFoundFromTheCurrentFolder) {
  const auto saved = std::filesystem::current_path();
  std::filesystem::current_path(temp_.path());
  const auto relative = ToLinuxPath(u"prog\\RES_de.DLL");
  const bool exists = FileExists(u"PROG\\RES_DE.DLL");
  std::filesystem::current_path(saved);
  EXPECT_EQ(relative, "Prog/Res_DE.dll");
  EXPECT_TRUE(exists);
}

TEST_F(CaseTest, ALogCreatedThroughAFoldedFolderKeepsItsName) {
  LIB lib;
  lib.tklLogAction(u"one", u"C:\\PROG\\App.LOG");
  EXPECT_TRUE(std::filesystem::is_regular_file(Disk("Prog/App.LOG")));
  // Named again in another case, the same file is found: truncated, then
  // appended to.
  lib.tklLogAction(u"two", u"c:\\prog\\app.log");
  lib.tklLogAction(u"three");
  const std::string log = temp_.Read("Prog/App.LOG");
  EXPECT_EQ(log.find("one"), std::string::npos);
  EXPECT_EQ(log.size(), (28u + 3 + 2) + (28u + 5 + 2)) << log;  // "two", "three"
  EXPECT_FALSE(std::filesystem::exists(Disk("Prog/app.log")));
}

// The file system ends a name at its first NUL, so a path with one would
// name another file than the text says: it names none.
TEST_F(CaseTest, APathWithANulNamesNoFile) {
  const std::u16string passwd = std::u16string(u"/etc/passwd") + u'\0' + u".txt";
  ASSERT_TRUE(FileExists(u"/etc/passwd"));
  EXPECT_FALSE(FileExists(passwd));
  EXPECT_EQ(ToLinuxPath(passwd), std::nullopt);
  EXPECT_EQ(PathIsDirectory(std::u16string(u"C:\\Prog") + u'\0' + u"\\x"), 0);
  EXPECT_EQ(PathIsDirectory(std::u16string(u"C:\\Prog\\Data\\") + u'\0'), 0);
  LIB lib;
  EXPECT_FALSE(lib.tklFileExists(std::u16string(u"C:\\Prog\\Res_DE.dll") + u'\0'));
  lib.tklLogAction(u"lost", std::u16string(u"C:\\Prog\\cut.txt") + u'\0' + u".LOG");
  EXPECT_FALSE(std::filesystem::exists(Disk("Prog/cut.txt")));
  EXPECT_FALSE(std::filesystem::exists(Disk("Prog/cut.txt.LOG")));
}

}  // namespace
}  // namespace norvik50
