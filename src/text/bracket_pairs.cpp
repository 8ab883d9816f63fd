#include "text/bracket_pairs.h"

#include <algorithm>

#include "text/text_basics.h"

namespace norvik50 {

std::vector<BracketPair> CompleteBracketPairs(std::u16string_view text) {
  std::vector<BracketPair> pairs;
  std::vector<std::size_t> open;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (c == u'"') {
      quoted = !quoted;
    } else if (quoted) {
      continue;
    } else if (c == u'(') {
      open.push_back(i);
    } else if (c == u')' && !open.empty()) {
      pairs.push_back({open.back(), i});
      open.pop_back();
    }
  }
  // Found in the order they close; inner pairs close first.
  std::sort(pairs.begin(), pairs.end(),
            [](const BracketPair& a, const BracketPair& b) { return a.open < b.open; });
  return pairs;
}

std::u16string PhraseWithoutBrackets(std::u16string_view text) {
  std::u16string out;
  out.reserve(text.size());
  std::size_t copied = 0;  // text before this index is dealt with
  for (const BracketPair& pair : CompleteBracketPairs(text)) {
    if (pair.open < copied) continue;  // inside a pair already taken out
    std::u16string_view kept = text.substr(copied, pair.open - copied);
    while (!kept.empty() && kept.back() == u' ') kept.remove_suffix(1);
    out.append(kept);
    copied = pair.close + 1;
  }
  out.append(text.substr(copied));
  return std::u16string(TrimBlanks(out));
}

}  // namespace norvik50
