// A host's list view (a report-style list with columns) as the library's
// members drive it: its columns, each with a header text and a width in
// twips (kept by tklSaveColWidths / tklLoadColWidths, captioned by
// tklLoadFormCaptions), and its rows, each with the item's text, the texts
// of its sub-items and a checked and a selected state, and the column it
// is sorted by (the list view helpers tklSortListView, tklListItemText ...). The Qt adapters come
// with the dialogs (norvik50/qt_dialogs.h: QTreeView, QTreeWidget, QTableView); MemoryListView
// serves hosts without a toolkit, tests and the batch.
//
// Columns and rows are numbered from 0 here; the members count both from
// 1, as a host's column headers and list items are counted.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_LIST_VIEW_H_
#define NORVIK50_LIST_VIEW_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/picture.h"
#include "norvik50/variant.h"

namespace norvik50 {

// ---- Look and tooltips ----------------------------------------------------
// The look of a list view as bits of one Long (tklSetListViewStyle). A
// control that cannot show a bit keeps it all the same, so that it reads
// back as it was set.
enum ListViewStyle : int32_t {
  kListViewFullRowSelect = 1,   // a click selects the whole row, not one cell
  kListViewGridLines = 2,       // lines between rows and columns
  kListViewCheckBoxes = 4,      // a check box before each row's item
  kListViewHeaderDragDrop = 8,  // columns rearranged by dragging their headers
  kListViewHotTracking = 16,    // the row under the pointer is highlighted
  kListViewNoHeaders = 32,      // no row of column headers
  kListViewSingleSelect = 64,   // at most one row selected
  kListViewCutTextTips = 128,   // a cell cut off shows its full text as tooltip
  kListViewAllStyles = 255,
};

// The column a list view is sorted by and in which direction.
struct ListViewSort {
  int32_t column = -1;  // -1: not sorted
  bool descending = false;
  bool operator==(const ListViewSort&) const = default;
};

class NORVIK50_EXPORT ListView : public HostObject {
 public:
  ~ListView() override;
  // The control's name: the sub-key its column widths are kept under.
  virtual std::u16string Name() const = 0;
  virtual int32_t ColumnCount() const = 0;
  // The header text and the width (twips) of `column`. Each raises
  // subscript out of range (9) for a column the list view does not have.
  virtual std::u16string ColumnHeader(int32_t column) const = 0;
  virtual void SetColumnHeader(int32_t column, std::u16string_view text) = 0;
  virtual int32_t ColumnWidth(int32_t column) const = 0;
  // A width below 0 is taken as 0 (a column the user cannot see).
  virtual void SetColumnWidth(int32_t column, int32_t width_twips) = 0;
  // Adds columns (empty header, the width the control gives a new one) or
  // removes the last ones until there are `count`. Raises invalid call (5)
  // when the control cannot have that many.
  virtual void SetColumnCount(int32_t count) = 0;

  virtual int32_t RowCount() const = 0;
  // The text of `row` in `column`: column 0 is the item, the others its
  // sub-items ("" where a row has none). These raise subscript out of
  // range (9) for a row or column the list view does not have.
  virtual std::u16string ItemText(int32_t row, int32_t column) const = 0;
  // ItemText without a copy where the control keeps the text: a view of
  // the control's own text, or of `scratch` filled with it. Valid until the
  // control changes or `scratch` is reused. The helpers that walk every
  // row (the typed search, sorting) read rows this way.
  virtual std::u16string_view ItemTextView(int32_t row, int32_t column,
                                           std::u16string& scratch) const {
    scratch = ItemText(row, column);
    return scratch;
  }
  virtual bool Checked(int32_t row) const = 0;
  virtual void SetChecked(int32_t row, bool checked) = 0;
  virtual bool Selected(int32_t row) const = 0;
  virtual void SetSelected(int32_t row, bool selected) = 0;
  // Makes `row` the only selected row, as a click on it does.
  virtual void SelectOnly(int32_t row);
  // Rearranges the rows: row i becomes the one that was row order[i].
  // `order` is a permutation of 0 .. RowCount() - 1; rows keep their
  // texts and states.
  virtual void ReorderRows(const std::vector<int32_t>& order) = 0;
  virtual ListViewSort Sort() const = 0;
  // Records (and shows, where the control has a sort indicator) the
  // column the rows are sorted by; the rows themselves are not touched.
  virtual void SetSort(ListViewSort sort) = 0;

  // ---- Row icons (tklCopyImageIntoListView) ----
  // The icon shown before the item of `row`; nullptr when it has none (and
  // always in a list view that shows no icons, the default). 9 for a row
  // the list view does not have.
  virtual std::shared_ptr<const Picture> RowIcon(int32_t row) const;
  // Shows `icon` before the item of `row` (nullptr: no icon). 9 for a row
  // the list view does not have; the default shows no icons and raises
  // invalid call (5).
  virtual void SetRowIcon(int32_t row, std::shared_ptr<const Picture> icon);

  // ---- Reading a whole column fast (the typed search) -------------------
  // The first row in [from, to) whose text in `column` begins with
  // `folded_prefix`, a text folded as the library folds case (each unit
  // on its own, as for its case-insensitive searches); -1 when none.
  // Raises subscript out of range (9) for a column the list view does not
  // have. This one reads the rows through ItemTextView; a control that can
  // do better (a copy of the column kept until its rows change) does.
  virtual int32_t FirstRowWithPrefix(int32_t column, std::u16string_view folded_prefix,
                                     int32_t from, int32_t to) const;

  // ---- Look and tooltips ------------------------------------------------
  // The ListViewStyle bits in effect.
  virtual int32_t Style() const = 0;
  // Shows the list view with the ListViewStyle bits of `style` (the
  // caller checked them); bits a control cannot show are kept.
  virtual void SetStyle(int32_t style) = 0;
  // The tooltip of `row`'s text in `column` (the item's or a sub-item's),
  // "" for none. Raise subscript out of range (9) as ItemText does.
  virtual std::u16string ItemToolTip(int32_t row, int32_t column) const = 0;
  // "" takes the tooltip away.
  virtual void SetItemToolTip(int32_t row, int32_t column, std::u16string_view text) = 0;

 protected:
  // Raises invalid call (5) unless `order` names each of `row_count` rows
  // exactly once: a control reordered by a bad order would lose rows.
  static void CheckRowOrder(const std::vector<int32_t>& order, int32_t row_count);
  // FirstRowWithPrefix over a control's copy of a column: row r's text is
  // units[ends[r - 1] .. ends[r]) (from 0 for the first row).
  static int32_t FirstPackedRowWithPrefix(std::u16string_view units,
                                          const std::vector<std::size_t>& ends,
                                          std::u16string_view folded_prefix, int32_t from,
                                          int32_t to);
};

// A list view held in memory.
class NORVIK50_EXPORT MemoryListView final : public ListView {
 public:
  struct Column {
    std::u16string header;
    int32_t width_twips = 0;
    // The resource id of the header text for tklLoadFormCaptions; "" for
    // a header that keeps its designed text.
    std::u16string header_res_id;
    bool operator==(const Column&) const = default;
  };
  struct Row {
    // The item's text, then its sub-items' (fewer than the columns is
    // fine: the missing ones read "").
    std::vector<std::u16string> texts;
    bool checked = false;
    bool selected = false;
    // Shared: the same icon on many rows is kept once. Rows compare their
    // icons by identity (the same shared picture), not pixel by pixel.
    std::shared_ptr<const Picture> icon;
    // The tooltips of the item and its sub-items, as `texts` ("" or
    // missing: none).
    std::vector<std::u16string> tooltips;
    bool operator==(const Row&) const = default;
  };
  explicit MemoryListView(std::u16string name = u"") : name(std::move(name)) {}
  std::u16string Name() const override { return name; }
  int32_t ColumnCount() const override { return static_cast<int32_t>(columns.size()); }
  std::u16string ColumnHeader(int32_t column) const override;
  void SetColumnHeader(int32_t column, std::u16string_view text) override;
  int32_t ColumnWidth(int32_t column) const override;
  void SetColumnWidth(int32_t column, int32_t width_twips) override;
  void SetColumnCount(int32_t count) override;
  int32_t RowCount() const override { return static_cast<int32_t>(rows.size()); }
  std::u16string ItemText(int32_t row, int32_t column) const override;
  std::u16string_view ItemTextView(int32_t row, int32_t column,
                                   std::u16string& scratch) const override;
  bool Checked(int32_t row) const override { return RowAt(row).checked; }
  void SetChecked(int32_t row, bool checked) override { RowAt(row).checked = checked; }
  bool Selected(int32_t row) const override { return RowAt(row).selected; }
  void SetSelected(int32_t row, bool selected) override { RowAt(row).selected = selected; }
  void SelectOnly(int32_t row) override;
  void ReorderRows(const std::vector<int32_t>& order) override;
  ListViewSort Sort() const override { return sort; }
  void SetSort(ListViewSort new_sort) override { sort = new_sort; }
  std::shared_ptr<const Picture> RowIcon(int32_t row) const override { return RowAt(row).icon; }
  void SetRowIcon(int32_t row, std::shared_ptr<const Picture> icon) override {
    RowAt(row).icon = std::move(icon);
  }
  // Straight over `rows`, without a call per row.
  int32_t FirstRowWithPrefix(int32_t column, std::u16string_view folded_prefix, int32_t from,
                             int32_t to) const override;
  int32_t Style() const override { return style; }
  void SetStyle(int32_t new_style) override { style = new_style; }
  std::u16string ItemToolTip(int32_t row, int32_t column) const override;
  void SetItemToolTip(int32_t row, int32_t column, std::u16string_view text) override;

  std::u16string name;
  std::vector<Column> columns;
  std::vector<Row> rows;
  ListViewSort sort;
  int32_t style = 0;  // ListViewStyle bits

 private:
  const Column& At(int32_t column) const;
  Column& At(int32_t column);
  const Row& RowAt(int32_t row) const;
  Row& RowAt(int32_t row);
};

}  // namespace norvik50

#endif  // NORVIK50_LIST_VIEW_H_
