// What the list-box and option-group helpers of LIB do, on the toolkit-free
// control interfaces, so that every kind of list answers alike.
#ifndef NORVIK50_SRC_DIALOGS_LIST_BOX_HELPERS_H_
#define NORVIK50_SRC_DIALOGS_LIST_BOX_HELPERS_H_

#include <cstdint>

#include "norvik50/host_controls.h"
#include "norvik50/variant.h"

namespace norvik50 {

// The first chosen row, -1 when none is.
int32_t FirstChosenRow(const ListControl& list);

// The item data of row `index`, or of the first chosen row for -1 (-1 when
// no row is chosen then). Raises 9 for any other index that names no row.
int32_t ListBoxData(const ListControl& list, int32_t index);

// The sum of the chosen rows' item data (every row's with `all_rows`).
// Raises 6 when the sum leaves a Long.
int32_t ListBoxItemSum(const ListControl& list, bool all_rows);

// The first row whose item data is the number `find`, or whose text is the
// text `find` without regard to case; chooses it (releases it with
// `select` false) and answers its index, -1 when no row matches. Raises 13
// for a `find` that is neither a number nor a text.
int32_t SelectListBoxItem(ListControl& list, const Variant& find, bool select);

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_LIST_BOX_HELPERS_H_
