// What the list view helpers do to any ListView: find columns and rows,
// sort by a column as the locale reads its values, the typed search, and
// the rows as tab-separated text. Rows and columns count from 0 here; the
// members add the host's 1.
#ifndef NORVIK50_SRC_SETTINGS_LIST_VIEW_HELPERS_H_
#define NORVIK50_SRC_SETTINGS_LIST_VIEW_HELPERS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/list_view.h"
#include "norvik50/locale.h"

namespace norvik50::settings {

// How a column's texts are compared when the list view is sorted by it.
enum class ListSortKind : int16_t {
  kAuto = 0,    // numbers when every filled cell is one, else dates, else text
  kText = 1,    // collated without case, as the locale orders words
  kNumber = 2,  // the value the locale reads ("1.234,5" in German)
  kDate = 3,    // the date and time the locale reads ("05.03.2024", "3/5/2024")
};

// The first column whose header equals `header` without case; -1 if none.
int32_t FindColumn(const ListView& list, std::u16string_view header);
// The first row whose text in `column` equals `text` without case; -1 if
// none.
int32_t FindRow(const ListView& list, std::u16string_view text, int32_t column);

// The rows in the order sorting by `column` gives: rows of equal value keep
// their order, and in number and date columns cells that hold no number or
// date come last (ascending) or first (descending), in text order.
std::vector<int32_t> SortedRowOrder(const ListView& list, int32_t column, ListSortKind kind,
                                    bool descending, const Locale& locale);
// Sorts the rows by `column`, ascending, or descending when the list view
// is already sorted ascending by it (a second click reverses). Answers
// the sort now shown.
ListViewSort SortListView(ListView& list, int32_t column, ListSortKind kind, const Locale& locale);

// The incremental search of a person typing into the list: the first row
// from `start` on (wrapping round) whose text in `column` begins with
// `typed` without case. When `typed` is one character repeated ("ss") and
// no row begins with it, the rows beginning with that character are
// cycled, starting after `start`. -1 when no row matches.
int32_t SearchRow(const ListView& list, std::u16string_view typed, int32_t start, int32_t column);

// The rows (only the selected ones with `selected_only`), the headers
// first with `with_headers`, as text a spreadsheet pastes: cells separated
// by tabs, each row ended by CR LF. A tab or line break inside a cell
// becomes a space, so that the rows and columns survive.
std::u16string ListViewAsText(const ListView& list, bool with_headers, bool selected_only);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_LIST_VIEW_HELPERS_H_
