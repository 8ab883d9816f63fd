// The search primitive under every text member: a text prepared once for
// many searches (folded once when the search ignores case), exact or
// case-insensitive substring search from a 0-based index, and the
// whole-word boundary tests.
#ifndef NORVIK50_SRC_TEXT_HAYSTACK_H_
#define NORVIK50_SRC_TEXT_HAYSTACK_H_

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace norvik50 {

class Haystack {
 public:
  static constexpr std::size_t npos = std::u16string_view::npos;

  // Prepares `text` (which must outlive the Haystack). With `ignore_case`
  // the text is folded as far as searches reach, once: a search that ends
  // early folds little.
  Haystack(std::u16string_view text, bool ignore_case);

  std::u16string_view text() const noexcept { return raw_; }
  std::size_t size() const noexcept { return raw_.size(); }

  // The form of `find` that Find expects: folded when ignoring case.
  std::u16string Needle(std::u16string_view find) const;

  // First index >= `from` where `needle` starts, looking only at start
  // indexes <= `last`; npos if none. Searching for nothing finds it at
  // `from` as long as `from` lies inside the text, and nothing past its end.
  std::size_t Find(std::u16string_view needle, std::size_t from, std::size_t last = npos) const;
  // Last index >= `from` where `needle` starts; npos if none.
  std::size_t FindLast(std::u16string_view needle, std::size_t from) const;
  // Whether `needle` starts at index `i`.
  bool MatchesAt(std::u16string_view needle, std::size_t i) const;

 private:
  // Searches the compared form of [begin, end) for `needle`.
  std::size_t Search(std::u16string_view needle, std::size_t begin, std::size_t end) const;
  // Folds at least the first `end` units (no-op when not ignoring case).
  void FoldTo(std::size_t end) const;

  std::u16string_view raw_;
  bool ignore_case_;
  // The first folded_end_ units, folded; allocated for the whole text at
  // the first fold but written (and so paged in) only as far as needed.
  mutable std::unique_ptr<char16_t[]> folded_;
  mutable std::size_t folded_end_ = 0;

  std::u16string_view Folded() const { return {folded_.get(), folded_end_}; }
};

// Whole-word boundaries of a match at index `i` of `text`.
//
// Left: bounded at index 0 or after a separator. When the searched text
// continues to the left of `text` (the replace searches a text it is still
// building), `has_prev` says so and `prev` is the unit just before index 0.
bool LeftBoundary(std::u16string_view text, std::size_t i, bool has_prev = false,
                  char16_t prev = 0);
// Right: with exactly one unit after the match, that unit is not looked at
// and the match counts as bounded (so «AB» is a word at the start of «ABC»);
// otherwise bounded at the end of the text or before a separator.
bool RightBoundary(std::u16string_view text, std::size_t i, std::size_t len);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_HAYSTACK_H_
