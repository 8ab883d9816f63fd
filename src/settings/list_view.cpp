#include "norvik50/list_view.h"

#include <algorithm>
#include <utility>

#include "norvik50/error.h"
#include "text/fold.h"

namespace norvik50 {
namespace {

[[noreturn]] void OutOfRange() {
  throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
}

}  // namespace

ListView::~ListView() = default;

void ListView::SelectOnly(int32_t row) {
  SetSelected(row, true);
  for (int32_t other = 0, count = RowCount(); other < count; ++other) {
    if (other != row && Selected(other)) SetSelected(other, false);
  }
}

int32_t ListView::FirstRowWithPrefix(int32_t column, std::u16string_view folded_prefix,
                                     int32_t from, int32_t to) const {
  if (column < 0 || column >= ColumnCount()) OutOfRange();
  const FoldedPrefix prefix(folded_prefix);
  std::u16string cell;
  for (int32_t row = std::max(from, 0), end = std::min(to, RowCount()); row < end; ++row) {
    if (prefix.Starts(ItemTextView(row, column, cell))) return row;
  }
  return -1;
}

int32_t ListView::FirstPackedRowWithPrefix(std::u16string_view units,
                                           const std::vector<std::size_t>& ends,
                                           std::u16string_view folded_prefix, int32_t from,
                                           int32_t to) {
  const FoldedPrefix prefix(folded_prefix);
  const auto end = static_cast<std::size_t>(std::clamp(to, 0, static_cast<int32_t>(ends.size())));
  for (auto row = static_cast<std::size_t>(std::max(from, 0)); row < end; ++row) {
    const std::size_t begin = row == 0 ? 0 : ends[row - 1];
    if (prefix.Starts(units.substr(begin, ends[row] - begin))) return static_cast<int32_t>(row);
  }
  return -1;
}

void ListView::CheckRowOrder(const std::vector<int32_t>& order, int32_t row_count) {
  std::vector<bool> seen(static_cast<std::size_t>(std::max(row_count, 0)));
  bool valid = order.size() == seen.size();
  for (std::size_t i = 0; valid && i < order.size(); ++i) {
    const int32_t from = order[i];
    valid = from >= 0 && from < row_count && !seen[static_cast<std::size_t>(from)];
    if (valid) seen[static_cast<std::size_t>(from)] = true;
  }
  if (!valid) {
    throw Error(kErrInvalidCall, u"The new order must name every row once.",
                std::u16string(kErrorSource));
  }
}

const MemoryListView::Column& MemoryListView::At(int32_t column) const {
  if (column < 0 || static_cast<std::size_t>(column) >= columns.size()) OutOfRange();
  return columns[static_cast<std::size_t>(column)];
}

const MemoryListView::Row& MemoryListView::RowAt(int32_t row) const {
  if (row < 0 || static_cast<std::size_t>(row) >= rows.size()) OutOfRange();
  return rows[static_cast<std::size_t>(row)];
}

MemoryListView::Row& MemoryListView::RowAt(int32_t row) {
  return const_cast<Row&>(std::as_const(*this).RowAt(row));
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

void MemoryListView::SetColumnCount(int32_t count) {
  if (count < 0) {
    throw Error(kErrInvalidCall, u"A list view cannot have fewer than 0 columns.",
                std::u16string(kErrorSource));
  }
  columns.resize(static_cast<std::size_t>(count));
}

std::u16string MemoryListView::ItemText(int32_t row, int32_t column) const {
  std::u16string scratch;
  return std::u16string(ItemTextView(row, column, scratch));
}

std::u16string_view MemoryListView::ItemTextView(int32_t row, int32_t column,
                                                 std::u16string& /*scratch*/) const {
  const Row& r = RowAt(row);
  At(column);
  const auto i = static_cast<std::size_t>(column);
  return i < r.texts.size() ? std::u16string_view(r.texts[i]) : std::u16string_view();
}

std::u16string MemoryListView::ItemToolTip(int32_t row, int32_t column) const {
  const Row& r = RowAt(row);
  At(column);
  const auto at = static_cast<std::size_t>(column);
  return at < r.tooltips.size() ? r.tooltips[at] : std::u16string();
}

void MemoryListView::SetItemToolTip(int32_t row, int32_t column, std::u16string_view text) {
  Row& r = RowAt(row);
  At(column);
  const auto at = static_cast<std::size_t>(column);
  if (r.tooltips.size() <= at) {
    if (text.empty()) return;  // none, as before
    r.tooltips.resize(at + 1);
  }
  r.tooltips[at] = text;
}

void MemoryListView::SelectOnly(int32_t row) {
  RowAt(row);
  for (Row& r : rows) r.selected = false;
  rows[static_cast<std::size_t>(row)].selected = true;
}

int32_t MemoryListView::FirstRowWithPrefix(int32_t column, std::u16string_view folded_prefix,
                                           int32_t from, int32_t to) const {
  At(column);
  const auto at = static_cast<std::size_t>(column);
  const FoldedPrefix prefix(folded_prefix);
  const auto text_of = [&](std::size_t row) {
    const std::vector<std::u16string>& texts = rows[row].texts;
    // A row without this sub-item reads "", which only "" begins.
    return at < texts.size() ? std::u16string_view(texts[at]) : std::u16string_view();
  };
  // Each row's text sits behind two pointers of its own, so the walk waits
  // on memory more than it compares: the texts some rows ahead are asked
  // for early, a stage at a time (the cell, then its units).
  constexpr std::size_t kCellAhead = 32;
  constexpr std::size_t kTextAhead = 16;
  const auto end = static_cast<std::size_t>(std::clamp(to, 0, RowCount()));
  for (auto row = static_cast<std::size_t>(std::max(from, 0)); row < end; ++row) {
    if (row + kCellAhead < end) {
      const std::vector<std::u16string>& ahead = rows[row + kCellAhead].texts;
      if (at < ahead.size()) __builtin_prefetch(&ahead[at]);
    }
    if (row + kTextAhead < end) __builtin_prefetch(text_of(row + kTextAhead).data());
    if (prefix.Starts(text_of(row))) return static_cast<int32_t>(row);
  }
  return -1;
}

void MemoryListView::ReorderRows(const std::vector<int32_t>& order) {
  CheckRowOrder(order, RowCount());
  std::vector<Row> reordered;
  reordered.reserve(rows.size());
  for (int32_t from : order) reordered.push_back(std::move(RowAt(from)));
  rows = std::move(reordered);
}

}  // namespace norvik50
