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
OptionGroup::~OptionGroup() = default;
TabFrames::~TabFrames() = default;
Grid::~Grid() = default;

void MemoryTabFrames::SetVisible(int32_t index, bool visible) {
  if (index < 0 || static_cast<std::size_t>(index) >= frames.size()) NoSuchRow();
  frames[index].visible = visible;
}

int32_t MemoryGrid::ColumnWidth(int32_t column) const {
  if (column < 0 || static_cast<std::size_t>(column) >= columns.size()) NoSuchRow();
  return columns[column].width;
}

void MemoryGrid::SetColumnWidth(int32_t column, int32_t width_twips) {
  if (column < 0 || static_cast<std::size_t>(column) >= columns.size()) NoSuchRow();
  columns[column].width = width_twips;
}

void MemoryGrid::SetColumnAlignment(int32_t column, TextAlignment alignment) {
  if (column < 0 || static_cast<std::size_t>(column) >= columns.size()) NoSuchRow();
  columns[column].alignment = alignment;
}

void MemoryList::Clear() {
  rows_.clear();
  new_index_ = -1;
}

void MemoryList::AddItem(std::u16string_view text) {
  rows_.push_back({std::u16string(text), 0});
  new_index_ = static_cast<int32_t>(rows_.size()) - 1;
}

const MemoryList::Row& MemoryList::At(int32_t index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= rows_.size()) NoSuchRow();
  return rows_[index];
}

int32_t MemoryList::ItemData(int32_t index) const { return At(index).item_data; }

void MemoryList::SetItemData(int32_t index, int32_t data) {
  At(index);
  rows_[index].item_data = data;
}

std::u16string MemoryList::ItemText(int32_t index) const { return At(index).text; }

bool MemoryList::Selected(int32_t index) const { return At(index).selected; }

void MemoryList::SetSelected(int32_t index, bool selected) {
  At(index);
  if (selected && !multi_select_) {
    for (Row& row : rows_) row.selected = false;
  }
  rows_[index].selected = selected;
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
