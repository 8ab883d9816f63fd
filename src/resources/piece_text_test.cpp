// The piece list under edits: searches across piece edges, marks that keep
// their unit while the text around them changes, and the final front
// moved out.
#include "resources/piece_text.h"

#include <gtest/gtest.h>

#include <memory_resource>
#include <string>

namespace norvik50 {
namespace {

std::u16string All(PieceText& text) {
  std::u16string out;
  text.MovePiecesBefore(PieceText::kNone, out);
  return out;
}

TEST(PieceTextTest, FindsPatternsAcrossPieceEdges) {
  std::pmr::monotonic_buffer_resource memory;
  PieceText text(u"a%xb%yc", &memory);
  PieceText::Mark none;
  const PieceText::Mark x = text.Find(u"%x", text.Begin());
  ASSERT_EQ(x.index, 1u);
  PieceText::Mark y = text.Find(u"%y", text.Begin());
  const PieceText::Mark before = text.Replace(x, u"%", y);
  EXPECT_EQ(before.index, 0u);  // the unit before the replaced ones
  EXPECT_EQ(y.index, 3u);       // moved along: "a%b%yc"
  // "%" (the value) and "b" (the source) now stand in two pieces.
  EXPECT_EQ(text.Find(u"%b", before).index, 1u);
  // The limit excludes starts at or after it.
  EXPECT_FALSE(text.Find(u"%y", before, 3).found());
  EXPECT_EQ(text.Find(u"%y", before, 4).index, 3u);
  EXPECT_FALSE(text.Find(u"%z", before).found());
  EXPECT_FALSE(text.Find(u"%b", none).found());
  EXPECT_EQ(All(text), u"a%b%yc");
}

TEST(PieceTextTest, ReplacementsKeepTheOtherMarkOnItsUnit) {
  std::pmr::monotonic_buffer_resource memory;
  PieceText text(u"%s..%d..%s", &memory);
  PieceText::Mark s = text.Find(u"%s", text.Begin());
  PieceText::Mark d = text.Find(u"%d", text.Begin());
  // Replaced before the mark: it shifts by the change in length.
  text.Replace(s, u"long value", d);
  EXPECT_EQ(d.index, 12u);
  s = text.Find(u"%s", text.Begin());
  EXPECT_EQ(s.index, 16u);
  // Replaced after the mark: it stays.
  text.Replace(s, u"", d);
  EXPECT_EQ(d.index, 12u);
  // Replaced by nothing at the very start: the first unit comes back.
  PieceText::Mark none;
  const PieceText::Mark start = text.Find(u"lo", text.Begin());
  ASSERT_EQ(start.index, 0u);
  EXPECT_EQ(text.Replace(start, u"", d).index, 0u);
  EXPECT_EQ(d.index, 10u);
  text.Replace(d, u"7", none);
  EXPECT_EQ(All(text), u"ng value..7..");
}

TEST(PieceTextTest, MovesOnlyWholePiecesBeforeTheEnd) {
  std::pmr::monotonic_buffer_resource memory;
  PieceText text(u"ab%scd", &memory);
  PieceText::Mark none;
  text.Replace(text.Find(u"%s", text.Begin()), u"XY", none);  // "ab" "XY" "cd"
  std::u16string out;
  text.MovePiecesBefore(3, out);  // "XY" reaches past 3: it stays
  EXPECT_EQ(out, u"ab");
  EXPECT_EQ(text.Begin().index, 2u);  // indexes stay those of the whole text
  EXPECT_EQ(text.Find(u"Yc", text.Begin()).index, 3u);
  text.MovePiecesBefore(4, out);
  EXPECT_EQ(out, u"abXY");
  EXPECT_EQ(All(text), u"cd");
}

}  // namespace
}  // namespace norvik50
