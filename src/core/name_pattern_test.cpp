#include "core/name_pattern.h"

#include <gtest/gtest.h>

#include <string>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

TEST(NamePatternTest, WildcardsAsTheDirectorySearchReadsThem) {
  const struct {
    const char16_t* pattern;
    const char16_t* name;
    bool matches;
  } cases[] = {
      // Plain names compare without case, the whole name.
      {u"Res_DE.dll", u"res_de.DLL", true},
      {u"Res_DE.dll", u"Res_DE.dll.bak", false},
      {u"\u00C4pfel.txt", u"\u00E4PFEL.TXT", true},
      // "*" is any run, also an empty one and one with dots.
      {u"*", u"anything.at.all", true},
      {u"*.txt", u"a.b.txt", true},
      {u"*.txt", u".txt", true},
      {u"*.txt", u"x.txt.bak", false},
      {u"a*b*c", u"aXXbYYc", true},
      {u"a*b*c", u"aXXbYY", false},
      // "*.*" is every name, with a dot or without.
      {u"*.*", u"README", true},
      {u"*.*", u"a.b", true},
      // A "." before "*" or "?" or at the end also matches the name's end.
      {u"abc.*", u"abc", true},
      {u"abc.*", u"abc.txt", true},
      {u"abc.*", u"abcd", false},
      {u"*.", u"Makefile", true},
      {u"*.", u"a.txt", false},
      {u"abc.", u"abc", true},
      {u"a.?", u"a", true},
      // "?" is one character, or none before a dot or the end.
      {u"a??.txt", u"a.txt", true},
      {u"a??.txt", u"abc.txt", true},
      {u"a??.txt", u"abcd.txt", false},
      {u"Res_??.dll", u"Res_DE.dll", true},
      {u"Res_??.dll", u"Res_D.dll", true},
      {u"?", u"", false},
      {u"x?", u"x", true},
      {u"x?", u"xy", true},
      {u"x?", u"x.", false},
      // "?" never stands for the dot itself.
      {u"a?b", u"a.b", false},
      // A "*" before a "." stops short of the last dot.
      {u"*.b", u"a.b.b", true},
      {u"*.gz", u"a.tar.gz", true},
      {u"*.tar", u"a.tar.gz", false},
      // No short names: "*.htm" is not "*.html".
      {u"*.htm", u"index.html", false},
      // Characters that are wildcards elsewhere are plain here.
      {u"[ab].txt", u"[ab].txt", true},
      {u"[ab].txt", u"a.txt", false},
      {u"<>\".txt", u"<>\".txt", true},
      // An empty pattern matches no name.
      {u"", u"", false},
      {u"", u"a", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(NamePattern(c.pattern).Matches(c.name), c.matches)
        << ToUtf8(c.pattern) << " ~ " << ToUtf8(c.name);
  }
}

// Many stars against a long name that almost matches: a backtracking
// matcher takes exponential time here, this one a moment.
TEST(NamePatternTest, ManyStarsStayLinear) {
  const NamePattern pattern(std::u16string(40, u'*') + u"b");
  EXPECT_FALSE(pattern.Matches(std::u16string(5000, u'a')));
  EXPECT_TRUE(pattern.Matches(std::u16string(5000, u'a') + u"b"));
}

}  // namespace
}  // namespace norvik50
