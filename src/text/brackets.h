// Cutting a text around its first bracket pair.
#ifndef NORVIK50_SRC_TEXT_BRACKETS_H_
#define NORVIK50_SRC_TEXT_BRACKETS_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace norvik50 {

// Finds the first "(" outside double quotes and the ")" that closes it
// (nested pairs and brackets inside double quotes do not count). True then,
// with `term` the text between them, `before` the text before the "(" and
// `after` the text after the ")", none of them trimmed. With
// `start_with_bracket` the "(" must be the first non-blank unit. False, and
// the outputs untouched, when there is no complete pair. Never fails.
bool ExtractBrackets(std::u16string_view source, std::u16string& term, std::u16string& before,
                     std::u16string& after, bool start_with_bracket = false);

// The same pair by its indexes, without copying: `open` of the "(" and
// `close` of the ")" in `source`. False, both untouched, when there is no
// complete pair.
bool FindBracketPair(std::u16string_view source, std::size_t& open, std::size_t& close,
                     bool start_with_bracket = false);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_BRACKETS_H_
