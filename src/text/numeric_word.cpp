#include "text/numeric_word.h"

#include <cstddef>

namespace norvik50 {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The number of digits from `i` on.
std::size_t DigitRun(std::u16string_view s, std::size_t i) {
  std::size_t k = i;
  while (k < s.size() && IsDigit(s[k])) ++k;
  return k - i;
}

}  // namespace

bool IsNumericWord(std::u16string_view word, const Locale& locale) {
  std::size_t i = 0;
  if (i < word.size() && (word[i] == u'+' || word[i] == u'-')) ++i;
  // The whole part: plain digits, or grouped ones when a thousands
  // separator follows the first group. A locale whose two separators are
  // the same unit has no grouping to read.
  std::size_t run = DigitRun(word, i);
  const std::size_t whole_digits = run;
  i += run;
  const bool grouping = locale.thousands != locale.decimal;
  if (grouping && run > 0 && i < word.size() && word[i] == locale.thousands) {
    if (run > 3) return false;
    while (i < word.size() && word[i] == locale.thousands) {
      if (DigitRun(word, i + 1) != 3) return false;
      i += 4;
    }
  }
  if (i < word.size() && word[i] == locale.decimal) {
    run = DigitRun(word, i + 1);
    if (run == 0) return false;  // "12," ends a sentence, not a number
    i += 1 + run;
  } else if (whole_digits == 0) {
    return false;  // a sign alone, or nothing
  }
  return i == word.size();
}

bool IsNumericWord(std::u16string_view word) { return IsNumericWord(word, CurrentLocale()); }

}  // namespace norvik50
