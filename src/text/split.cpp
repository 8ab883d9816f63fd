#include "text/split.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "norvik50/error.h"
#include "text/haystack.h"
#include "text/search.h"
#include "text/text_basics.h"

namespace norvik50 {
namespace {

// The units of `text` from 1-based `start` on (start >= 1).
std::u16string_view From(std::u16string_view text, int64_t start) {
  const auto index = static_cast<std::size_t>(start - 1);
  return index >= text.size() ? std::u16string_view() : text.substr(index);
}

}  // namespace

std::u16string GetSubString(std::u16string_view source, std::u16string_view before,
                            std::u16string_view after, int64_t /*start*/, bool ignore_case,
                            bool whole_word) {
  // Both searches start at 1 whatever the caller asks: hosts have always
  // got the first term of the whole text, so the start stays unused.
  std::u16string_view s = source;
  std::u16string found;
  if (!before.empty()) {
    const int16_t pos = FindSubString(s, before, 1, ignore_case, true, whole_word, &found);
    s = pos >= 1 ? TrimBlanks(From(s, pos + static_cast<int64_t>(found.size())))
                 : std::u16string_view();
  }
  if (!after.empty()) {
    const int16_t pos = FindSubString(s, after, 1, ignore_case, true, whole_word, &found);
    s = pos >= 1 ? TrimBlanks(s.substr(0, pos - 1)) : std::u16string_view();
  }
  return std::u16string(s);
}

void SeparateString(std::u16string_view source, std::u16string_view find, std::u16string& before,
                    std::u16string& term, std::u16string& after, int64_t start, bool ignore_case) {
  if (find.empty()) {
    term = std::u16string(source);
    before.clear();
    after.clear();
    return;
  }
  if (start < 1) Raise(kErrInvalidCall);
  const Haystack hay(source, ignore_case);
  // List order decides, not position: «-|+» splits «a+b-c» at the «-».
  for (std::u16string_view alternative : SplitAlternatives(find)) {
    const std::size_t i = hay.Find(hay.Needle(alternative), static_cast<std::size_t>(start - 1));
    if (i == Haystack::npos) continue;
    ToInt16Checked(static_cast<int64_t>(i) + 1);
    // Built before any output is assigned: an output may share the source.
    std::u16string new_before(TrimBlanks(source.substr(0, i)));
    std::u16string new_term(TrimBlanks(source.substr(i, alternative.size())));
    std::u16string new_after(TrimBlanks(source.substr(i + alternative.size())));
    before = std::move(new_before);
    term = std::move(new_term);
    after = std::move(new_after);
    return;
  }
}

std::u16string Mid(std::u16string_view source, int64_t start, int64_t length) {
  if (start < 1 || length < -1) Raise(kErrInvalidCall);
  const std::u16string_view tail = From(source, start);
  if (length == -1) return std::u16string(tail);
  return std::u16string(
      tail.substr(0, static_cast<std::size_t>(std::min<int64_t>(length, tail.size()))));
}

// A splice, not an overwrite: with an explicit length the replaced part and
// the value may differ in size.
void MidLet(std::u16string& source, int64_t start, int64_t length, std::u16string_view value) {
  if (start < 1) Raise(kErrInvalidCall);
  const int64_t cut = length == -1 ? static_cast<int64_t>(value.size()) : length;
  const int64_t resume = ToInt32Checked(start + cut);
  if (resume < 1) Raise(kErrInvalidCall);
  const std::size_t n = source.size();
  const std::size_t keep = std::min<std::size_t>(static_cast<std::size_t>(start - 1), n);
  const std::size_t tail = std::min<std::size_t>(static_cast<std::size_t>(resume - 1), n);
  if (tail >= keep) {
    source.replace(keep, tail - keep, value);  // in place: no second copy of the text
    return;
  }
  // A negative length other than -1 resumes before the cut: that part of
  // the text appears twice.
  std::u16string out(source, 0, keep);
  out.append(value);
  out.append(source, tail);
  source = std::move(out);
}

}  // namespace norvik50
