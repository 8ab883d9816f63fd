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
bool IsInSigns(std::u16string_view source, std::u16string_view signs, int64_t start, int64_t len) {
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

SignProfile::SignProfile(std::u16string_view source, std::u16string_view signs) : source_(source) {
  if (signs.size() != 2) return;
  valid_ = true;
  open_ = signs.front();
  close_ = signs.back();
  same_ = open_ == close_;
  const std::size_t n = source.size();
  const std::size_t boundaries = n / kBlock + 1;
  sum_at_.resize(boundaries);
  min_up_to_.resize(boundaries);
  min_from_.resize(boundaries);
  // One pass over the units: the sum at each boundary and, for the block
  // after it, the least sum inside relative to its start (kept in
  // min_from_ for the moment). The minima then follow block by block.
  int32_t sum = 0;
  for (std::size_t j = 0; j < boundaries; ++j) {
    sum_at_[j] = sum;
    int32_t least = 0;
    const std::size_t stop = std::min(n, (j + 1) * kBlock);
    for (std::size_t i = j * kBlock; i < stop; ++i) {
      sum += Step(source[i]);
      least = std::min(least, sum - sum_at_[j]);
    }
    min_from_[j] = least;
  }
  total_ = sum;
  min_up_to_[0] = 0;
  for (std::size_t j = 1; j < boundaries; ++j) {
    min_up_to_[j] = std::min(min_up_to_[j - 1], sum_at_[j - 1] + min_from_[j - 1]);
  }
  min_from_[boundaries - 1] += sum_at_[boundaries - 1];
  for (std::size_t j = boundaries - 1; j-- > 0;) {
    min_from_[j] = std::min(sum_at_[j] + min_from_[j], min_from_[j + 1]);
  }
}

int32_t SignProfile::Sum(std::size_t k) const {
  int32_t sum = sum_at_[k / kBlock];
  for (std::size_t i = k / kBlock * kBlock; i < k; ++i) sum += Step(source_[i]);
  return sum;
}

int32_t SignProfile::MinSumUpTo(std::size_t m) const {
  const std::size_t j = m / kBlock;
  int32_t sum = sum_at_[j];
  int32_t least = min_up_to_[j];
  for (std::size_t i = j * kBlock; i < m; ++i) {
    sum += Step(source_[i]);
    least = std::min(least, sum);
  }
  return least;
}

int32_t SignProfile::MinSumFrom(std::size_t b) const {
  const std::size_t n = source_.size();
  const std::size_t next = (b + kBlock - 1) / kBlock * kBlock;  // first boundary >= b
  int32_t sum = Sum(b);
  int32_t least = sum;
  for (std::size_t i = b; i < std::min(next, n); ++i) {
    sum += Step(source_[i]);
    least = std::min(least, sum);
  }
  if (next <= n) least = std::min(least, min_from_[next / kBlock]);
  return least;
}

// A walk's count after covering units j..start-1 is sum(start-1) - sum(j-1)
// (leftwards), or sum(b-1) - sum(k) for units b..k (rightwards). Counts
// move in steps of one, so a walk reaches 1 exactly when that difference
// reaches 1 somewhere, and then stops on an odd count. Otherwise it covers
// its whole side, whose count has the parity of the number of signs there.
// With equal signs the walks never stop early and only parity counts.
bool SignProfile::Encloses(int64_t start, int64_t len) const {
  const auto n = static_cast<int64_t>(source_.size());
  if (!valid_ || !Applicable(u"..", n, start, len)) return false;
  const auto a = static_cast<std::size_t>(start);
  const auto b = static_cast<std::size_t>(start + len);  // first unit right of the span
  const int32_t left_total = Sum(a - 1);
  if (same_) return (left_total & 1) != 0 && ((total_ - Sum(b - 1)) & 1) != 0;
  const bool left_odd = left_total - MinSumUpTo(a - 2) >= 1 || (left_total & 1) != 0;
  return left_odd && RightOdd(b);
}

bool SignProfile::RightOdd(std::size_t first_after) const {
  const int32_t before_right = Sum(first_after - 1);
  const int32_t right_total = total_ - before_right;
  return before_right - MinSumFrom(first_after) >= 1 || (right_total & 1) != 0;
}

// The same reasoning as SignProfile's left walk, with the sums kept as the
// text grows.
bool LeftSignWalk::Odd() const {
  if (least_before_last_ == INT32_MAX) return false;  // nothing to walk over
  return sum_ - least_before_last_ >= 1 || (sum_ & 1) != 0;
}

}  // namespace norvik50
