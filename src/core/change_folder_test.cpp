#include "core/change_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

namespace fs = std::filesystem;

// Each case starts in C:\App\Bin and says where it ends.
class ChangeFolderTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  fs::path saved_ = fs::current_path();
  void SetUp() override {
    SetDriveRoot(u'C', temp_.path());
    fs::create_directories(temp_.File("App/Bin"));
    fs::create_directories(temp_.File("Data"));
    std::ofstream(temp_.File("App/readme.txt")) << "x";
  }
  void TearDown() override {
    fs::current_path(saved_);
    ClearDriveRoot(u'C');
  }
};

TEST_F(ChangeFolderTest, FoldersByWindowsPath) {
  const struct {
    const char16_t* path;
    bool changed;
    const char16_t* current;
  } cases[] = {
      {u"C:\\Data", true, u"C:\\Data"},
      {u"c:\\DATA\\", true, u"C:\\Data"},  // found without case, named as on disk
      {u"..", true, u"C:\\App"},           // relative to the current folder
      {u"..\\..\\Data", true, u"C:\\Data"},
      {u"C:", true, u"C:\\"},          // a drive alone is its root
      {u"C:\\..\\..", true, u"C:\\"},  // never above the root
      // A Linux folder is a folder of its drive.
      {u"/", true, u"Z:\\"},
      // Nothing changes for what is no folder.
      {u"C:\\App\\readme.txt", false, u"C:\\App\\Bin"},
      {u"C:\\Missing", false, u"C:\\App\\Bin"},
      {u"Q:\\", false, u"C:\\App\\Bin"},
      {u"\\\\srv\\share", false, u"C:\\App\\Bin"},
      {u"", false, u"C:\\App\\Bin"},
  };
  for (const auto& c : cases) {
    fs::current_path(temp_.File("App/Bin"));
    EXPECT_EQ(ChangeFolder(c.path), c.changed) << ToUtf8(c.path);
    EXPECT_EQ(CurrentFolder(), c.current) << ToUtf8(c.path);
  }
}

TEST_F(ChangeFolderTest, MemberReportsTheCurrentFolderEitherWay) {
  testing::ScopedEnv tmpdir("TMPDIR", temp_.path());
  LIB lib;
  std::u16string current = u"stale";
  EXPECT_TRUE(lib.tklChangeToPath(u"c:\\app\\bin", &current));
  EXPECT_EQ(current, u"C:\\App\\Bin");
  EXPECT_EQ(fs::current_path(), fs::path(temp_.File("App/Bin")));
  EXPECT_FALSE(lib.tklChangeToPath(u"C:\\Nowhere", &current));
  EXPECT_EQ(current, u"C:\\App\\Bin");
  // Relative paths and files found later are read from the new folder.
  EXPECT_TRUE(lib.tklChangeToPath(u".."));
  EXPECT_TRUE(lib.tklFileExists(u"README.TXT"));
  EXPECT_EQ(lib.tklGetAbsolutePath(u"Bin"), u"C:\\App\\Bin");
}

}  // namespace
}  // namespace norvik50
