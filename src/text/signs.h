// Whether a span of a text lies between a pair of signs (brackets or
// quotes), judged by the parity of the signs on either side.
#ifndef NORVIK50_SRC_TEXT_SIGNS_H_
#define NORVIK50_SRC_TEXT_SIGNS_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace norvik50 {

// True when the `len` units at 1-based `start` of `source` lie between the
// opening sign signs[0] and the closing sign signs[1]. False at once unless
// `signs` has exactly two units, start >= 2, len >= 1 and at least one unit
// follows the span. Never fails.
bool IsInSigns(std::u16string_view source, std::u16string_view signs, int64_t start,
               int64_t len);

// The same test for many spans of one text: built in one pass, each
// question then costs constant time. Gives exactly IsInSigns' answers.
class SignProfile {
 public:
  SignProfile(std::u16string_view source, std::u16string_view signs);
  bool Encloses(int64_t start, int64_t len) const;

 private:
  bool valid_ = false;
  bool same_ = false;
  int64_t n_ = 0;
  // sum_[k]: signed sign count of the first k units (+1 opening, -1 closing;
  // with equal signs +1 for each); min_left_[k] = min(sum_[0..k]);
  // min_right_[k] = min(sum_[k..n]).
  std::vector<int32_t> sum_;
  std::vector<int32_t> min_left_;
  std::vector<int32_t> min_right_;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_TEXT_SIGNS_H_
