#include "core/find_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/as_other_user.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

// A drive C: on a temporary tree, spelt as an installer left it:
//   Docs/b.TXT, Docs/A.txt, Docs/notes.md, Docs/.hidden.txt
//   Docs/Archive/2019/old.txt, Docs/Archive/x.log, Docs/Zeta/z.txt
//   Docs/alpha/deep.txt, Docs/alpha/Beta/deeper.txt
class FindFileTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  void SetUp() override {
    SetDriveRoot(u'C', temp_.path());
    for (const char* file : {"Docs/b.TXT", "Docs/A.txt", "Docs/notes.md", "Docs/.hidden.txt",
                             "Docs/Archive/2019/old.txt", "Docs/Archive/x.log", "Docs/Zeta/z.txt",
                             "Docs/alpha/deep.txt", "Docs/alpha/Beta/deeper.txt"}) {
      Make(file);
    }
  }
  void TearDown() override { ClearDriveRoot(u'C'); }
  void Make(const std::string& relative) {
    const std::filesystem::path path = temp_.File(relative);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path) << relative;
  }
};

TEST_F(FindFileTest, FirstMatchInAStableOrder) {
  const struct {
    const char16_t* folder;
    const char16_t* pattern;
    bool below;
    const char16_t* found;
  } cases[] = {
      // Name order without case: A.txt before b.TXT, the folder's own
      // spelling as given, the file's as on the disk.
      {u"C:\\Docs", u"*.txt", false, u"C:\\Docs\\.hidden.txt"},
      {u"c:\\DOCS\\", u"?.txt", false, u"c:\\DOCS\\A.txt"},
      {u"C:\\Docs", u"B.*", false, u"C:\\Docs\\b.TXT"},
      {u"C:\\Docs", u"*.md", false, u"C:\\Docs\\notes.md"},
      // Folders are never a match, only files.
      {u"C:\\Docs", u"Archive", false, u""},
      // Not below the folder unless asked; then the folder's own files
      // first, then each sub-folder in name order, depth first.
      {u"C:\\Docs", u"*.log", false, u""},
      {u"C:\\Docs", u"*.log", true, u"C:\\Docs\\Archive\\x.log"},
      {u"C:\\Docs", u"d*.txt", true, u"C:\\Docs\\alpha\\deep.txt"},
      {u"C:\\Docs", u"deeper.txt", true, u"C:\\Docs\\alpha\\Beta\\deeper.txt"},
      {u"C:\\Docs", u"?.txt", true, u"C:\\Docs\\A.txt"},
      {u"C:\\Docs\\Archive", u"*.txt", true, u"C:\\Docs\\Archive\\2019\\old.txt"},
      {u"C:\\Docs", u"z.txt", true, u"C:\\Docs\\Zeta\\z.txt"},
      // "." and ".." in the folder are read from the text.
      {u"C:\\Docs\\Zeta\\..\\.", u"a.TXT", false, u"C:\\Docs\\A.txt"},
      // Nothing to find.
      {u"C:\\Docs", u"*.pdf", true, u""},
      {u"C:\\Missing", u"*", true, u""},
      {u"C:\\Docs\\A.txt", u"*", false, u""},  // a file is not a folder
      {u"Q:\\", u"*", true, u""},              // no root for Q
      {u"\\\\srv\\share", u"*", true, u""},
      {u"C:\\Docs", u"", true, u""},
      {u"C:\\", u"Docs\\A.txt", true, u""},  // a pattern is one name
  };
  for (const auto& c : cases) {
    EXPECT_EQ(FindFile(c.folder, c.pattern, c.below), c.found)
        << ToUtf8(c.folder) << " " << ToUtf8(c.pattern) << " " << c.below;
  }
}

TEST_F(FindFileTest, EmptyFolderIsTheCurrentOne) {
  const auto saved = std::filesystem::current_path();
  std::filesystem::current_path(temp_.File("Docs/Zeta"));
  const std::u16string found = FindFile(u"", u"*.TXT", false);
  const std::u16string relative = FindFile(u"..\\Archive", u"*.LOG", false);
  std::filesystem::current_path(saved);
  EXPECT_EQ(found, u"C:\\Docs\\Zeta\\z.txt");
  EXPECT_EQ(relative, u"C:\\Docs\\Archive\\x.log");
}

// Two names that differ only in case both match; the smaller one by its
// bytes wins, on every run.
TEST_F(FindFileTest, NamesEqualButForCaseOrderByTheirBytes) {
  Make("Docs/Same/readme.txt");
  Make("Docs/Same/README.txt");
  Make("Docs/Same/ReadMe.txt");
  EXPECT_EQ(FindFile(u"C:\\Docs\\Same", u"readme.*", false), u"C:\\Docs\\Same\\README.txt");
}

TEST_F(FindFileTest, LinksCountAsFilesButAreNotFollowedIntoFolders) {
  Make("Loop/inner/target.dat");
  std::filesystem::create_directory_symlink(temp_.File("Loop"), temp_.File("Loop/inner/back"));
  std::filesystem::create_symlink(temp_.File("Loop/inner/target.dat"), temp_.File("Loop/link.dat"));
  std::filesystem::create_symlink(temp_.File("Loop/none"), temp_.File("Loop/broken.dat"));
  // The link to a file is found first in the folder (name order); the
  // broken link is no file; the loop back to Loop is never walked.
  EXPECT_EQ(FindFile(u"C:\\Loop", u"*.dat", true), u"C:\\Loop\\link.dat");
  EXPECT_EQ(FindFile(u"C:\\Loop", u"b*.dat", true), u"");
  EXPECT_EQ(FindFile(u"C:\\Loop", u"target.dat", true), u"C:\\Loop\\inner\\target.dat");
}

// A name whose bytes are not UTF-8 has no Windows spelling that leads back
// to it, so it is passed over rather than returned wrong.
TEST_F(FindFileTest, NamesThatAreNotUtf8ArePassedOver) {
  Make("Bytes/caf\xE9.txt");
  Make("Bytes/plain.txt");
  EXPECT_EQ(FindFile(u"C:\\Bytes", u"*.txt", false), u"C:\\Bytes\\plain.txt");
}

TEST_F(FindFileTest, UnreadableFoldersAreSkipped) {
  Make("Locked/a/secret.txt");
  Make("Locked/b/secret.txt");
  ::chmod(temp_.path().c_str(), 0755);
  std::filesystem::permissions(temp_.File("Locked/a"), std::filesystem::perms::none);
  const int found = testing::AsOrdinaryUser(
      [] { return FindFile(u"C:\\Locked", u"secret.txt", true) == u"C:\\Locked\\b\\secret.txt"; });
  std::filesystem::permissions(temp_.File("Locked/a"), std::filesystem::perms::owner_all);
  EXPECT_EQ(found, 1);
}

TEST_F(FindFileTest, MemberFindsThroughTheDriveMap) {
  testing::ScopedEnv tmpdir("TMPDIR", temp_.path());
  LIB lib;
  EXPECT_EQ(lib.tklFindFile(u"c:\\docs", u"*.MD"), u"c:\\docs\\notes.md");
  EXPECT_EQ(lib.tklFindFile(u"C:\\Docs", u"old.txt", true), u"C:\\Docs\\Archive\\2019\\old.txt");
  EXPECT_EQ(lib.tklFindFile(u"C:\\Docs", u"old.txt"), u"");
}

}  // namespace
}  // namespace norvik50
