#include "text/replace_ext.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "norvik50/locale.h"
#include "text/numeric_word.h"
#include "text/replace_engine.h"
#include "text/signs.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The numeric word a match stands in, read in the source as given, so an
// earlier replacement never turns a later match into a number or out of
// one. The decimal and thousands separators are word separators, yet
// "1.234,56" is one number: between two digits they join the word.
//
// A long word holds many matches; the last word edges found are kept, and
// a later match inside them costs nothing, so the scan stays linear.
class NumericWords {
 public:
  explicit NumericWords(std::u16string_view text) : text_(text), locale_(CurrentLocale()) {}

  bool Contains(std::size_t at, std::size_t len) {
    const std::size_t begin = WordStart(at);
    const std::size_t end = WordEnd(at + len);
    if (!verdict_ || begin != verdict_begin_ || end != verdict_end_) {
      verdict_ = IsNumericWord(text_.substr(begin, end - begin), locale_);
      verdict_begin_ = begin;
      verdict_end_ = end;
    }
    return *verdict_;
  }

 private:
  bool Joins(std::size_t k) const {
    const char16_t c = text_[k];
    if (!IsWordSeparator(c)) return true;
    return (c == locale_.decimal || c == locale_.thousands) && k > 0 && k + 1 < text_.size() &&
           IsDigit(text_[k - 1]) && IsDigit(text_[k + 1]);
  }

  // The first index of the run of joining units that ends at `at`.
  // Known: [start_, start_to_) all join and start_ begins its run.
  std::size_t WordStart(std::size_t at) {
    if (start_known_ && at >= start_ && at <= start_to_) return start_;
    std::size_t k = at;
    const std::size_t floor = start_known_ && at > start_to_ ? start_to_ : 0;
    while (k > floor && Joins(k - 1)) --k;
    if (!(start_known_ && at > start_to_ && k == start_to_)) start_ = k;
    start_to_ = at;
    start_known_ = true;
    return start_;
  }

  // The first index at or after `from` that does not join.
  // Known: [end_from_, end_) all join and end_ does not (or is the end).
  std::size_t WordEnd(std::size_t from) {
    if (end_known_ && from >= end_from_ && from <= end_) return end_;
    std::size_t k = from;
    const std::size_t ceiling = end_known_ && from < end_from_ ? end_from_ : text_.size();
    while (k < ceiling && Joins(k)) ++k;
    if (!(end_known_ && from < end_from_ && k == end_from_)) end_ = k;
    end_from_ = from;
    end_known_ = true;
    return end_;
  }

  std::u16string_view text_;
  const Locale& locale_;
  bool start_known_ = false;
  std::size_t start_ = 0;
  std::size_t start_to_ = 0;
  bool end_known_ = false;
  std::size_t end_from_ = 0;
  std::size_t end_ = 0;
  std::optional<bool> verdict_;
  std::size_t verdict_begin_ = 0;
  std::size_t verdict_end_ = 0;
};

bool HasNumericRule(const ExtendedReplaceRules& rules) {
  return rules.not_numeric || rules.only_numeric;
}

bool SparedAsNumber(bool numeric, const ExtendedReplaceRules& rules) {
  return (rules.not_numeric && numeric) || (rules.only_numeric && !numeric);
}

// A quote pair: what follows an odd number of its sign in the text under
// edit is inside a literal, as a reader meets it from the left (a literal
// left open runs to the end). For «""» this is ReplaceInString's rule.
struct QuoteTracker {
  char16_t sign;
  int parity = 0;
  int left_parity = 0;
  int Parity(std::u16string_view units) const {
    return static_cast<int>(std::count(units.begin(), units.end(), sign) & 1);
  }
};

// A bracket pair: IsInSigns on the text under edit, its left walk kept as
// the text grows, its right walk over the unedited rest of the source. The
// right side is only asked after an odd left walk, so its profile of the
// whole source is made then, and a text without brackets never pays for it.
class BracketTracker {
 public:
  BracketTracker(std::u16string_view source, std::u16string_view pair)
      : source_(source), pair_(pair), left_(pair) {}
  void Add(std::u16string_view units) { left_.Add(units); }
  void Add(char16_t unit) { left_.Add(unit); }
  // Whether the span ending before 1-based `first_after` lies between the
  // signs; the caller has checked that a unit stands on either side.
  bool Encloses(std::size_t first_after) {
    if (!left_.Odd()) return false;
    if (!right_) right_.emplace(source_, pair_);
    return right_->RightOdd(first_after);
  }

 private:
  std::u16string_view source_;
  std::u16string_view pair_;
  LeftSignWalk left_;
  std::optional<SignProfile> right_;
};

class ExtendedJudge final : public MatchJudge {
 public:
  ExtendedJudge(std::u16string_view source, std::u16string_view replace,
                const ExtendedReplaceRules& rules)
      : source_(source), replace_(replace), rules_(rules) {
    for (std::u16string_view pair : SplitAlternatives(rules.not_in_signs)) {
      if (pair.size() != 2) continue;  // no pair of signs: protects nothing
      if (pair[0] == pair[1]) {
        quotes_.push_back(QuoteTracker{pair[0]});
      } else {
        brackets_.emplace_back(source, pair);
      }
    }
    if (HasNumericRule(rules)) words_.emplace(source);
  }

  void Begin(std::u16string_view prefix) override {
    for (QuoteTracker& q : quotes_) q.parity = q.Parity(prefix);
    for (BracketTracker& b : brackets_) b.Add(prefix);
    passed_ = prefix.size();
  }

  bool Spares(std::u16string_view gap, std::size_t at, std::size_t len) override {
    bool spare = false;
    for (QuoteTracker& q : quotes_) {
      q.left_parity = q.parity ^ q.Parity(gap);
      spare = spare || q.left_parity != 0;
    }
    passed_ += gap.size();
    // IsInSigns needs a unit on each side of a non-empty span.
    const bool walkable = passed_ >= 1 && len >= 1 && at + len < source_.size();
    for (BracketTracker& b : brackets_) {
      b.Add(gap);
      spare = spare || (walkable && b.Encloses(at + len + 1));
    }
    if (!spare && words_) spare = SparedAsNumber(words_->Contains(at, len), rules_);
    return spare;
  }

  void Kept(char16_t unit) override {
    for (QuoteTracker& q : quotes_) q.parity = q.left_parity ^ (unit == q.sign ? 1 : 0);
    for (BracketTracker& b : brackets_) b.Add(unit);
    passed_ += 1;
  }

  void Replaced() override {
    for (QuoteTracker& q : quotes_) q.parity = q.left_parity ^ q.Parity(replace_);
    for (BracketTracker& b : brackets_) b.Add(replace_);
    passed_ += replace_.size();
  }

 private:
  std::u16string_view source_;
  std::u16string_view replace_;
  const ExtendedReplaceRules& rules_;
  std::vector<QuoteTracker> quotes_;
  std::vector<BracketTracker> brackets_;
  std::optional<NumericWords> words_;
  std::size_t passed_ = 0;  // units of the text under edit before the gap
};

}  // namespace

std::u16string ReplaceInStringExt(std::u16string_view source, std::u16string_view find,
                                  std::u16string_view replace, int64_t start,
                                  const ExtendedReplaceRules& rules) {
  if (rules.only_at_beginning) {
    // Only blanks stand before the leading term, so no pair can enclose it.
    std::optional<NumericWords> words;
    if (HasNumericRule(rules)) words.emplace(source);
    return ReplaceLeadingTerm(source, find, replace, rules.whole_word,
                              [&](std::size_t at, std::size_t len) {
                                return words && SparedAsNumber(words->Contains(at, len), rules);
                              });
  }
  if (rules.not_in_signs.empty() && !HasNumericRule(rules)) {
    ReplaceEverything judge;
    return ReplaceMatches(source, find, replace, start, rules.whole_word, judge);
  }
  ExtendedJudge judge(source, replace, rules);
  return ReplaceMatches(source, find, replace, start, rules.whole_word, judge);
}

}  // namespace norvik50
