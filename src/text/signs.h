// Whether a span of a text lies between a pair of signs (brackets or
// quotes), judged by the parity of the signs on either side.
#ifndef NORVIK50_SRC_TEXT_SIGNS_H_
#define NORVIK50_SRC_TEXT_SIGNS_H_

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace norvik50 {

// True when the `len` units at 1-based `start` of `source` lie between the
// opening sign signs[0] and the closing sign signs[1]. False at once unless
// `signs` has exactly two units, start >= 2, len >= 1 and at least one unit
// follows the span. Never fails.
bool IsInSigns(std::u16string_view source, std::u16string_view signs, int64_t start, int64_t len);

// The same test for many spans of one text: prepared in two passes, each
// question then costs a short scan of a few blocks, and the memory
// is a fraction of the text's own. Gives exactly IsInSigns' answers. The
// source must outlive the profile.
class SignProfile {
 public:
  SignProfile(std::u16string_view source, std::u16string_view signs);
  bool Encloses(int64_t start, int64_t len) const;
  // Whether the rightward walk from 1-based position `first_after` (the
  // first unit after a span, 1 to the text's length) ends on an odd count.
  // Only for a profile of two different signs.
  bool RightOdd(std::size_t first_after) const;

 private:
  static constexpr std::size_t kBlock = 16;

  // +1 for an opening sign, -1 for a closing one (+1 for either when they
  // are equal), 0 otherwise.
  int32_t Step(char16_t c) const {
    return static_cast<int32_t>(c == open_) - static_cast<int32_t>(c == close_ && !same_);
  }
  // sum(k): the steps of the first k units. The walks of IsInSigns are
  // differences of these sums.
  int32_t Sum(std::size_t k) const;
  int32_t MinSumUpTo(std::size_t m) const;  // min of sum(0..m)
  int32_t MinSumFrom(std::size_t b) const;  // min of sum(b..n)

  std::u16string_view source_;
  bool valid_ = false;
  char16_t open_ = 0;
  char16_t close_ = 0;
  bool same_ = false;
  int32_t total_ = 0;  // sum(n)
  // At every block boundary j * kBlock: the sum there, the least sum from
  // the start up to it and the least sum from it to the end.
  std::vector<int32_t> sum_at_;
  std::vector<int32_t> min_up_to_;
  std::vector<int32_t> min_from_;
};

// The leftward walk of IsInSigns for a text that grows at its end, for two
// different signs: feed it the units in order; Odd then says whether the
// walk from a span right after them ends on an odd count. Each unit costs
// constant time, whatever the length of the walk.
class LeftSignWalk {
 public:
  explicit LeftSignWalk(std::u16string_view signs) : open_(signs.front()), close_(signs.back()) {}
  void Add(char16_t unit) {
    least_before_last_ = std::min(least_before_last_, sum_);
    sum_ += static_cast<int32_t>(unit == open_) - static_cast<int32_t>(unit == close_);
  }
  void Add(std::u16string_view units) {
    for (char16_t c : units) Add(c);
  }
  bool Odd() const;

 private:
  char16_t open_;
  char16_t close_;
  // The step sum of all units, and the least step sum over the prefixes
  // that leave out at least the last unit (none yet: the largest value).
  int32_t sum_ = 0;
  int32_t least_before_last_ = INT32_MAX;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_SIGNS_H_
