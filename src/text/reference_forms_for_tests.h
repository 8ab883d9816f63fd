// For tests only: the text members written out step by step, the slow and
// obvious way, with every 16-bit store checked where it happens. The
// randomised tests hold the fast implementations to these.
#ifndef NORVIK50_SRC_TEXT_REFERENCE_FORMS_FOR_TESTS_H_
#define NORVIK50_SRC_TEXT_REFERENCE_FORMS_FOR_TESTS_H_

#include <unicode/uchar.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "norvik50/error.h"

namespace norvik50::reference {

using Text = std::u16string;
using View = std::u16string_view;

// A store into a 16-bit Integer variable.
inline int16_t I16(int64_t v) {
  if (v < -32768 || v > 32767) throw Error(kErrOverflow);
  return static_cast<int16_t>(v);
}

inline char16_t Fold(char16_t c) {
  const UChar32 f = u_foldCase(c, U_FOLD_CASE_DEFAULT);
  return f >= 0 && f < 0x10000 ? static_cast<char16_t>(f) : c;
}

inline bool SameUnit(char16_t a, char16_t b, bool ignore_case) {
  return ignore_case ? Fold(a) == Fold(b) : a == b;
}

// The plain search: 1-based, 0 if absent; nothing is found at `start`
// while start lies inside the text.
inline int64_t PositionOf(int64_t start, View s, View f, bool ignore_case) {
  if (start < 1) throw Error(kErrInvalidCall);
  const int64_t n = static_cast<int64_t>(s.size());
  const int64_t m = static_cast<int64_t>(f.size());
  if (m == 0) return start <= n ? start : 0;
  for (int64_t p = start; p + m - 1 <= n; ++p) {
    bool same = true;
    for (int64_t j = 0; j < m && same; ++j) same = SameUnit(s[p - 1 + j], f[j], ignore_case);
    if (same) return p;
  }
  return 0;
}

inline Text Left(View s, int64_t count) {
  if (count < 0) throw Error(kErrInvalidCall);
  return Text(s.substr(0, static_cast<std::size_t>(count)));
}
inline Text MidFrom(View s, int64_t start) {
  if (start < 1) throw Error(kErrInvalidCall);
  return start > static_cast<int64_t>(s.size()) ? Text() : Text(s.substr(start - 1));
}
inline Text Trim(View s) {
  while (!s.empty() && s.front() == u' ') s.remove_prefix(1);
  while (!s.empty() && s.back() == u' ') s.remove_suffix(1);
  return Text(s);
}

inline std::vector<Text> Split(View s) {
  std::vector<Text> parts;
  if (s.empty()) return parts;
  Text current;
  for (char16_t c : s) {
    if (c == u'|') {
      parts.push_back(current);
      current.clear();
    } else {
      current += c;
    }
  }
  parts.push_back(current);
  return parts;
}

inline bool IsSeparator(char16_t c) {
  return c == u'\r' || c == u'\n' ||
         View(u" !{}[]()?.;,:+=<>'*/&%$\u00A7\\\u00B4`\"").find(c) != View::npos;
}

inline int64_t WordMatcher(View src, View alt, int64_t start, bool ignore_case, bool whole_word) {
  const int64_t n = static_cast<int64_t>(src.size());
  try {
    int16_t pos = I16(PositionOf(start, src, alt, ignore_case));
    while (true) {
      if (pos == 0) return 0;
      if (!whole_word) return pos;
      const bool left = pos == 1 || IsSeparator(src[pos - 2]);
      const int64_t e = pos + static_cast<int64_t>(alt.size());
      bool right;
      if (e == n) {
        right = true;
      } else {
        right = e > n || IsSeparator(src[e - 1]);
      }
      if (left && right) return pos;
      const int16_t next = I16(pos + 1);
      pos = I16(PositionOf(next, src, alt, ignore_case));
    }
  } catch (const Error& e) {
    if (e.number() == kErrOverflow) return 0;
    throw;
  }
}

inline int64_t FindSubString(View src, View find, int64_t start, bool ignore_case, bool find_first,
                             bool whole_word, Text* found) {
  try {
    if (src.empty()) return 0;
    int64_t best = 0;
    Text best_alt;
    for (const Text& alt : Split(find)) {
      const int64_t p = WordMatcher(src, alt, start, ignore_case, whole_word);
      if (p <= 0) continue;
      if (!find_first) {
        *found = alt;
        return p;
      }
      if (best == 0 || p < best) {
        best = p;
        best_alt = alt;
      }
    }
    if (best > 0) *found = best_alt;
    return best;
  } catch (...) {
    return 0;
  }
}

inline int64_t FindLastSubString(View src, View find, int64_t start, bool ignore_case) {
  int64_t p = start - 1;
  int16_t last = 0;
  while (true) {
    const int64_t r = PositionOf(p + 1, src, find, ignore_case);
    if (r < 1) break;
    last = I16(r);
    p = last;
  }
  return last;
}

inline bool IsInSigns(View s, View signs, int64_t start, int64_t len) {
  const int64_t n = static_cast<int64_t>(s.size());
  if (signs.size() != 2 || n < 1 || start < 2 || len < 1 || start > n - len) return false;
  const char16_t open = signs[0];
  const char16_t close = signs[1];
  const bool same = open == close;
  int64_t left = 0;
  for (int64_t i = start - 1; i >= 1; --i) {
    if (s[i - 1] == open) {
      left += 1;
    } else if (s[i - 1] == close) {
      left -= 1;
    }
    if (left == 1 && !same) break;
  }
  int64_t right = 0;
  for (int64_t i = start + len; i <= n; ++i) {
    if (s[i - 1] == close) {
      right += 1;
    } else if (s[i - 1] == open) {
      right -= 1;
    }
    if (right == 1 && !same) break;
  }
  return left % 2 != 0 && right % 2 != 0;
}

inline int64_t CountSubStringExt(View src, View find, int64_t start, bool ignore_case,
                                 View not_in_signs) {
  if (src.empty() || find.empty()) return 0;
  const std::vector<Text> pairs = Split(not_in_signs);
  int16_t count = 0;
  for (const Text& alt : Split(find)) {
    int16_t p = I16(start);
    while (true) {
      const int16_t r = I16(PositionOf(p, src, alt, ignore_case));
      if (r == 0) break;
      bool inside = false;
      for (const Text& pair : pairs) {
        if (IsInSigns(src, pair, r, I16(static_cast<int64_t>(alt.size())))) {
          inside = true;
          break;
        }
      }
      if (!inside) count = I16(count + 1);
      p = I16(r + static_cast<int64_t>(alt.size()));
    }
  }
  return count;
}

inline int64_t CountSubString(View src, View find, int64_t start, bool ignore_case) {
  return CountSubStringExt(src, find, start, ignore_case, u"");
}

// Whether the match at 0-based `at` of `source` stands in a numeric word:
// the match widened over the units that are no separators and over the
// decimal and thousands separators that stand between two digits.
template <typename IsNumeric>
bool InNumericWord(View source, int64_t at, int64_t len, char16_t decimal, char16_t thousands,
                   IsNumeric is_numeric) {
  const int64_t n = static_cast<int64_t>(source.size());
  const auto digit = [&](int64_t k) { return source[k] >= u'0' && source[k] <= u'9'; };
  const auto joins = [&](int64_t k) {
    const char16_t c = source[k];
    if (!IsSeparator(c)) return true;
    return (c == decimal || c == thousands) && k > 0 && k + 1 < n && digit(k - 1) && digit(k + 1);
  };
  int64_t begin = at;
  while (begin > 0 && joins(begin - 1)) --begin;
  int64_t end = at + len;
  while (end < n && joins(end)) ++end;
  return is_numeric(source.substr(begin, end - begin));
}

// The extended replace, step by step: ReplaceInString's loop with every
// match put to the sign pairs (in the text under edit) and to the numeric
// word test (in the source). `numeric(at, len)` is that test.
template <typename Numeric>
Text ReplaceInStringExt(View source, View find, View replace, int64_t start, bool only_at_beginning,
                        bool whole_word, bool not_numeric, bool only_numeric, View not_in_signs,
                        Numeric numeric) {
  const auto spared_as_number = [&](int64_t at, int64_t len) {
    if (!not_numeric && !only_numeric) return false;
    const bool is_number = numeric(at, len);
    return (not_numeric && is_number) || (only_numeric && !is_number);
  };
  Text s(source);
  Text found;
  if (only_at_beginning) {
    if (FindSubString(Trim(s), find, 1, true, true, whole_word, &found) == 1) {
      const int64_t pos = FindSubString(s, find, 1, true, true, whole_word, &found);
      if (pos < 1) throw Error(kErrInvalidCall);
      if (!spared_as_number(pos - 1, static_cast<int64_t>(found.size()))) {
        s = Left(s, pos - 1) + Text(replace) + MidFrom(s, pos + found.size());
      }
    }
    return s;
  }
  const auto spared = [&](int64_t pos, int64_t len) {
    for (const Text& pair : Split(not_in_signs)) {
      if (pair.size() != 2) continue;
      if (pair[0] == pair[1]) {
        const Text left = Left(s, pos - 1);
        if (std::count(left.begin(), left.end(), pair[0]) % 2 != 0) return true;
      } else if (IsInSigns(s, pair, pos, len)) {
        return true;
      }
    }
    // The rest of the text under edit is the unedited end of the source.
    const int64_t at =
        pos - 1 - (static_cast<int64_t>(s.size()) - static_cast<int64_t>(source.size()));
    return spared_as_number(at, len);
  };
  int16_t st = I16(start);
  do {
    const int64_t pos = FindSubString(s, find, st, true, true, whole_word, &found);
    if (pos <= 0) break;
    if (spared(pos, static_cast<int64_t>(found.size()))) {
      st = I16(pos + 1);
    } else {
      Text next = Left(s, pos - 1) + Text(replace) + MidFrom(s, pos + found.size());
      const int16_t next_start = I16(pos + static_cast<int64_t>(replace.size()));
      if (next == s && next_start == st) throw Error(kErrOverflow);
      s = std::move(next);
      st = next_start;
    }
  } while (st > 0);
  return s;
}

// The plain replace is the extended one with the double-quote pair or none
// and no numeric rule.
inline Text ReplaceInString(View source, View find, View replace, int64_t start,
                            bool only_at_beginning, bool not_in_signs, bool whole_word) {
  return ReplaceInStringExt(source, find, replace, start, only_at_beginning, whole_word, false,
                            false, not_in_signs ? u"\"\"" : u"",
                            [](int64_t, int64_t) { return false; });
}

inline Text GetSubString(View source, View before, View after, bool ignore_case, bool whole_word) {
  Text s(source);
  Text found;
  if (!before.empty()) {
    const int64_t pos = FindSubString(s, before, 1, ignore_case, true, whole_word, &found);
    s = pos >= 1 ? Trim(MidFrom(s, pos + found.size())) : Text();
  }
  if (!after.empty()) {
    const int64_t pos = FindSubString(s, after, 1, ignore_case, true, whole_word, &found);
    s = pos >= 1 ? Trim(Left(s, pos - 1)) : Text();
  }
  return s;
}

inline void SeparateString(View source, View find, Text& before, Text& term, Text& after,
                           int64_t start, bool ignore_case) {
  if (find.empty()) {
    before.clear();
    term = Text(source);
    after.clear();
    return;
  }
  for (const Text& alt : Split(find)) {
    const int16_t pos = I16(PositionOf(start, source, alt, ignore_case));
    if (pos < 1) continue;
    before = Trim(Left(source, pos - 1));
    term = Trim(Text(source.substr(pos - 1, alt.size())));
    after = Trim(MidFrom(source, pos + alt.size()));
    return;
  }
}

// Bidirectional insertion passes; `less(a, b)` is the element order.
template <typename Less>
void BubbleSort(std::vector<Text>& a, Less less) {
  if (a.empty()) return;
  std::size_t lo = 0;
  std::size_t hi = a.size() - 1;
  while (lo < hi) {
    for (std::size_t i = lo + 1; i <= hi; ++i) {
      for (std::size_t j = i; j > lo && less(a[j], a[j - 1]); --j) std::swap(a[j], a[j - 1]);
    }
    --hi;
    for (std::size_t i = hi; i-- > lo;) {
      for (std::size_t j = i; j < hi && less(a[j + 1], a[j]); ++j) std::swap(a[j], a[j + 1]);
    }
    ++lo;
  }
}

}  // namespace norvik50::reference

#endif  // NORVIK50_SRC_TEXT_REFERENCE_FORMS_FOR_TESTS_H_
