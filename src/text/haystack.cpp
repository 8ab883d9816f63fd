#include "text/haystack.h"

#include <algorithm>

#include "text/fold.h"
#include "text/text_basics.h"

namespace norvik50 {

namespace {

// Folding runs ahead of the search in growing steps: never more than about
// twice what the search needed, and few calls for a long search.
constexpr std::size_t kFirstFold = 4096;

}  // namespace

Haystack::Haystack(std::u16string_view text, bool ignore_case)
    : raw_(text), ignore_case_(ignore_case) {}

std::u16string Haystack::Needle(std::u16string_view find) const {
  return ignore_case_ ? FoldText(find) : std::u16string(find);
}

void Haystack::FoldTo(std::size_t end) const {
  if (!ignore_case_ || end <= folded_end_) return;
  if (!folded_) folded_.reset(new char16_t[raw_.size()]);
  end = std::min(raw_.size(), std::max({end, folded_end_ * 2, kFirstFold}));
  FoldInto(raw_.substr(folded_end_, end - folded_end_), folded_.get() + folded_end_);
  folded_end_ = end;
}

std::size_t Haystack::Search(std::u16string_view needle, std::size_t begin, std::size_t end) const {
  if (!ignore_case_) {
    const std::size_t found = raw_.substr(begin, end - begin).find(needle);
    return found == npos ? npos : begin + found;
  }
  // Search what is folded, folding further only while nothing is found.
  while (true) {
    FoldTo(std::min(end, begin + needle.size()));
    const std::size_t stop = std::min(end, folded_end_);
    const std::size_t found = Folded().substr(begin, stop - begin).find(needle);
    if (found != npos) return begin + found;
    if (stop == end) return npos;
    // A match may straddle the folded end: resume just before it.
    begin = std::max(begin, stop + 1 - needle.size());
    FoldTo(stop + 1);
  }
}

std::size_t Haystack::Find(std::u16string_view needle, std::size_t from, std::size_t last) const {
  if (from >= raw_.size() || from > last) return npos;
  if (needle.empty()) return from;
  // Only start indexes up to `last` count, so the window ends where a match
  // starting at `last` would end.
  std::size_t end = raw_.size();
  if (last < end && end - last > needle.size()) end = last + needle.size();
  if (end <= from || end - from < needle.size()) return npos;
  return Search(needle, from, end);
}

std::size_t Haystack::FindLast(std::u16string_view needle, std::size_t from) const {
  if (from >= raw_.size()) return npos;
  if (needle.empty()) return raw_.size() - 1;
  FoldTo(raw_.size());
  const std::u16string_view cmp = ignore_case_ ? Folded() : raw_;
  const std::size_t found = cmp.rfind(needle);
  return found == npos || found < from ? npos : found;
}

bool Haystack::MatchesAt(std::u16string_view needle, std::size_t i) const {
  if (i > raw_.size() || raw_.size() - i < needle.size()) return false;
  FoldTo(i + needle.size());
  const std::u16string_view cmp = ignore_case_ ? Folded() : raw_;
  return cmp.compare(i, needle.size(), needle) == 0;
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
