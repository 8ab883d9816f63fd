// LIB: the list view helpers. The members count rows and columns from 1;
// the helpers below them from 0.
#include <algorithm>
#include <cmath>
#include <vector>

#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/locale.h"
#include "settings/list_view_helpers.h"

namespace norvik50 {
namespace {

using settings::ListSortKind;

[[noreturn]] void OutOfRange() {
  throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
}

[[noreturn]] void InvalidCall(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

ListView& ListViewOf(const std::shared_ptr<HostObject>& object) {
  auto* list = dynamic_cast<ListView*>(object.get());
  if (list == nullptr) InvalidCall(u"The object is no list view.");
  return *list;
}

int32_t RowOf(const ListView& list, int32_t index) {
  if (index < 1 || index > list.RowCount()) OutOfRange();
  return index - 1;
}

int32_t ColumnOf(const ListView& list, int32_t column) {
  if (column < 1 || column > list.ColumnCount()) OutOfRange();
  return column - 1;
}

// The host's indexes (from 1) of the rows `is_set` answers True for.
template <typename IsSet>
int32_t CollectRows(const ListView& list, SafeArray* indexes, IsSet is_set) {
  std::vector<Variant> found;
  int32_t count = 0;
  for (int32_t row = 0, rows = list.RowCount(); row < rows; ++row) {
    if (!is_set(row)) continue;
    ++count;
    if (indexes != nullptr) found.emplace_back(row + 1);
  }
  if (indexes != nullptr) *indexes = SafeArray(0, std::move(found), VarType::kLong);
  return count;
}

int32_t FirstSelected(const ListView& list) {
  for (int32_t row = 0, rows = list.RowCount(); row < rows; ++row) {
    if (list.Selected(row)) return row;
  }
  return -1;
}

// A whole number given as any numeric Variant (a Double 3 from a script
// is row 3); a fraction or a non-number is a type mismatch.
int32_t IndexValue(const Variant& value) {
  const std::optional<double> number = value.numeric_value();
  if (!number || std::trunc(*number) != *number || std::abs(*number) > 2147483647.0) {
    throw Error(kErrTypeMismatch, u"Type mismatch: a row index must be a whole number.",
                std::u16string(kErrorSource));
  }
  return static_cast<int32_t>(*number);
}

}  // namespace

int32_t LIB::tklSetListViewHeaders(const std::shared_ptr<HostObject>& oListView,
                                   std::u16string_view sHeaders, std::u16string_view sSeparator) {
  ListView& list = ListViewOf(oListView);
  if (sSeparator.empty()) InvalidCall(u"The separator of the headers must not be empty.");
  std::vector<std::u16string_view> headers;
  // No text, no columns: "" is not one column without a header.
  for (std::size_t from = 0; !sHeaders.empty();) {
    const std::size_t at = sHeaders.find(sSeparator, from);
    headers.push_back(sHeaders.substr(from, at == std::u16string_view::npos ? at : at - from));
    if (at == std::u16string_view::npos) break;
    from = at + sSeparator.size();
  }
  list.SetColumnCount(static_cast<int32_t>(headers.size()));
  for (std::size_t i = 0; i < headers.size(); ++i) {
    list.SetColumnHeader(static_cast<int32_t>(i), headers[i]);
  }
  return list.ColumnCount();
}

int32_t LIB::tklGetListViewCol(const std::shared_ptr<HostObject>& oListView,
                               std::u16string_view sHeader) {
  return settings::FindColumn(ListViewOf(oListView), sHeader) + 1;
}

std::u16string LIB::tklListItemText(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                                    int32_t lColumn) {
  const ListView& list = ListViewOf(oListView);
  return list.ItemText(RowOf(list, lIndex), ColumnOf(list, lColumn));
}

int32_t LIB::tklListItemIndex(const std::shared_ptr<HostObject>& oListView,
                              std::u16string_view sText, int32_t lColumn) {
  const ListView& list = ListViewOf(oListView);
  return settings::FindRow(list, sText, ColumnOf(list, lColumn)) + 1;
}

int32_t LIB::tklListCheckAllItems(const std::shared_ptr<HostObject>& oListView, bool bChecked) {
  ListView& list = ListViewOf(oListView);
  const int32_t rows = list.RowCount();
  for (int32_t row = 0; row < rows; ++row) list.SetChecked(row, bChecked);
  return rows;
}

int32_t LIB::tklListCheckedItems(const std::shared_ptr<HostObject>& oListView,
                                 SafeArray* lIndexes) {
  const ListView& list = ListViewOf(oListView);
  return CollectRows(list, lIndexes, [&](int32_t row) { return list.Checked(row); });
}

bool LIB::tklListItemChecked(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                             std::optional<bool> bChecked) {
  ListView& list = ListViewOf(oListView);
  const int32_t row = RowOf(list, lIndex);
  if (bChecked) list.SetChecked(row, *bChecked);
  return list.Checked(row);
}

int32_t LIB::tklListSelectedItems(const std::shared_ptr<HostObject>& oListView,
                                  SafeArray* lIndexes) {
  const ListView& list = ListViewOf(oListView);
  return CollectRows(list, lIndexes, [&](int32_t row) { return list.Selected(row); });
}

int32_t LIB::tklListSelectItems(const std::shared_ptr<HostObject>& oListView,
                                const Variant& vIndexes, bool bSelected, bool bDeselectOthers) {
  ListView& list = ListViewOf(oListView);
  std::vector<int32_t> rows;
  if (vIndexes.is_array()) {
    for (const Variant& item : vIndexes.as_array().items()) {
      rows.push_back(RowOf(list, IndexValue(item)));
    }
  } else {
    rows.push_back(RowOf(list, IndexValue(vIndexes)));
  }
  std::vector<bool> named(static_cast<std::size_t>(list.RowCount()));
  for (int32_t row : rows) named[static_cast<std::size_t>(row)] = true;
  int32_t selected = 0;
  for (int32_t row = 0, count = list.RowCount(); row < count; ++row) {
    if (named[static_cast<std::size_t>(row)]) {
      list.SetSelected(row, bSelected);
    } else if (bDeselectOthers && list.Selected(row)) {
      list.SetSelected(row, false);
    }
    if (list.Selected(row)) ++selected;
  }
  return selected;
}

bool LIB::tklListItemSelected(const std::shared_ptr<HostObject>& oListView, int32_t lIndex,
                              std::optional<bool> bSelected) {
  ListView& list = ListViewOf(oListView);
  const int32_t row = RowOf(list, lIndex);
  if (bSelected) list.SetSelected(row, *bSelected);
  return list.Selected(row);
}

int32_t LIB::tklSelItemCount(const std::shared_ptr<HostObject>& oListView) {
  return tklListSelectedItems(oListView);
}

std::u16string LIB::tklSelectedItem(const std::shared_ptr<HostObject>& oListView, int32_t lColumn,
                                    int32_t* lIndex) {
  const ListView& list = ListViewOf(oListView);
  const int32_t column = ColumnOf(list, lColumn);
  const int32_t row = FirstSelected(list);
  if (lIndex != nullptr) *lIndex = row + 1;
  return row < 0 ? std::u16string() : list.ItemText(row, column);
}

bool LIB::tklHasSelectedItem(const std::shared_ptr<HostObject>& oListView) {
  return FirstSelected(ListViewOf(oListView)) >= 0;
}

bool LIB::tklIsSelected(const std::shared_ptr<HostObject>& oListView, const Variant& vItem) {
  const ListView& list = ListViewOf(oListView);
  int32_t row = -1;
  if (vItem.is_string()) {
    if (list.ColumnCount() > 0) row = settings::FindRow(list, vItem.as_string(), 0);
  } else {
    row = IndexValue(vItem) - 1;
  }
  return row >= 0 && row < list.RowCount() && list.Selected(row);
}

int16_t LIB::tklSortListView(const std::shared_ptr<HostObject>& oListView, int32_t lColumn,
                             int16_t iSortType) {
  ListView& list = ListViewOf(oListView);
  const int32_t column = ColumnOf(list, lColumn);
  if (iSortType < 0 || iSortType > 3) {
    InvalidCall(
        u"The sort type must be 0 (as the cells read), 1 (text), 2 (numbers) or 3 "
        u"(dates).");
  }
  const ListViewSort sort =
      settings::SortListView(list, column, static_cast<ListSortKind>(iSortType), CurrentLocale());
  return sort.descending ? 1 : 0;
}

int32_t LIB::tklSearchListItem(const std::shared_ptr<HostObject>& oListView,
                               std::u16string_view sTyped, int32_t lStart, int32_t lColumn,
                               bool bSelect) {
  ListView& list = ListViewOf(oListView);
  const int32_t column = ColumnOf(list, lColumn);
  if (lStart < 0 || lStart > list.RowCount()) OutOfRange();
  const int32_t start = lStart == 0 ? std::max(FirstSelected(list), 0) : lStart - 1;
  const int32_t found = settings::SearchRow(list, sTyped, start, column);
  if (found >= 0 && bSelect) list.SelectOnly(found);
  return found + 1;
}

std::u16string LIB::tklCopyListView(const std::shared_ptr<HostObject>& oListView, bool bHeaders,
                                    bool bSelectedOnly) {
  return settings::ListViewAsText(ListViewOf(oListView), bHeaders, bSelectedOnly);
}

int32_t LIB::tklSetListViewStyle(const std::shared_ptr<HostObject>& oListView, int32_t lStyle,
                                 bool bOn) {
  ListView& list = ListViewOf(oListView);
  if ((lStyle & ~kListViewAllStyles) != 0) {
    InvalidCall(u"A list view style is made of the bits 1, 2, 4, 8, 16, 32, 64 and 128.");
  }
  const int32_t before = list.Style();
  const int32_t after = bOn ? (before | lStyle) : (before & ~lStyle);
  if (after != before) list.SetStyle(after);
  return list.Style();
}

std::u16string LIB::tklShowListViewTooltip(const std::shared_ptr<HostObject>& oListView,
                                           int32_t lIndex, int32_t lColumn,
                                           std::optional<std::u16string> sText) {
  ListView& list = ListViewOf(oListView);
  const int32_t row = RowOf(list, lIndex);
  const int32_t column = ColumnOf(list, lColumn);
  if (sText) list.SetItemToolTip(row, column, *sText);
  return list.ItemToolTip(row, column);
}

}  // namespace norvik50
