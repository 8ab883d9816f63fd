// Cutting a text around found terms, and the Mid splice.
#ifndef NORVIK50_SRC_TEXT_SPLIT_H_
#define NORVIK50_SRC_TEXT_SPLIT_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace norvik50 {

// The text between the first match of `before` and the following match of
// `after` (alternatives lists, smallest position wins), blanks trimmed. An
// empty `before` or `after` leaves that side open. A term that is not found
// gives "", not the rest of the text. Both searches start at position 1:
// `start` is accepted and deliberately never used. Never fails.
std::u16string GetSubString(std::u16string_view source, std::u16string_view before,
                            std::u16string_view after, int64_t start = 1, bool ignore_case = true,
                            bool whole_word = false);

// Splits `source` at the first alternative of `find` (in list order) that
// occurs anywhere from `start`: the text before it, the term and the text
// after it, each blank-trimmed. An empty `find` gives "", source, "". When
// nothing is found the three outputs keep their values.
// Raises 5 for a start below 1, 6 for a position past 32767.
void SeparateString(std::u16string_view source, std::u16string_view find, std::u16string& before,
                    std::u16string& term, std::u16string& after, int64_t start = 1,
                    bool ignore_case = true);

// At most `length` units of `source` from 1-based `start` (-1: to the end);
// "" past the end. Raises 5 for a start below 1 or a length below -1.
std::u16string Mid(std::u16string_view source, int64_t start, int64_t length = -1);

// Splices `value` into `source` at `start` in place of `length` units
// (-1: as many units as `value` has); a value running past the end
// lengthens the text, a start past the end appends. Raises 5 for a start
// below 1 or a cut before the first unit, 6 when start + length passes
// the 32-bit range.
void MidLet(std::u16string& source, int64_t start, int64_t length, std::u16string_view value);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_SPLIT_H_
