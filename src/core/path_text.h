// A path's text while it is being built: kept in the object itself up to
// the length almost every path has, so that reading a path by its text
// costs no allocation of its own, only the one of the result.
#ifndef NORVIK50_SRC_CORE_PATH_TEXT_H_
#define NORVIK50_SRC_CORE_PATH_TEXT_H_

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

namespace norvik50 {

class PathText {
 public:
  PathText() = default;
  PathText(const PathText&) = delete;
  PathText& operator=(const PathText&) = delete;

  // Makes room for `capacity` units in all; what is there stays.
  void Reserve(std::size_t capacity) {
    if (capacity <= capacity_) return;
    auto bigger = std::make_unique<char16_t[]>(capacity);
    std::copy_n(data_, size_, bigger.get());
    heap_ = std::move(bigger);
    data_ = heap_.get();
    capacity_ = capacity;
  }
  void Append(std::u16string_view text) {
    Reserve(size_ + text.size());
    std::copy(text.begin(), text.end(), data_ + size_);
    size_ += text.size();
  }
  void PushBack(char16_t c) {
    Reserve(size_ + 1);
    data_[size_++] = c;
  }
  // Writing through data() is for the room Reserve made; set_size() then
  // says how much of it holds the text.
  char16_t* data() { return data_; }
  void set_size(std::size_t size) { size_ = size; }
  std::size_t size() const { return size_; }
  char16_t operator[](std::size_t i) const { return data_[i]; }
  std::u16string_view view() const { return {data_, size_}; }

 private:
  // MAX_PATH and a little: longer paths are rare enough to pay for a heap.
  static constexpr std::size_t kInline = 264;
  char16_t inline_[kInline];
  std::unique_ptr<char16_t[]> heap_;
  char16_t* data_ = inline_;
  std::size_t size_ = 0;
  std::size_t capacity_ = kInline;
};

}  // namespace norvik50

#endif  // NORVIK50_SRC_CORE_PATH_TEXT_H_
