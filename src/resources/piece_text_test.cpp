// The piece list under edits: searches across piece edges, pieces searched
// once and then met by new neighbours, marks that keep their unit while
// the text around them changes, and the final front moved out.
#include "resources/piece_text.h"

#include <gtest/gtest.h>

#include <memory_resource>
#include <string>

namespace norvik50 {
namespace {

constexpr int kS = 0;  // "%s"
constexpr int kD = 1;  // "%d"

std::u16string All(PieceText& text) {
  std::u16string out;
  text.MovePiecesBefore(PieceText::kNone, out);
  return out;
}

class PieceTextTest : public ::testing::Test {
 protected:
  std::pmr::monotonic_buffer_resource memory_;
  PieceText::Mark none_;
};

TEST_F(PieceTextTest, FindsPatternsAcrossPieceEdges) {
  PieceText text(u"a%sb%dc", {u"%s", u"%d"}, &memory_);
  const PieceText::Mark s = text.Find(kS, text.Begin());
  ASSERT_EQ(s.index, 1u);
  PieceText::Mark d = text.Find(kD, text.Begin());
  ASSERT_EQ(d.index, 4u);
  // "%s" -> "%": the value's "%" and the source's "b" stand in two pieces.
  const PieceText::Mark before = text.Replace(s, u"%", d);
  EXPECT_EQ(before.index, 0u);  // the unit before the replaced ones
  EXPECT_EQ(d.index, 3u);       // moved along: "a%b%dc"
  EXPECT_FALSE(text.Find(kS, before).found());
  // The limit excludes starts at or after it.
  EXPECT_FALSE(text.Find(kD, before, 3).found());
  EXPECT_EQ(text.Find(kD, before, 4).index, 3u);
  EXPECT_FALSE(text.Find(kD, none_).found());
  // A value ending in "%" before a "d" of the source makes a "%d" across
  // the edge.
  text.Replace(d, u"x%", none_);
  const PieceText::Mark made = text.Find(kD, before);
  EXPECT_FALSE(made.found());  // "a%bx%c": the "d" went with the placeholder
  EXPECT_EQ(All(text), u"a%bx%c");
}

TEST_F(PieceTextTest, SearchedPiecesStillMeetNewNeighbours) {
  PieceText text(u"%sd and more text", {u"%s", u"%d"}, &memory_);
  PieceText::Mark s = text.Find(kS, text.Begin());
  // The whole source is searched for "%d" once: none.
  EXPECT_FALSE(text.Find(kD, text.Begin()).found());
  // A value ending in "%" now meets the "d" of the searched source.
  PieceText::Mark d = none_;
  const PieceText::Mark before = text.Replace(s, u"x%", d);
  EXPECT_EQ(text.Find(kD, before).index, 1u);
  // A searched piece that ends in "%" meets a value starting with "s".
  PieceText other(u"%%d s", {u"%s", u"%d"}, &memory_);
  EXPECT_FALSE(other.Find(kS, other.Begin()).found());  // searched: none
  other.Replace(other.Find(kD, other.Begin()), u"s", none_);
  EXPECT_EQ(other.Find(kS, other.Begin()).index, 0u);
  EXPECT_EQ(All(other), u"%s s");
}

TEST_F(PieceTextTest, ReplacementsKeepTheOtherMarkOnItsUnit) {
  PieceText text(u"%s..%d..%s", {u"%s", u"%d"}, &memory_);
  PieceText::Mark s = text.Find(kS, text.Begin());
  PieceText::Mark d = text.Find(kD, text.Begin());
  // Replaced before the mark: it shifts by the change in length.
  text.Replace(s, u"long value", d);
  EXPECT_EQ(d.index, 12u);
  s = text.Find(kS, text.Begin());
  EXPECT_EQ(s.index, 16u);
  // Replaced after the mark: it stays.
  text.Replace(s, u"", d);
  EXPECT_EQ(d.index, 12u);
  text.Replace(d, u"7", none_);
  EXPECT_EQ(All(text), u"long value..7..");
}

TEST_F(PieceTextTest, NothingBeforeTheFirstUnit) {
  PieceText text(u"%s%s", {u"%s", u"%d"}, &memory_);
  // Replaced by nothing at the very start: the first unit comes back.
  const PieceText::Mark first = text.Replace(text.Find(kS, text.Begin()), u"", none_);
  EXPECT_EQ(first.index, 0u);
  EXPECT_EQ(text.Find(kS, first).index, 0u);
  const PieceText::Mark empty = text.Replace(text.Find(kS, first), u"", none_);
  EXPECT_FALSE(empty.found());  // an empty text has no units
  EXPECT_EQ(All(text), u"");
}

TEST_F(PieceTextTest, MovesOnlyWholePiecesBeforeTheEnd) {
  PieceText text(u"ab%scd%d", {u"%s", u"%d"}, &memory_);
  text.Replace(text.Find(kS, text.Begin()), u"XY", none_);  // "ab" "XY" "cd%d"
  std::u16string out;
  text.MovePiecesBefore(3, out);  // "XY" reaches past 3: it stays
  EXPECT_EQ(out, u"ab");
  EXPECT_EQ(text.Begin().index, 2u);  // indexes stay those of the whole text
  EXPECT_EQ(text.Find(kD, text.Begin()).index, 6u);
  text.MovePiecesBefore(4, out);
  EXPECT_EQ(out, u"abXY");
  EXPECT_EQ(All(text), u"cd%d");
}

}  // namespace
}  // namespace norvik50
