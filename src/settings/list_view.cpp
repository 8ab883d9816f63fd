#include "norvik50/list_view.h"

#include <algorithm>
#include <utility>

#include "norvik50/error.h"

namespace norvik50 {

ListView::~ListView() = default;

const MemoryListView::Column& MemoryListView::At(int32_t column) const {
  if (column < 0 || static_cast<std::size_t>(column) >= columns.size()) {
    throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
  }
  return columns[static_cast<std::size_t>(column)];
}

MemoryListView::Column& MemoryListView::At(int32_t column) {
  return const_cast<Column&>(std::as_const(*this).At(column));
}

std::u16string MemoryListView::ColumnHeader(int32_t column) const { return At(column).header; }

void MemoryListView::SetColumnHeader(int32_t column, std::u16string_view text) {
  At(column).header = text;
}

int32_t MemoryListView::ColumnWidth(int32_t column) const { return At(column).width_twips; }

void MemoryListView::SetColumnWidth(int32_t column, int32_t width_twips) {
  At(column).width_twips = std::max(width_twips, 0);
}

}  // namespace norvik50
