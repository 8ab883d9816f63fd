// Search and replace over an alternatives list, leaving double-quoted
// passages alone.
#ifndef NORVIK50_SRC_TEXT_REPLACE_H_
#define NORVIK50_SRC_TEXT_REPLACE_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace norvik50 {

// `source` with every match of an alternative of `find` (smallest position
// first, the earlier alternative on a tie) from `start` on replaced by
// `replace`. The search always ignores case: `ignore_case` is accepted and
// never read. With `not_in_signs` a match after an odd number of double
// quotes is left alone. The search resumes after each inserted text, so
// the replacement is never searched again. With `only_at_beginning` only a
// match that starts the blank-trimmed text is replaced, once; `start` is
// then not used. An empty `find`, an empty source or a start below 1
// change nothing.
// Raises 6 when a 16-bit position passes 32767, and when an empty
// alternative would be replaced by nothing at the same place forever; 5
// when the trimmed text starts with a match that the untrimmed one lacks.
std::u16string ReplaceInString(std::u16string_view source, std::u16string_view find,
                               std::u16string_view replace, int64_t start = 1,
                               bool ignore_case = true, bool only_at_beginning = false,
                               bool not_in_signs = true, bool whole_word = false);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_REPLACE_H_
