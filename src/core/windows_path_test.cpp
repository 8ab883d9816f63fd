#include "core/windows_path.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "core/name_fold.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

struct PathCase {
  const char16_t* path;
  const char16_t* base;
  const char16_t* expected;
};

TEST(AbsoluteWindowsPathTest, ResolvesBelowTheBaseAndNeverAboveTheRoot) {
  const PathCase cases[] = {
      {u"x.txt", u"C:\\App", u"C:\\App\\x.txt"},
      {u"sub\\x.txt", u"C:\\App\\", u"C:\\App\\sub\\x.txt"},
      {u"..\\x.txt", u"C:\\App\\Bin", u"C:\\App\\x.txt"},
      {u".\\.\\x", u"C:\\App", u"C:\\App\\x"},
      // ".." stops at the root, however many there are.
      {u"..\\..\\..\\x", u"C:\\App", u"C:\\x"},
      {u"..", u"C:\\", u"C:\\"},
      // An absolute path ignores the base and is only normalized.
      {u"D:\\Data\\..\\Other\\.\\f", u"C:\\App", u"D:\\Other\\f"},
      {u"d:/data//f", u"C:\\App", u"d:\\data\\f"},
      // "\x" lies on the base's drive or share.
      {u"\\Temp\\x", u"C:\\App\\Bin", u"C:\\Temp\\x"},
      {u"\\x", u"\\\\srv\\share\\a\\b", u"\\\\srv\\share\\x"},
      // A drive without "\" reads from the drive's root.
      {u"C:x", u"C:\\App", u"C:\\x"},
      {u"C:", u"D:\\App", u"C:\\"},
      // Shares: the first two names are the root and ".." never leaves it.
      {u"\\\\srv\\share\\a\\..\\..\\..\\b", u"", u"\\\\srv\\share\\b"},
      {u"\\\\\\srv\\\\share", u"", u"\\\\srv\\share\\"},
      {u"\\\\srv", u"", u"\\\\srv\\"},
      {u"\\\\", u"", u"\\\\"},
      // A trailing separator asks for a folder and stays; names lose the
      // dots and spaces Windows drops.
      {u"Sub\\", u"C:\\App", u"C:\\App\\Sub\\"},
      {u"a.txt. . ", u"C:\\App", u"C:\\App\\a.txt"},
      {u"dir.\\a", u"C:\\App", u"C:\\App\\dir\\a"},
      {u"...\\a", u"C:\\App", u"C:\\App\\...\\a"},
      // The base is normalized as any path is.
      {u"x", u"C:\\App\\..\\Bin\\.", u"C:\\Bin\\x"},
      // A Linux path takes the drive of the drive map; Linux resolves its
      // own "..".
      {u"/tmp/x", u"C:\\App", u"Z:\\tmp\\x"},
      {u"/tmp/../etc/", u"C:\\App", u"Z:\\etc\\"},
      {u"", u"C:\\App", u""},
  };
  for (const PathCase& c : cases) {
    EXPECT_EQ(AbsoluteWindowsPath(c.path, c.base), c.expected)
        << ToUtf8(c.path) << " from " << ToUtf8(c.base);
  }
}

TEST(RelativeWindowsPathTest, LeadsFromTheBaseFolder) {
  const PathCase cases[] = {
      {u"C:\\App\\Docs\\a.doc", u"C:\\App", u".\\Docs\\a.doc"},
      {u"C:\\App\\a.doc", u"C:\\App\\Bin\\Debug", u"..\\..\\a.doc"},
      {u"C:\\Other\\a.doc", u"C:\\App\\Bin", u"..\\..\\Other\\a.doc"},
      // Roots and names compare without case; the result keeps the
      // spelling of the path.
      {u"c:\\APP\\Docs\\A.doc", u"C:\\app\\", u".\\Docs\\A.doc"},
      {u"C:\\\u00C4rger\\x", u"c:\\\u00E4rger", u".\\x"},
      // The folder itself, and a folder path keeping its separator.
      {u"C:\\App", u"C:\\App", u"."},
      {u"C:\\App\\", u"C:\\App", u".\\"},
      {u"C:\\", u"C:\\App", u"..\\"},
      {u"C:\\App\\Bin\\", u"C:\\App", u".\\Bin\\"},
      // Names are whole: "App" is not a prefix of "Apple".
      {u"C:\\Apple\\x", u"C:\\App", u"..\\Apple\\x"},
      // "." and ".." are resolved in both before they are compared.
      {u"C:\\App\\Bin\\..\\x", u"C:\\App\\.\\Data\\..", u".\\x"},
      // A relative path is first read below the base.
      {u"..\\x", u"C:\\App\\Bin", u"..\\x"},
      {u"sub\\..\\..\\x", u"C:\\App\\Bin", u"..\\x"},
      // A first name that reads like a drive stays behind ".\".
      {u"C:\\App\\x:y", u"C:\\App", u".\\x:y"},
      // Shares compare server and share without case.
      {u"\\\\srv\\Share\\a\\b", u"\\\\SRV\\share\\c", u"..\\a\\b"},
      // Another drive or share cannot be reached: the absolute path.
      {u"D:\\x\\..\\y", u"C:\\App", u"D:\\y"},
      {u"\\\\srv\\other\\x", u"\\\\srv\\share", u"\\\\srv\\other\\x"},
      {u"C:\\x", u"\\\\srv\\share", u"C:\\x"},
      {u"", u"C:\\App", u""},
  };
  for (const PathCase& c : cases) {
    EXPECT_EQ(RelativeWindowsPath(c.path, c.base), c.expected)
        << ToUtf8(c.path) << " from " << ToUtf8(c.base);
  }
}

// The empty base is the current folder, so both members read paths as a
// host's relative file names are read.
TEST(WindowsPathTest, EmptyBaseIsTheCurrentFolder) {
  testing::TempFolder temp;
  const auto saved = std::filesystem::current_path();
  std::filesystem::create_directory(temp.File("Sub"));
  std::filesystem::current_path(temp.File("Sub"));
  const std::u16string current = CurrentFolder();
  const std::u16string absolute = AbsoluteWindowsPath(u"..\\x.txt");
  const std::u16string relative = RelativeWindowsPath(current + u"\\y\\z");
  const std::u16string root_relative = AbsoluteWindowsPath(u"\\etc");
  std::filesystem::current_path(saved);
  ASSERT_EQ(current, *ToWindowsPath(temp.File("Sub")));
  EXPECT_EQ(absolute, *ToWindowsPath(temp.File("x.txt")));
  EXPECT_EQ(relative, u".\\y\\z");
  EXPECT_EQ(root_relative, current.substr(0, 3) + u"etc");
}

TEST(WindowsPathTest, LastPathNameSkipsTheRoot) {
  const struct {
    const char16_t* path;
    const char16_t* name;
  } cases[] = {
      {u"C:\\App\\.hidden", u".hidden"}, {u"C:\\App\\Sub\\", u"Sub"},  {u"C:\\", u""},
      {u"\\\\srv\\share\\", u""},        {u"\\\\srv\\share\\x", u"x"}, {u"", u""},
  };
  for (const auto& c : cases) EXPECT_EQ(LastPathName(c.path), c.name) << ToUtf8(c.path);
}

// Random paths from a small alphabet of names, separators and steps: the
// relative path always leads back to the same place, whatever the base.
TEST(WindowsPathTest, RelativeLeadsBackToTheAbsolutePath) {
  const std::u16string parts[] = {u"a", u"B",  u"..",     u".",      u"\\",  u"/",  u"c.",
                                  u" ", u"x:", u"\u00C4", u"\u00E4", u"...", u"C:", u"\\\\"};
  const std::u16string roots[] = {u"C:\\", u"c:", u"D:\\", u"\\\\srv\\sh\\", u"\\", u""};
  std::mt19937 random(19);
  auto make = [&] {
    std::u16string path = roots[random() % std::size(roots)];
    for (int n = random() % 8; n > 0; --n) path += parts[random() % std::size(parts)];
    return path;
  };
  for (int i = 0; i < 5000; ++i) {
    const std::u16string base = u"C:\\" + make();
    const std::u16string path = make();
    if (path.empty()) continue;
    const std::u16string absolute = AbsoluteWindowsPath(path, base);
    const std::u16string relative = RelativeWindowsPath(path, base);
    // Normalizing twice changes nothing.
    EXPECT_EQ(AbsoluteWindowsPath(absolute, base), absolute) << ToUtf8(path);
    EXPECT_EQ(FoldName(AbsoluteWindowsPath(relative, base)), FoldName(absolute))
        << ToUtf8(path) << " from " << ToUtf8(base) << " via " << ToUtf8(relative);
  }
}

TEST(WindowsPathTest, MembersForwardByName) {
  testing::TempFolder logs;
  testing::ScopedEnv tmpdir("TMPDIR", logs.path());
  LIB lib;
  EXPECT_EQ(lib.tklGetRelativePath(u"C:\\App\\Docs\\a.doc", u"c:\\app"), u".\\Docs\\a.doc");
  EXPECT_EQ(lib.tklGetAbsolutePath(u"..\\a.doc", u"C:\\App\\Docs"), u"C:\\App\\a.doc");
  EXPECT_EQ(lib.tklGetAbsolutePath(u""), u"");
}

}  // namespace
}  // namespace norvik50
