#include "text/function_call.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "text/bracket_pairs.h"
#include "text/brackets.h"
#include "text/haystack.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

bool IsNameStart(char16_t c) { return c == u'_' || u_isalpha(c); }

// The start of the name that ends at `end`: the longest run of name units
// there that begins with a letter or "_"; `end` itself when there is none.
std::size_t NameStart(std::u16string_view text, std::size_t end) {
  std::size_t k = end;
  while (k > 0 && IsNameUnit(text[k - 1])) --k;
  while (k < end && !IsNameStart(text[k])) ++k;
  return k;
}

void Cut(std::u16string_view source, std::size_t begin, std::size_t open, std::size_t close,
         CallExpression& out) {
  // Built completely before `out` changes.
  CallExpression cut{std::u16string(source.substr(begin, close + 1 - begin)),
                     std::u16string(source.substr(0, begin)),
                     std::u16string(source.substr(close + 1)),
                     std::u16string(source.substr(begin, open - begin))};
  out = std::move(cut);
}

// The index of the ")" closing the "(" at `open`, counting nested pairs
// and skipping literals; nullopt when it never closes.
std::optional<std::size_t> ClosingBracket(std::u16string_view text, std::size_t open) {
  std::size_t depth = 0;
  bool quoted = false;
  for (std::size_t i = open; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'"') {
      quoted = !quoted;
    } else if (!quoted && c == u'(') {
      ++depth;
    } else if (!quoted && c == u')' && --depth == 0) {
      return i;
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsNameUnit(char16_t c) { return c == u'_' || c == u'.' || c == u'$' || u_isalnum(c); }

bool ExtractExpression(std::u16string_view source, std::u16string_view name, bool ignore_case,
                       CallExpression& out) {
  if (name.empty()) {
    std::size_t open = 0, close = 0;
    if (!FindBracketPair(source, open, close)) return false;
    Cut(source, NameStart(source, open), open, close, out);
    return true;
  }
  const Haystack hay(source, ignore_case);
  const std::u16string needle = hay.Needle(std::u16string(name) + u"(");
  std::optional<std::vector<BracketPair>> pairs;  // found at the first candidate
  int parity = 0;                                 // double quotes before `counted`
  std::size_t counted = 0;
  for (std::size_t i = hay.Find(needle, 0); i != Haystack::npos; i = hay.Find(needle, i + 1)) {
    parity ^= QuoteParity(source.substr(counted, i - counted));
    counted = i;
    if (parity != 0) continue;                         // inside a literal
    if (i > 0 && IsNameUnit(source[i - 1])) continue;  // the end of a longer name
    if (!pairs) pairs = CompleteBracketPairs(source);
    const std::size_t open = i + name.size();
    const auto pair =
        std::lower_bound(pairs->begin(), pairs->end(), open,
                         [](const BracketPair& p, std::size_t index) { return p.open < index; });
    if (pair == pairs->end() || pair->open != open) continue;  // never closes
    Cut(source, i, open, pair->close, out);
    return true;
  }
  return false;
}

bool SeparateFunction(std::u16string_view source, std::u16string& name,
                      std::vector<std::u16string>& arguments) {
  const std::u16string_view call = TrimBlanks(source);
  const std::size_t open = call.find(u'(');
  // The name comes first, so no literal can stand before the "(".
  if (open == std::u16string_view::npos || open == 0 || !IsNameStart(call[0]) ||
      !std::all_of(call.begin(), call.begin() + open, IsNameUnit)) {
    return false;
  }
  const std::optional<std::size_t> close = ClosingBracket(call, open);
  if (!close || *close + 1 != call.size()) return false;

  std::vector<std::u16string> parts;
  const std::u16string_view inside = call.substr(open + 1, *close - open - 1);
  if (!TrimBlanks(inside).empty()) {
    std::size_t depth = 0, from = 0;
    bool quoted = false;
    for (std::size_t i = 0; i <= inside.size(); ++i) {
      const char16_t c = i < inside.size() ? inside[i] : u',';  // the last one ends here
      if (c == u'"') {
        quoted = !quoted;
      } else if (quoted && i < inside.size()) {
        continue;
      } else if (c == u'(') {
        ++depth;
      } else if (c == u')') {
        --depth;
      } else if (c == u',' && depth == 0) {
        parts.emplace_back(TrimBlanks(inside.substr(from, i - from)));
        from = i + 1;
      }
    }
  }
  // The name is copied before any output changes: it may share the source.
  std::u16string new_name(call.substr(0, open));
  name = std::move(new_name);
  arguments = std::move(parts);
  return true;
}

}  // namespace norvik50
