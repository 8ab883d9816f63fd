#include "text/brackets.h"

#include <cstddef>
#include <utility>

namespace norvik50 {

bool FindBracketPair(std::u16string_view source, std::size_t& open, std::size_t& close,
                     bool start_with_bracket) {
  std::size_t first = 0;
  std::size_t depth = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < source.size(); ++i) {
    const char16_t c = source[i];
    if (c == u'"') {
      // A doubled quote inside a literal toggles twice and so changes nothing.
      quoted = !quoted;
    } else if (quoted) {
      continue;
    } else if (c == u'(') {
      if (depth == 0) {
        if (start_with_bracket && source.find_first_not_of(u' ') != i) return false;
        first = i;
      }
      ++depth;
    } else if (c == u')' && depth > 0 && --depth == 0) {
      open = first;
      close = i;
      return true;
    }
  }
  return false;
}

bool ExtractBrackets(std::u16string_view source, std::u16string& term, std::u16string& before,
                     std::u16string& after, bool start_with_bracket) {
  std::size_t open = 0, close = 0;
  if (!FindBracketPair(source, open, close, start_with_bracket)) return false;
  // Built before any output is assigned: an output may share the source.
  std::u16string new_term(source.substr(open + 1, close - open - 1));
  std::u16string new_before(source.substr(0, open));
  std::u16string new_after(source.substr(close + 1));
  term = std::move(new_term);
  before = std::move(new_before);
  after = std::move(new_after);
  return true;
}

}  // namespace norvik50
