#include "norvik50/host_controls.h"

#include "norvik50/error.h"

namespace norvik50 {
namespace {

[[noreturn]] void NoSuchRow() {
  throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
}

}  // namespace

ListControl::~ListControl() = default;
TabCollection::~TabCollection() = default;
TabStrip::~TabStrip() = default;

void MemoryList::Clear() {
  rows_.clear();
  new_index_ = -1;
}

void MemoryList::AddItem(std::u16string_view text) {
  rows_.push_back({std::u16string(text), 0});
  new_index_ = static_cast<int32_t>(rows_.size()) - 1;
}

int32_t MemoryList::ItemData(int32_t index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= rows_.size()) NoSuchRow();
  return rows_[index].item_data;
}

void MemoryList::SetItemData(int32_t index, int32_t data) {
  if (index < 0 || static_cast<std::size_t>(index) >= rows_.size()) NoSuchRow();
  rows_[index].item_data = data;
}

void MemoryTabStrip::Add(std::optional<int32_t> index, std::u16string_view key,
                         std::u16string_view caption) {
  Tab tab{std::u16string(key), std::u16string(caption)};
  if (!key.empty() && keys_.contains(tab.key)) {
    throw Error(kErrKeyNotUnique, u"Key is not unique in collection", std::u16string(kErrorSource));
  }
  if (index && (*index < 1 || static_cast<std::size_t>(*index) > tabs_.size() + 1)) {
    throw Error(kErrSubscript, u"Index out of bounds", std::u16string(kErrorSource));
  }
  // Nothing is changed before both checks have passed, and the key and the
  // tab go in together: a refused tab leaves the strip as it was.
  const bool keyed = !key.empty();
  if (keyed) keys_.insert(tab.key);
  try {
    tabs_.insert(index ? tabs_.begin() + (*index - 1) : tabs_.end(), std::move(tab));
  } catch (...) {
    if (keyed) keys_.erase(std::u16string(key));
    throw;
  }
}

}  // namespace norvik50
