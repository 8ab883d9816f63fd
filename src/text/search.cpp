#include "text/search.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <vector>

#include "norvik50/error.h"
#include "text/haystack.h"
#include "text/signs.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

constexpr std::size_t npos = Haystack::npos;

// The counting loop shared by CountSubString and CountSubStringExt.
// `accept` decides whether an occurrence (1-based position, length) counts.
template <typename Accept>
int16_t CountOccurrences(std::u16string_view source, std::u16string_view find, int64_t start,
                         bool ignore_case, Accept accept) {
  if (source.empty() || find.empty()) return 0;
  if (start < 1) Raise(kErrInvalidCall);
  const std::vector<std::u16string_view> alternatives = SplitAlternatives(find);
  const Haystack hay(source, ignore_case);
  const std::size_t n = source.size();
  int64_t count = 0;
  for (std::u16string_view alternative : alternatives) {
    std::size_t from = static_cast<std::size_t>(start - 1);
    if (alternative.empty()) {
      // Nothing is found again and again at the same place, each time
      // counted, until the 16-bit count overflows; the result is always
      // that overflow, so it is raised without the 32768 rounds.
      if (from < n) Raise(kErrOverflow);
      continue;
    }
    const std::u16string needle = hay.Needle(alternative);
    const int64_t len = static_cast<int64_t>(alternative.size());
    while (true) {
      const std::size_t i = hay.Find(needle, from);
      if (i == npos) break;
      const int64_t pos = ToInt16Checked(static_cast<int64_t>(i) + 1);
      if (accept(pos, len)) count = ToInt16Checked(count + 1);
      // The next start is a 16-bit position too, even when nothing follows.
      from = static_cast<std::size_t>(ToInt16Checked(pos + len) - 1);
    }
  }
  return static_cast<int16_t>(count);
}

}  // namespace

int16_t FindSubString(std::u16string_view source, std::u16string_view find, int64_t start,
                      bool ignore_case, bool find_first, bool whole_word, std::u16string* found) {
  try {
    if (source.empty() || start < 1) return 0;
    const std::vector<std::u16string_view> alternatives = SplitAlternatives(find);
    const std::size_t n = source.size();
    const std::size_t from = static_cast<std::size_t>(start - 1);
    if (alternatives.empty() || from >= n) return 0;
    // A match past 32767 overflows its 16-bit position and so does not
    // count; no start index beyond 32766 needs to be looked at.
    const std::size_t last = std::min<std::size_t>(n - 1, kMaxPosition - 1);
    const Haystack hay(source, ignore_case);

    std::size_t best = npos;
    std::u16string_view best_alternative;
    for (std::u16string_view alternative : alternatives) {
      std::size_t limit = last;
      if (find_first && best != npos) {
        // A later alternative wins only with a strictly smaller position.
        if (best == 0) break;
        limit = best - 1;
      }
      const std::u16string needle = hay.Needle(alternative);
      std::size_t i = hay.Find(needle, from, limit);
      // A rejected candidate resumes the search one unit further on.
      while (i != npos && whole_word &&
             !(LeftBoundary(source, i) && RightBoundary(source, i, alternative.size()))) {
        i = hay.Find(needle, i + 1, limit);
      }
      if (i == npos) continue;
      if (!find_first) {
        if (found != nullptr) *found = std::u16string(alternative);
        return static_cast<int16_t>(i + 1);
      }
      best = i;
      best_alternative = alternative;
    }
    if (best == npos) return 0;
    if (found != nullptr) *found = std::u16string(best_alternative);
    return static_cast<int16_t>(best + 1);
  } catch (const std::exception&) {
    return 0;
  }
}

int16_t HasSubString(std::u16string_view source, std::u16string_view find, int64_t start,
                     bool ignore_case) {
  return FindSubString(source, find, start, ignore_case, true, false) >= 1 ? -1 : 0;
}

// The occurrences are visited one after another (each search starting one
// unit after the last find), so the result is the last occurrence, and the
// first one past 32767 would overflow: exactly when the last one lies there.
int16_t FindLastSubString(std::u16string_view source, std::u16string_view find, int64_t start,
                          bool ignore_case) {
  if (start < 1) Raise(kErrInvalidCall);
  const std::size_t from = static_cast<std::size_t>(start - 1);
  if (from >= source.size()) return 0;
  if (find.empty()) return ToInt16Checked(static_cast<int64_t>(source.size()));
  const Haystack hay(source, ignore_case);
  const std::size_t i = hay.FindLast(hay.Needle(find), from);
  return i == npos ? 0 : ToInt16Checked(static_cast<int64_t>(i) + 1);
}

int16_t CountSubString(std::u16string_view source, std::u16string_view find, int64_t start,
                       bool ignore_case) {
  return CountOccurrences(source, find, start, ignore_case, [](int64_t, int64_t) { return true; });
}

int16_t CountSubStringExt(std::u16string_view source, std::u16string_view find, int64_t start,
                          bool ignore_case, std::u16string_view not_in_signs) {
  const std::vector<std::u16string_view> pairs = SplitAlternatives(not_in_signs);
  // One profile per pair, built at the first occurrence: each test is then
  // constant time instead of a walk over the whole text.
  std::vector<std::optional<SignProfile>> profiles(pairs.size());
  return CountOccurrences(source, find, start, ignore_case, [&](int64_t pos, int64_t len) {
    for (std::size_t k = 0; k < pairs.size(); ++k) {
      if (!profiles[k]) profiles[k].emplace(source, pairs[k]);
      if (profiles[k]->Encloses(pos, len)) return false;
    }
    return true;
  });
}

}  // namespace norvik50
