// Small pieces every text member shares: the alternatives list, the blanks
// the members trim, the word separators and the 16-bit position limit.
#ifndef NORVIK50_SRC_TEXT_TEXT_BASICS_H_
#define NORVIK50_SRC_TEXT_TEXT_BASICS_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace norvik50 {

// The largest 1-based position or count a 16-bit Integer holds.
inline constexpr int64_t kMaxPosition = 32767;

// Splits an alternatives list at every "|". An empty list has no
// alternatives at all; "a||b" has three, the middle one empty; "|" has two
// empty ones. The views point into `list`.
std::vector<std::u16string_view> SplitAlternatives(std::u16string_view list);

// `text` without leading and trailing spaces (U+0020 only: tab, CR and LF
// are kept).
std::u16string_view TrimBlanks(std::u16string_view text);

// Whether `c` ends a word for whole-word matching: the 28 separators
//  !{}[]()?.;,:+=<>'*/&%$§\´` and the double quote, plus CR and LF.
bool IsWordSeparator(char16_t c);

// Number of double quotes in `text`, modulo 2.
int QuoteParity(std::u16string_view text);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_TEXT_BASICS_H_
