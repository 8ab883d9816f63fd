#include "text/haystack.h"

#include <algorithm>

#include "text/fold.h"
#include "text/text_basics.h"

namespace norvik50 {

Haystack::Haystack(std::u16string_view text, bool ignore_case, std::size_t fold_limit)
    : raw_(text), ignore_case_(ignore_case) {
  if (ignore_case) {
    folded_ = FoldText(text.substr(0, std::min(fold_limit, text.size())));
    cmp_ = folded_;
  } else {
    cmp_ = raw_;
  }
}

std::u16string Haystack::Needle(std::u16string_view find) const {
  return ignore_case_ ? FoldText(find) : std::u16string(find);
}

std::size_t Haystack::Find(std::u16string_view needle, std::size_t from,
                           std::size_t last) const {
  if (from >= raw_.size() || from > last) return npos;
  if (needle.empty()) return from;
  // Only start indexes up to `last` count, so the window ends where a match
  // starting at `last` would end.
  std::size_t end = cmp_.size();
  if (last < end && end - last > needle.size()) end = last + needle.size();
  if (end <= from) return npos;
  const std::size_t found = cmp_.substr(from, end - from).find(needle);
  return found == npos ? npos : from + found;
}

std::size_t Haystack::FindLast(std::u16string_view needle, std::size_t from) const {
  if (from >= raw_.size()) return npos;
  if (needle.empty()) return raw_.size() - 1;
  const std::size_t found = cmp_.rfind(needle);
  return found == npos || found < from ? npos : found;
}

bool Haystack::MatchesAt(std::u16string_view needle, std::size_t i) const {
  return i <= cmp_.size() && cmp_.size() - i >= needle.size() &&
         cmp_.compare(i, needle.size(), needle) == 0;
}

bool LeftBoundary(std::u16string_view text, std::size_t i, bool has_prev, char16_t prev) {
  if (i == 0) return !has_prev || IsWordSeparator(prev);
  return IsWordSeparator(text[i - 1]);
}

bool RightBoundary(std::u16string_view text, std::size_t i, std::size_t len) {
  const std::size_t e = i + len;  // index of the first unit after the match
  // Deliberate: exactly one unit after the match is accepted untested.
  if (e + 1 == text.size()) return true;
  if (e >= text.size()) return true;
  return IsWordSeparator(text[e]);
}

}  // namespace norvik50
