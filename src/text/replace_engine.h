// The replace loop shared by the replace members, with the decision which
// matches to leave alone handed to a judge. The text under edit is always
// the output passed on so far followed by the unedited rest of the source;
// the search starts at the first unit of that rest.
#ifndef NORVIK50_SRC_TEXT_REPLACE_ENGINE_H_
#define NORVIK50_SRC_TEXT_REPLACE_ENGINE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "norvik50/error.h"
#include "text/search.h"
#include "text/text_basics.h"

namespace norvik50 {

// Decides, match by match, whether a match is left alone. The loop calls
// Begin once, then for every match Spares followed by Kept (it was left
// alone) or Replaced (it was replaced); a judge that tracks the text under
// edit learns every unit passed on from these calls.
class MatchJudge {
 public:
  virtual ~MatchJudge() = default;
  // `prefix`: the source ahead of the search start, passed on unchanged.
  virtual void Begin(std::u16string_view prefix) = 0;
  // The match at source index `at`, `len` units long. The text under edit
  // before it is everything passed on so far followed by `gap` (the source
  // from the search start up to `at`).
  virtual bool Spares(std::u16string_view gap, std::size_t at, std::size_t len) = 0;
  // The gap and the first unit of the spared match were passed on.
  virtual void Kept(char16_t unit) = 0;
  // The gap and the replacement were passed on.
  virtual void Replaced() = 0;
};

// A judge that spares nothing.
class ReplaceEverything final : public MatchJudge {
 public:
  void Begin(std::u16string_view) override {}
  bool Spares(std::u16string_view, std::size_t, std::size_t) override { return false; }
  void Kept(char16_t) override {}
  void Replaced() override {}
};

// Every match of an alternative of `find` from `start` (smallest position
// first, the earlier alternative on a tie; the search always ignores case)
// replaced by `replace` unless `judge` spares it. After a replacement the
// search resumes behind the inserted text; after a spared match, one unit
// further on. Raises 6 when a 16-bit position passes 32767 and when an
// empty alternative would be replaced by nothing at the same place forever.
std::u16string ReplaceMatches(std::u16string_view source, std::u16string_view find,
                              std::u16string_view replace, int64_t start, bool whole_word,
                              MatchJudge& judge);

// The term that begins the blank-trimmed source, replaced once in the
// untrimmed source (leading blanks stay), unless `spare(at, len)` says
// otherwise for the match found there; the source unchanged when the
// trimmed text does not begin with a term. Raises 5 when the untrimmed
// source holds no match although the trimmed one does.
template <typename Spare>
std::u16string ReplaceLeadingTerm(std::u16string_view source, std::u16string_view find,
                                  std::u16string_view replace, bool whole_word, Spare spare) {
  std::u16string found;
  if (FindSubString(TrimBlanks(source), find, 1, true, true, whole_word, &found) != 1) {
    return std::u16string(source);
  }
  // The term leads the trimmed text; the splice happens in the untrimmed
  // one, so leading blanks stay in front of the replacement.
  const int16_t pos = FindSubString(source, find, 1, true, true, whole_word, &found);
  if (pos < 1) Raise(kErrInvalidCall);  // would cut the text at -1
  const auto at = static_cast<std::size_t>(pos - 1);
  if (spare(at, found.size())) return std::u16string(source);
  std::u16string out(source.substr(0, at));
  out.append(replace);
  out.append(source.substr(at + found.size()));
  return out;
}

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_REPLACE_ENGINE_H_
