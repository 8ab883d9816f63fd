// The extended replace: the replace of replace.h with finer control over
// which matches stay: only a leading term, whole words, numbers spared or
// only numbers replaced, and any sign pairs (quotes or brackets) that
// protect what they enclose.
#ifndef NORVIK50_SRC_TEXT_REPLACE_EXT_H_
#define NORVIK50_SRC_TEXT_REPLACE_EXT_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace norvik50 {

struct ExtendedReplaceRules {
  bool only_at_beginning = false;
  bool whole_word = false;
  // A match standing in a numeric word is left alone.
  bool not_numeric = false;
  // Only matches standing in a numeric word are replaced.
  bool only_numeric = false;
  // Sign pairs separated by "|" («""|()»); "" protects nothing.
  std::u16string_view not_in_signs;
};

// `source` with the matches of the alternatives of `find` from `start`
// replaced by `replace`, searched as ReplaceInString searches (always
// ignoring case, smallest position first, never searching inserted text),
// except the matches that `rules` spare:
// - the numeric word of a match is the match with the units around it that
//   are not word separators, plus the locale's decimal and thousands
//   separators standing between two digits, read in `source` as given; it
//   counts when IsNumericWord accepts it. With both numeric rules nothing
//   is replaced.
// - a pair of two equal signs (quotes) protects a match that follows an
//   odd number of them in the text as edited so far; a pair of different
//   signs (brackets) protects a match that IsInSigns places between them in
//   that text; a pair that is not two signs protects nothing.
// With `only_at_beginning` only a term that starts the blank-trimmed text
// is replaced, once, and sign pairs play no part. So the defaults, and
// `not_in_signs` «""», answer exactly as ReplaceInString without and with
// its `not_in_signs`. Raises what ReplaceInString raises.
std::u16string ReplaceInStringExt(std::u16string_view source, std::u16string_view find,
                                  std::u16string_view replace, int64_t start,
                                  const ExtendedReplaceRules& rules);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_REPLACE_EXT_H_
