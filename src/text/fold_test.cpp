// The prefix test behind the typed search of lists: it must answer as
// comparing unit by unit (as it is, then folded) does, whichever of its
// shortcuts (eight units at once, no table for ASCII) it takes.
#include "text/fold.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "norvik50/locale.h"

namespace norvik50 {
namespace {

// The plain reading: each unit equal as it is or once folded.
bool StartsUnitByUnit(std::u16string_view text, std::u16string_view folded_prefix) {
  if (text.size() < folded_prefix.size()) return false;
  for (std::size_t i = 0; i < folded_prefix.size(); ++i) {
    if (text[i] != folded_prefix[i] && FoldText(text.substr(i, 1))[0] != folded_prefix[i]) {
      return false;
    }
  }
  return true;
}

class FoldedPrefixTest : public ::testing::Test {
 protected:
  void TearDown() override { SetCurrentLocale("en-US"); }
};

TEST_F(FoldedPrefixTest, FoldingAFoldedUnitKeepsIt) {
  // What comparing every unit folded (with no "equal as it is" step) rests on.
  for (const char* tag : {"en-US", "de-DE", "tr-TR"}) {
    SetCurrentLocale(tag);
    std::u16string all(0x10000, u'\0');
    for (std::size_t c = 0; c < all.size(); ++c) all[c] = static_cast<char16_t>(c);
    const std::u16string once = FoldText(all);
    const std::u16string twice = FoldText(once);
    for (std::size_t c = 0; c < all.size(); ++c) {
      ASSERT_EQ(once[c], twice[c]) << tag << " U+" << std::hex << c;
    }
  }
}

TEST_F(FoldedPrefixTest, AnswersAsComparingUnitByUnit) {
  struct Case {
    const char* locale;
    std::u16string text;
    std::u16string typed;
    bool starts;
  };
  const Case cases[] = {
      {"de-DE", u"Kunde 4711", u"KUNDE 47", true},
      {"de-DE", u"Kunde 4711", u"kunde 48", false},
      {"de-DE", u"Kunde", u"kunde 4", false},                       // shorter than the prefix
      {"de-DE", u"Kunde 47110815", u"kunde 47110815", true},        // eight units and more
      {"de-DE", u"Kunde 4711081X", u"kunde 47110815", false},       // differs in the last block
      {"de-DE", u"Xunde 47110815", u"kunde 47110815", false},       // differs in the first block
      {"de-DE", u"ABCDEFGHIJKLMNOPQ", u"abcdefghijklmnopq", true},  // two blocks and a tail
      {"de-DE", u"\u212Aunde", u"kunde", true},                     // the Kelvin sign folds to k
      {"de-DE", u"Ma\u017Fe 1234567", u"mase 1234567", true},       // long s, in a block
      {"de-DE", u"MÜLLER", u"müller", true},                        // a prefix beyond ASCII
      {"de-DE", u"[kunde]", u"{kunde}", false},                     // the case bit only for letters
      {"de-DE", u"@", u"`", false},
      {"de-DE", u"anything", u"", true},
      {"tr-TR", u"Istanbul", u"istanbul", false},  // I folds to the dotless i
      {"tr-TR", u"Istanbul", u"\u0131stanbul", true},
      {"tr-TR", u"\u0130zmir", u"izmir", true},
      {"en-US", u"Istanbul", u"istanbul", true},
  };
  for (const Case& c : cases) {
    SetCurrentLocale(c.locale);
    const std::u16string folded = FoldText(c.typed);
    EXPECT_EQ(FoldedPrefix(folded).Starts(c.text), c.starts)
        << c.locale << " " << std::string(c.text.begin(), c.text.end());
    EXPECT_EQ(StartsUnitByUnit(c.text, folded), c.starts);
  }
}

TEST_F(FoldedPrefixTest, RandomTextsAgreeWithTheUnitByUnitReading) {
  // Letters of both cases, signs next to the letters in ASCII, and units
  // beyond ASCII that fold to ASCII or to themselves.
  const std::u16string alphabet = u"aAbBkKsSiI@[`{ 0\u212A\u017F\u00E4\u00C4\u0130\u0131";
  std::mt19937 random(20);
  const auto random_text = [&](std::size_t size) {
    std::u16string text;
    for (std::size_t i = 0; i < size; ++i) text += alphabet[random() % alphabet.size()];
    return text;
  };
  for (const char* tag : {"de-DE", "tr-TR"}) {
    SetCurrentLocale(tag);
    for (int round = 0; round < 20000; ++round) {
      const std::u16string prefix = FoldText(random_text(random() % 20));
      std::u16string text = random_text(random() % 24);
      // Often the prefix with ASCII letters in either case, so that
      // matches occur.
      if (round % 2 == 0 && text.size() >= prefix.size()) {
        for (std::size_t i = 0; i < prefix.size(); ++i) {
          const char16_t c = prefix[i];
          text[i] =
              (c >= u'a' && c <= u'z' && random() % 2 == 0) ? static_cast<char16_t>(c - 32) : c;
        }
      }
      ASSERT_EQ(FoldedPrefix(prefix).Starts(text), StartsUnitByUnit(text, prefix))
          << tag << " round " << round;
    }
  }
}

}  // namespace
}  // namespace norvik50
