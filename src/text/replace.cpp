#include "text/replace.h"

#include <algorithm>
#include <vector>

#include "norvik50/error.h"
#include "text/haystack.h"
#include "text/replace_engine.h"
#include "text/search.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

constexpr std::size_t npos = Haystack::npos;

// The next match of one alternative in the text under edit. That text is
// the output built so far followed by the unedited rest of the source, and
// every search starts at the first unit of the rest. A candidate further
// into the rest has its own source units on both sides, so its whole-word
// verdict never changes and can be cached; only a candidate right at the
// start of the rest has a neighbour from the output and is judged afresh.
// Starts never move back, so each alternative scans the source once.
class AlternativeCursor {
 public:
  AlternativeCursor(const Haystack& hay, std::u16string_view alternative, bool whole_word)
      : hay_(hay),
        needle_(hay.Needle(alternative)),
        len_(alternative.size()),
        whole_word_(whole_word) {}

  // Index of the next match at or after `rest` (the start of the search);
  // `has_prev`/`prev` give the unit before it in the text under edit.
  std::size_t Next(std::size_t rest, bool has_prev, char16_t prev) {
    if (!whole_word_) return NextWord(rest);
    const std::u16string_view text = hay_.text();
    if (rest < text.size() && hay_.MatchesAt(needle_, rest) &&
        (!has_prev || IsWordSeparator(prev)) && RightBoundary(text, rest, len_)) {
      return rest;
    }
    return NextWord(rest + 1);
  }

 private:
  // The next candidate at or after `from` that is a word within the source.
  std::size_t NextWord(std::size_t from) {
    if (cached_ && from >= query_ && (result_ == npos || from <= result_)) return result_;
    const std::u16string_view text = hay_.text();
    std::size_t i = hay_.Find(needle_, from);
    while (i != npos && whole_word_ && !(LeftBoundary(text, i) && RightBoundary(text, i, len_))) {
      i = hay_.Find(needle_, i + 1);
    }
    cached_ = true;
    query_ = from;
    result_ = i;
    return i;
  }

  const Haystack& hay_;
  std::u16string needle_;
  std::size_t len_;
  bool whole_word_;
  bool cached_ = false;
  std::size_t query_ = 0;
  std::size_t result_ = npos;
};

// Double quotes protect what follows an odd number of them in the text
// under edit, the replacements included. The parity of the passed-on text
// is kept up to date, so no match recounts the quotes to its left.
class OutsideDoubleQuotes final : public MatchJudge {
 public:
  explicit OutsideDoubleQuotes(std::u16string_view replace)
      : replace_parity_(QuoteParity(replace)) {}

  void Begin(std::u16string_view prefix) override { parity_ = QuoteParity(prefix); }
  bool Spares(std::u16string_view gap, std::size_t, std::size_t) override {
    left_parity_ = parity_ ^ QuoteParity(gap);
    return left_parity_ != 0;
  }
  void Kept(char16_t unit) override { parity_ = left_parity_ ^ (unit == u'"' ? 1 : 0); }
  void Replaced() override { parity_ = left_parity_ ^ replace_parity_; }

 private:
  const int replace_parity_;
  int parity_ = 0;
  int left_parity_ = 0;
};

}  // namespace

std::u16string ReplaceMatches(std::u16string_view source, std::u16string_view find,
                              std::u16string_view replace, int64_t start, bool whole_word,
                              MatchJudge& judge) {
  const std::vector<std::u16string_view> alternatives = SplitAlternatives(find);
  const std::size_t n = source.size();
  if (alternatives.empty() || start < 1 || static_cast<std::size_t>(start - 1) >= n) {
    return std::u16string(source);
  }
  const Haystack hay(source, true);
  std::vector<AlternativeCursor> cursors;
  cursors.reserve(alternatives.size());
  for (std::u16string_view a : alternatives) cursors.emplace_back(hay, a, whole_word);

  // The text under edit is `out` followed by source[rest..]; `out` is final.
  std::u16string out;
  out.reserve(n + n / 4);
  std::size_t rest = static_cast<std::size_t>(start - 1);
  out.append(source.substr(0, rest));
  judge.Begin(out);

  while (!(out.empty() && rest >= n)) {
    std::size_t best = npos;
    std::size_t best_k = 0;
    const bool has_prev = !out.empty();
    const char16_t prev = has_prev ? out.back() : u'\0';
    for (std::size_t k = 0; k < cursors.size(); ++k) {
      const std::size_t i = cursors[k].Next(rest, has_prev, prev);
      if (i < best) {  // strictly smaller: the earlier alternative keeps a tie
        best = i;
        best_k = k;
      }
    }
    if (best == npos) break;
    const int64_t pos = static_cast<int64_t>(out.size() + (best - rest)) + 1;
    if (pos > kMaxPosition) break;  // the search does not report such matches

    const std::u16string_view gap = source.substr(rest, best - rest);
    const std::u16string_view alternative = alternatives[best_k];
    if (judge.Spares(gap, best, alternative.size())) {
      // Left alone: pass it on and search on one unit later.
      ToInt16Checked(pos + 1);
      out.append(source.substr(rest, best - rest + 1));
      judge.Kept(source[best]);
      rest = best + 1;
      continue;
    }
    ToInt16Checked(pos + static_cast<int64_t>(replace.size()));
    // Replacing nothing by nothing leaves text and start as they were, so
    // the same match would come back forever; end as an overflow, the way
    // every other endless empty match ends.
    if (alternative.empty() && replace.empty()) Raise(kErrOverflow);
    out.append(gap);
    out.append(replace);
    judge.Replaced();
    rest = best + alternative.size();
  }
  out.append(source.substr(std::min(rest, n)));
  return out;
}

std::u16string ReplaceInString(std::u16string_view source, std::u16string_view find,
                               std::u16string_view replace, int64_t start, bool /*ignore_case*/,
                               bool only_at_beginning, bool not_in_signs, bool whole_word) {
  // Hosts pass their own case flag, but the replacement has always ignored
  // case whatever they pass; they depend on it, so the flag stays unread.
  // Quotes play no part for the leading term.
  if (only_at_beginning) {
    return ReplaceLeadingTerm(source, find, replace, whole_word,
                              [](std::size_t, std::size_t) { return false; });
  }
  if (!not_in_signs) {
    ReplaceEverything judge;
    return ReplaceMatches(source, find, replace, start, whole_word, judge);
  }
  OutsideDoubleQuotes judge(replace);
  return ReplaceMatches(source, find, replace, start, whole_word, judge);
}

}  // namespace norvik50
