#include "core/file_attributes.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

namespace fs = std::filesystem;
using namespace file_attribute;

class FileAttributesTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  void SetUp() override {
    SetDriveRoot(u'C', temp_.path());
    fs::create_directories(temp_.File("App/.config"));
    fs::create_directories(temp_.File("App/Locked"));
    std::ofstream(temp_.File("App/data.txt")) << "x";
    std::ofstream(temp_.File("App/.profile")) << "x";
    std::ofstream(temp_.File("App/frozen.txt")) << "x";
    ::chmod(temp_.File("App/frozen.txt").c_str(), 0444);
    ::chmod(temp_.File("App/Locked").c_str(), 0555);
    // Only the group may write: someone may, so it is not read-only.
    std::ofstream(temp_.File("App/group.txt")) << "x";
    ::chmod(temp_.File("App/group.txt").c_str(), 0464);
    fs::create_symlink(temp_.File("App/data.txt"), temp_.File("App/link.txt"));
    fs::create_directory_symlink(temp_.File("App/.config"), temp_.File("App/cfg"));
    fs::create_symlink(temp_.File("App/none"), temp_.File("App/broken"));
    ::mkfifo(temp_.File("App/pipe").c_str(), 0644);
  }
  void TearDown() override { ClearDriveRoot(u'C'); }
};

TEST_F(FileAttributesTest, BitsFromTheModeTheTypeAndTheName) {
  const struct {
    const char16_t* path;
    int32_t bits;
  } cases[] = {
      {u"C:\\App\\data.txt", kArchive},
      {u"c:\\app\\DATA.TXT", kArchive},  // found without case
      {u"C:\\App", kDirectory},
      {u"C:\\App\\", kDirectory},
      {u"C:\\", kDirectory},  // the drive's root is no hidden name
      {u"C:\\App\\.profile", kArchive | kHidden},
      {u"C:\\App\\.config", kDirectory | kHidden},
      {u"C:\\App\\frozen.txt", kArchive | kReadOnly},
      {u"C:\\App\\Locked", kDirectory | kReadOnly},
      {u"C:\\App\\group.txt", kArchive},
      // A link answers for its target, and says it is a link.
      {u"C:\\App\\link.txt", kArchive | kReparsePoint},
      {u"C:\\App\\cfg", kDirectory | kReparsePoint},
      // Neither folder nor regular file.
      {u"C:\\App\\pipe", 0},
      // ".." is read from the text: this is C:\App, not a hidden name.
      {u"C:\\App\\.config\\..", kDirectory},
      // Nothing there.
      {u"C:\\App\\broken", kInvalid},
      {u"C:\\App\\missing.txt", kInvalid},
      {u"Q:\\x", kInvalid},
      {u"\\\\srv\\share\\x", kInvalid},
      {u"", kInvalid},
  };
  for (const auto& c : cases) EXPECT_EQ(FileAttributes(c.path), c.bits) << ToUtf8(c.path);
}

TEST_F(FileAttributesTest, NoBitOutsideThePossibleOnesIsEverSet) {
  for (const auto& entry : fs::recursive_directory_iterator(temp_.path())) {
    const int32_t bits = FileAttributes(FromUtf8(entry.path().string()));
    if (bits != kInvalid) {
      EXPECT_EQ(bits & ~kPossible, 0) << entry.path();
    }
  }
}

// The member asks for every bit given; 0 asks only whether the path is
// there. lActual gets all the bits, or -1.
TEST_F(FileAttributesTest, MemberChecksEveryGivenBit) {
  testing::ScopedEnv tmpdir("TMPDIR", temp_.path());
  LIB lib;
  const struct {
    const char16_t* path;
    int32_t asked;
    bool has;
    int32_t actual;
  } cases[] = {
      {u"C:\\App\\frozen.txt", kReadOnly, true, kArchive | kReadOnly},
      {u"C:\\App\\frozen.txt", kReadOnly | kArchive, true, kArchive | kReadOnly},
      {u"C:\\App\\frozen.txt", kReadOnly | kHidden, false, kArchive | kReadOnly},
      {u"C:\\App\\data.txt", 0, true, kArchive},
      {u"C:\\App\\.config", kDirectory | kHidden, true, kDirectory | kHidden},
      {u"C:\\App\\data.txt", 4, false, kArchive},  // system: never set here
      {u"C:\\App\\missing.txt", 0, false, kInvalid},
      {u"C:\\App\\missing.txt", -1, false, kInvalid},
  };
  for (const auto& c : cases) {
    int32_t actual = 12345;
    EXPECT_EQ(lib.tklCheckAttributes(c.path, c.asked, &actual), c.has)
        << ToUtf8(c.path) << " " << c.asked;
    EXPECT_EQ(actual, c.actual) << ToUtf8(c.path);
  }
  EXPECT_TRUE(lib.tklCheckAttributes(u"C:\\App"));
}

}  // namespace
}  // namespace norvik50
