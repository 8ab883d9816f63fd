// Every complete "(" ... ")" pair of a text outside double-quoted
// literals, and the text with its bracketed passages taken out.
#ifndef NORVIK50_SRC_TEXT_BRACKET_PAIRS_H_
#define NORVIK50_SRC_TEXT_BRACKET_PAIRS_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace norvik50 {

struct BracketPair {
  std::size_t open;   // index of the "("
  std::size_t close;  // index of the ")" that closes it
  friend bool operator==(const BracketPair&, const BracketPair&) = default;
};

// The pairs in the order of their "(": each ")" closes the nearest "("
// still open; a "(" never closed and a ")" with none open belong to no
// pair. Brackets inside double quotes do not count (a literal left open
// runs to the end). One pass, whatever the nesting.
std::vector<BracketPair> CompleteBracketPairs(std::u16string_view text);

// `text` without its outermost complete bracket pairs, each taken out with
// its content and the blanks directly before it, then trimmed of blanks:
// «Müller (Kunde) GmbH» gives «Müller GmbH», «f(x)» gives «f». Brackets
// without a partner and brackets inside double quotes stay. Never fails.
std::u16string PhraseWithoutBrackets(std::u16string_view text);

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_BRACKET_PAIRS_H_
