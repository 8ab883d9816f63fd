#include "text/signs.h"

#include <algorithm>

namespace norvik50 {
namespace {

bool Applicable(std::u16string_view signs, int64_t n, int64_t start, int64_t len) {
  return signs.size() == 2 && n >= 1 && start >= 2 && len >= 1 && start <= n - len;
}

}  // namespace

// The two walks count signs away from the span. With different signs a walk
// stops as soon as its count reaches 1: one unmatched sign on that side is
// enough. The verdict looks at parity only, so a count of -1 (a closing
// bracket on the left) is as odd as +1; hosts rely on «)x(» reporting x as
// inside, so this must not be "corrected".
bool IsInSigns(std::u16string_view source, std::u16string_view signs, int64_t start,
               int64_t len) {
  const int64_t n = static_cast<int64_t>(source.size());
  if (!Applicable(signs, n, start, len)) return false;
  const char16_t open = signs.front();
  const char16_t close = signs.back();
  const bool same = open == close;

  int64_t left = 0;
  for (int64_t i = start - 1; i >= 1; --i) {
    const char16_t c = source[i - 1];
    if (c == open) {
      ++left;
    } else if (c == close) {
      --left;
    }
    if (left == 1 && !same) break;
  }
  int64_t right = 0;
  for (int64_t i = start + len; i <= n; ++i) {
    const char16_t c = source[i - 1];
    if (c == close) {
      ++right;
    } else if (c == open) {
      --right;
    }
    if (right == 1 && !same) break;
  }
  return (left & 1) != 0 && (right & 1) != 0;
}

SignProfile::SignProfile(std::u16string_view source, std::u16string_view signs)
    : n_(static_cast<int64_t>(source.size())) {
  if (signs.size() != 2) return;
  valid_ = true;
  const char16_t open = signs.front();
  const char16_t close = signs.back();
  same_ = open == close;
  const std::size_t n = source.size();
  sum_.resize(n + 1);
  sum_[0] = 0;
  for (std::size_t k = 0; k < n; ++k) {
    const char16_t c = source[k];
    sum_[k + 1] = sum_[k] + (c == open ? 1 : c == close ? -1 : 0);
  }
  if (same_) return;  // equal signs never stop a walk early
  min_left_.resize(n + 1);
  min_right_.resize(n + 1);
  min_left_[0] = sum_[0];
  for (std::size_t k = 1; k <= n; ++k) min_left_[k] = std::min(min_left_[k - 1], sum_[k]);
  min_right_[n] = sum_[n];
  for (std::size_t k = n; k-- > 0;) min_right_[k] = std::min(min_right_[k + 1], sum_[k]);
}

// A walk's count after covering units j..start-1 is sum_[start-1] - sum_[j-1]
// (leftwards), or sum_[b-1] - sum_[k] for units b..k (rightwards). Counts
// move in steps of one, so a walk reaches 1 exactly when that difference
// reaches 1 somewhere, and then stops on an odd count. Otherwise it covers
// its whole side, whose count has the parity of the number of signs there.
bool SignProfile::Encloses(int64_t start, int64_t len) const {
  if (!valid_ || !Applicable(u"..", n_, start, len)) return false;
  const int32_t left_total = sum_[start - 1];
  const int64_t b = start + len;  // first unit right of the span
  const int32_t right_total = sum_[n_] - sum_[b - 1];
  if (same_) return (left_total & 1) != 0 && (right_total & 1) != 0;
  const bool left_odd =
      left_total - min_left_[start - 2] >= 1 || (left_total & 1) != 0;
  const bool right_odd =
      sum_[b - 1] - min_right_[b] >= 1 || (right_total & 1) != 0;
  return left_odd && right_odd;
}

}  // namespace norvik50
