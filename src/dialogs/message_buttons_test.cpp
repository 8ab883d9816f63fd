#include "dialogs/message_buttons.h"

#include <gtest/gtest.h>

#include "norvik50/encoding.h"

namespace norvik50 {
namespace {

using Tags = std::vector<std::u16string>;

// Every style word 0..7 with every default-button bit: the set by bit
// tests in their order (6 and 7 included), the default after the
// last-match loop, the cancel button last.
TEST(MessageButtonsTest, SetsAndDefaultsOverAllStyles) {
  const std::vector<Tags> sets = {
      {u"cmdOK"},
      {u"cmdOK", u"cmdCancel"},
      {u"abort", u"retry", u"ignore"},
      {u"yes", u"no", u"cancel"},
      {u"yes", u"no"},
      {u"retry", u"cancel"},
      {u"yes", u"no"},        // 6: bit 4 wins before 3 and 2 are looked at
      {u"retry", u"cancel"},  // 7: 7 AND 5 = 5
  };
  for (int32_t set = 0; set <= 7; ++set) {
    const int32_t count = static_cast<int32_t>(sets[set].size());
    for (int32_t mark : {0, 256, 512, 768}) {
      SCOPED_TRACE(set + mark);
      EXPECT_EQ(ButtonTagsForStyle(set + mark), sets[set]);
      const int32_t wanted = std::min(mark / 256 + 1, count);
      MessageBoxRequest request;
      FillButtons(request, set + mark, 2);
      ASSERT_EQ(static_cast<int32_t>(request.buttons.size()), count);
      EXPECT_EQ(request.cancel_button, count);
      // 512 with two buttons marks a button that does not exist and leaves
      // the default on button 1; 768 with two falls back to the 256 mark.
      const int32_t expected = (mark == 512 && count == 2) ? 1 : wanted;
      EXPECT_EQ(request.default_button, expected);
    }
  }
}

TEST(MessageButtonsTest, DefaultOf768WithThreeButtonsIsTheThird) {
  EXPECT_EQ(DefaultButtonForStyle(3 + 768, 3), 3);
  EXPECT_EQ(DefaultButtonForStyle(4 + 256, 2), 2);
  EXPECT_EQ(DefaultButtonForStyle(512, 1), 1);
}

TEST(MessageButtonsTest, SymbolsInTheirOrder) {
  const std::vector<std::pair<int32_t, int32_t>> cases = {
      {0, 0},        {16, 16},           {32, 32},
      {48, 48},      {64, 64},           {64 + 16, 64},  // 64 is tested before 16
      {64 + 48, 48},                                     // 48 before 64
      {64 + 32, 64}, {4 + 32 + 256, 32},
  };
  for (const auto& [style, symbol] : cases) EXPECT_EQ(SymbolForStyle(style), symbol) << style;
}

TEST(MessageButtonsTest, AnswerCodesOfTags) {
  const std::vector<std::pair<std::u16string, int32_t>> cases = {
      {u"ok", 1},     {u"cmdOK", 1}, {u"cancel", 2}, {u"cmdCancel", 2},
      {u"ignore", 5}, {u"retry", 4}, {u"abort", 3},  {u"yes", 6},
      {u"no", 7},     {u"YES", 2},  // compared exactly; unknown tags count as Cancel
      {u"", 2}};
  for (const auto& [tag, code] : cases) EXPECT_EQ(ButtonResultOf(tag), code) << ToUtf8(tag);
}

TEST(MessageButtonsTest, AcceleratorRemovesDoubledAmpersandsFirst) {
  const std::vector<std::pair<std::u16string, std::u16string>> cases = {
      {u"Q&&A &Test", u"T"}, {u"&Ja", u"J"},      {u"&nein", u"N"}, {u"OK", u""},
      {u"A&&B", u""},        {u"x&", u""},        {u"&&&t", u"T"},  {u"&\u00e4rger", u"\u00c4"},
      {u"&Abbrechen", u"A"}, {u"Fo&o &Bar", u"O"}};
  for (const auto& [caption, letter] : cases) EXPECT_EQ(AcceleratorOf(caption), letter);
}

TEST(MessageButtonsTest, CaptionsComeFromTheBuiltInTableInTheFormsLanguage) {
  MessageBoxRequest german;
  FillButtons(german, 3, 1);
  ASSERT_EQ(german.buttons.size(), 3u);
  EXPECT_EQ(german.buttons[0].caption, u"&Ja");
  EXPECT_EQ(german.buttons[1].caption, u"&Nein");
  EXPECT_EQ(german.buttons[2].caption, u"&Abbrechen");
  EXPECT_EQ(german.buttons[2].answer, 2);
  MessageBoxRequest english;
  FillButtons(english, 2, 2);
  EXPECT_EQ(english.buttons[0].caption, u"&Abort");
  EXPECT_EQ(english.buttons[2].caption, u"&Ignore");
  EXPECT_EQ(english.buttons[2].answer, 5);
  MessageBoxRequest ok_cancel;
  FillButtons(ok_cancel, 1, 1);
  EXPECT_EQ(ok_cancel.buttons[1].caption, u"Abbrechen");
}

TEST(MessageButtonsTest, PaletteHasSixteenColours) {
  EXPECT_EQ(PaletteColor(0), 0x000000u);
  EXPECT_EQ(PaletteColor(4), 0x800000u);
  EXPECT_EQ(PaletteColor(12), 0xFF0000u);
  EXPECT_EQ(PaletteColor(15), 0xFFFFFFu);
  EXPECT_EQ(PaletteColor(16), std::nullopt);
  EXPECT_EQ(PaletteColor(-1), std::nullopt);
}

}  // namespace
}  // namespace norvik50
