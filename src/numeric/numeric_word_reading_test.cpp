// A word the text toolkit takes for a number is one the number conversions
// read, and to the value its digits say: a host that picks numeric words
// can hand them to CDbl-style conversions without a surprise.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "numeric/locale_number.h"
#include "testing/temp_folder.h"
#include "text/numeric_word.h"

namespace norvik50 {
namespace {

TEST(NumericWordReading, EveryNumericWordReadsAsItsDigits) {
  std::mt19937 rng(21);
  for (const char* tag : {"de-DE", "en-US"}) {
    norvik50::testing::ScopedLocale scoped(tag);
    const Locale& locale = CurrentLocale();
    int numeric = 0;
    for (int round = 0; round < 40000; ++round) {
      std::u16string word;
      const int n = std::uniform_int_distribution<int>(1, 9)(rng);
      for (int k = 0; k < n; ++k) {
        static constexpr std::u16string_view kUnits = u"0123456789..,,-";
        word += kUnits[std::uniform_int_distribution<std::size_t>(0, kUnits.size() - 1)(rng)];
      }
      if (!IsNumericWord(word)) continue;
      ++numeric;
      std::string plain;
      for (char16_t c : word) {
        if (c == locale.thousands) continue;
        plain += c == locale.decimal ? '.' : static_cast<char>(c);
      }
      const std::optional<double> read = LocaleTextToDouble(word);
      ASSERT_TRUE(read.has_value()) << tag << " " << plain;
      EXPECT_EQ(*read, std::stod(plain)) << tag << " " << plain;
    }
    // The generator must reach numbers often enough to mean something.
    EXPECT_GT(numeric, 2000) << tag;
  }
}

}  // namespace
}  // namespace norvik50
