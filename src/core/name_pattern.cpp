#include "core/name_pattern.h"

#include <algorithm>

#include "core/name_fold.h"

namespace norvik50 {

NamePattern::NamePattern(std::u16string_view pattern) {
  // "*.*" asks for every name, with or without a dot.
  if (pattern == u"*.*") pattern = u"*";
  tokens_.reserve(pattern.size());
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char16_t c = pattern[i];
    const char16_t next = i + 1 < pattern.size() ? pattern[i + 1] : u'\0';
    const bool at_end = i + 1 == pattern.size();
    if (c == u'?') {
      tokens_.push_back({Kind::kOneOrNone, 0});
    } else if (c == u'*') {
      tokens_.push_back({next == u'.' ? Kind::kStarToLastDot : Kind::kStar, 0});
    } else if (c == u'.' && (at_end || next == u'*' || next == u'?')) {
      tokens_.push_back({Kind::kDotOrEnd, 0});
    } else {
      tokens_.push_back({Kind::kUnit, FoldNameUnit(c)});
    }
  }
}

bool NamePattern::Matches(std::u16string_view name) const {
  if (tokens_.empty() || name.empty()) return false;  // no name is empty
  const std::size_t n = tokens_.size();
  const std::size_t last_dot = name.rfind(u'.');
  // The set of pattern positions reached after each character of the name
  // (a bit per position): linear in pattern times name, with no
  // backtracking, whatever the stars.
  std::vector<char> now(n + 1, 0), next(n + 1, 0);
  // Positions a token may be passed without using a character, before the
  // name's character at `at` (or its end).
  auto close = [&](std::vector<char>& set, std::size_t at) {
    const bool end = at == name.size();
    for (std::size_t i = 0; i < n; ++i) {
      if (!set[i]) continue;
      switch (tokens_[i].kind) {
        case Kind::kStar:
        case Kind::kStarToLastDot:
          set[i + 1] = 1;
          break;
        case Kind::kOneOrNone:
          if (end || name[at] == u'.') set[i + 1] = 1;
          break;
        case Kind::kDotOrEnd:
          if (end) set[i + 1] = 1;
          break;
        case Kind::kUnit:
          break;
      }
    }
  };
  now[0] = 1;
  close(now, 0);
  for (std::size_t at = 0; at < name.size(); ++at) {
    const char16_t c = name[at];
    std::fill(next.begin(), next.end(), 0);
    bool any = false;
    for (std::size_t i = 0; i < n; ++i) {
      if (!now[i]) continue;
      const Token& token = tokens_[i];
      std::size_t to = n + 1;  // none
      switch (token.kind) {
        case Kind::kStar:
          to = i;
          break;
        case Kind::kStarToLastDot:
          if (at != last_dot) to = i;
          break;
        case Kind::kOneOrNone:
          if (c != u'.') to = i + 1;
          break;
        case Kind::kDotOrEnd:
          if (c == u'.') to = i + 1;
          break;
        case Kind::kUnit:
          if (token.unit == c || token.unit == FoldNameUnit(c)) to = i + 1;
          break;
      }
      if (to <= n) {
        next[to] = 1;
        any = true;
      }
    }
    if (!any) return false;
    close(next, at + 1);
    now.swap(next);
  }
  return now[n] != 0;
}

}  // namespace norvik50
