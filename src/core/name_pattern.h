// File name patterns as the Windows directory search reads them ("*.txt",
// "REPORT??.*"), matched without case. Beyond "*" (any run of characters)
// and "?" (one character), the search gives dots their DOS meaning:
//  - "?" also matches nothing where the name has a dot or ends, so
//    "a??.txt" finds "a.txt", "ab.txt" and "abc.txt";
//  - a "." before "*" or "?", or at the end of the pattern, also matches
//    the end of the name: "*.*" and "abc.*" find "abc", "*." finds the names
//    without an extension;
//  - a "*" before a "." does not run past the name's last dot.
// Short (8.3) names do not exist here, so "*.htm" never finds "x.html".
#ifndef NORVIK50_SRC_CORE_NAME_PATTERN_H_
#define NORVIK50_SRC_CORE_NAME_PATTERN_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace norvik50 {

class NamePattern {
 public:
  // An empty pattern matches no name (no name is empty).
  explicit NamePattern(std::u16string_view pattern);

  // True when `name` (one name, no separators) matches the whole pattern;
  // false for an empty name.
  [[nodiscard]] bool Matches(std::u16string_view name) const;

 private:
  enum class Kind : uint8_t { kUnit, kStar, kStarToLastDot, kOneOrNone, kDotOrEnd };
  struct Token {
    Kind kind;
    char16_t unit;  // kUnit: the folded character
  };
  std::vector<Token> tokens_;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_NAME_PATTERN_H_
