// tklVal against the form it had when every removed decimal separator was
// taken out one at a time: the same answer on random texts full of
// separators, signs and other characters, in German and English.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/locale.h"
#include "numeric/locale_number.h"
#include "numeric/numeric_text.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

// The rule as written: keep the characters of "0123456789,.-+"; while the
// decimal separator occurs twice or more, drop a leading one, else a
// trailing one, else the first; read the rest in the locale.
double ValOneAtATime(std::u16string_view source) {
  const Locale& locale = CurrentLocale();
  const char16_t decimal = locale.decimal;
  std::u16string text;
  for (char16_t c : source) {
    if (std::u16string_view(u"0123456789,.-+").find(c) != std::u16string_view::npos) {
      text.push_back(c);
    }
  }
  if (source.empty()) text = u"0";
  while (std::count(text.begin(), text.end(), decimal) > 1) {
    if (text.front() == decimal) {
      text.erase(0, 1);
    } else if (text.back() == decimal) {
      text.pop_back();
    } else {
      text.erase(text.find(decimal), 1);
    }
  }
  return LocaleTextToDouble(text, locale).value_or(0);
}

std::u16string RandomText(std::mt19937& rng) {
  // Separators are frequent, so runs at both ends and in the middle occur
  // often; digits differ, so a wrongly kept separator changes the number.
  static constexpr char16_t kAlphabet[] = u",,,...0123456789-+ xE";
  const std::size_t length = rng() % 24;
  std::u16string text;
  for (std::size_t i = 0; i < length; ++i)
    text.push_back(kAlphabet[rng() % (std::size(kAlphabet) - 1)]);
  return text;
}

TEST(ValRandomTest, SameAnswersAsRemovingOneSeparatorAtATime) {
  std::mt19937 rng(20241123);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (int i = 0; i < 200000; ++i) {
      const std::u16string text = RandomText(rng);
      const double want = ValOneAtATime(text);
      const double got = Val(text);
      ASSERT_EQ(std::memcmp(&want, &got, sizeof want), 0)
          << tag << " \"" << ToUtf8(text) << "\": " << got << " instead of " << want;
    }
  }
}

TEST(ValRandomTest, LongTextsWithManySeparators) {
  std::mt19937 rng(5);
  for (const char* tag : {"de-DE", "en-US"}) {
    testing::ScopedLocale locale(tag);
    for (int i = 0; i < 200; ++i) {
      // Digits and the decimal separator only, so the text stays a number
      // and where the survivor stands decides its value.
      const char16_t decimal = CurrentLocale().decimal;
      std::u16string text;
      const std::size_t length = 64 + rng() % 180;  // past the stack buffer
      while (text.size() < length) {
        text.push_back(rng() % 3 == 0 ? decimal : static_cast<char16_t>(u'0' + rng() % 10));
      }
      EXPECT_EQ(Val(text), ValOneAtATime(text)) << tag << " " << ToUtf8(text);
    }
  }
}

}  // namespace
}  // namespace norvik50
