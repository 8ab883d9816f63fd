#include "text/brackets.h"

#include <cstddef>
#include <utility>

namespace norvik50 {

bool ExtractBrackets(std::u16string_view source, std::u16string& term, std::u16string& before,
                     std::u16string& after, bool start_with_bracket) {
  constexpr std::size_t kNone = std::u16string_view::npos;
  std::size_t open = kNone;
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
        open = i;
      }
      ++depth;
    } else if (c == u')' && depth > 0 && --depth == 0) {
      // Built before any output is assigned: an output may share the source.
      std::u16string new_term(source.substr(open + 1, i - open - 1));
      std::u16string new_before(source.substr(0, open));
      std::u16string new_after(source.substr(i + 1));
      term = std::move(new_term);
      before = std::move(new_before);
      after = std::move(new_after);
      return true;
    }
  }
  return false;
}

}  // namespace norvik50
