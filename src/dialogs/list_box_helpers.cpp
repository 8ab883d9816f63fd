#include "dialogs/list_box_helpers.h"

#include <cmath>
#include <limits>

#include "core/name_fold.h"
#include "norvik50/dispatch.h"
#include "norvik50/error.h"

namespace norvik50 {

int32_t FirstChosenRow(const ListControl& list) {
  const int32_t count = list.Count();
  for (int32_t i = 0; i < count; ++i) {
    if (list.Selected(i)) return i;
  }
  return -1;
}

int32_t ListBoxData(const ListControl& list, int32_t index) {
  if (index == -1) {
    index = FirstChosenRow(list);
    if (index == -1) return -1;
  }
  return list.ItemData(index);
}

int32_t ListBoxItemSum(const ListControl& list, bool all_rows) {
  int64_t sum = 0;
  const int32_t count = list.Count();
  for (int32_t i = 0; i < count; ++i) {
    if (all_rows || list.Selected(i)) sum += list.ItemData(i);
    // Checked row by row: 2^31 rows of the largest Long would still fit an
    // int64_t, but the host must hear of the overflow, not of a wrapped sum.
    if (sum > std::numeric_limits<int32_t>::max() || sum < std::numeric_limits<int32_t>::min()) {
      throw Error(kErrOverflow, u"Overflow", std::u16string(kErrorSource));
    }
  }
  return static_cast<int32_t>(sum);
}

namespace {

int32_t FindByData(const ListControl& list, double data) {
  // Item data are whole Longs: a fraction or a number beyond a Long names
  // no row, rather than the row its rounding would hit.
  if (data != std::floor(data) || data < std::numeric_limits<int32_t>::min() ||
      data > std::numeric_limits<int32_t>::max()) {
    return -1;
  }
  const auto wanted = static_cast<int32_t>(data);
  const int32_t count = list.Count();
  for (int32_t i = 0; i < count; ++i) {
    if (list.ItemData(i) == wanted) return i;
  }
  return -1;
}

int32_t FindByText(const ListControl& list, std::u16string_view text) {
  const std::u16string wanted = FoldName(text);
  const int32_t count = list.Count();
  for (int32_t i = 0; i < count; ++i) {
    if (FoldName(list.ItemText(i)) == wanted) return i;
  }
  return -1;
}

}  // namespace

int32_t SelectListBoxItem(ListControl& list, const Variant& find, bool select) {
  int32_t row = -1;
  if (find.is_string()) {
    row = FindByText(list, find.as_string());
  } else if (find.is_numeric()) {
    row = FindByData(list, CoerceTo(find, VarType::kDouble).as_double());
  } else {
    throw Error(kErrTypeMismatch, u"Type mismatch: the row is found by a number or a text",
                std::u16string(kErrorSource));
  }
  if (row != -1) list.SetSelected(row, select);
  return row;
}

}  // namespace norvik50
