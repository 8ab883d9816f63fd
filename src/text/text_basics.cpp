#include "text/text_basics.h"

#include <algorithm>
#include <array>

namespace norvik50 {
namespace {

// All separators lie below U+0100, so one bit table covers them. Tab and
// hyphen are deliberately absent: hosts rely on «x-y» and tab-joined fields
// counting as one word.
constexpr std::array<bool, 256> MakeSeparatorTable() {
  std::array<bool, 256> table{};
  constexpr std::u16string_view kSeparators = u" !{}[]()?.;,:+=<>'*/&%$\u00A7\\\u00B4`\"\r\n";
  for (char16_t c : kSeparators) table[c] = true;
  return table;
}
constexpr std::array<bool, 256> kSeparatorTable = MakeSeparatorTable();

}  // namespace

std::vector<std::u16string_view> SplitAlternatives(std::u16string_view list) {
  std::vector<std::u16string_view> parts;
  if (list.empty()) return parts;
  std::size_t begin = 0;
  while (true) {
    const std::size_t bar = list.find(u'|', begin);
    if (bar == std::u16string_view::npos) {
      parts.push_back(list.substr(begin));
      return parts;
    }
    parts.push_back(list.substr(begin, bar - begin));
    begin = bar + 1;
  }
}

std::u16string_view TrimBlanks(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == std::u16string_view::npos) return {};
  const std::size_t last = text.find_last_not_of(u' ');
  return text.substr(first, last - first + 1);
}

bool IsWordSeparator(char16_t c) { return c < 256 && kSeparatorTable[c]; }

int QuoteParity(std::u16string_view text) {
  return static_cast<int>(std::count(text.begin(), text.end(), u'"') & 1);
}

}  // namespace norvik50
