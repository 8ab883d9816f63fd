// A host's list view (a report-style list with columns) as the library's
// members drive it. Today that is its columns: each with a header text and
// a width in twips, kept by tklSaveColWidths / tklLoadColWidths and
// captioned by tklLoadFormCaptions. The Qt adapters come with the dialogs
// (norvik50/qt_dialogs.h: QTreeView, QTreeWidget, QTableView);
// MemoryListView serves hosts without a toolkit, tests and the batch.
//
// Columns are numbered from 0 here; what the members store counts them
// from 1, as a host's column headers are counted.
//
// Thread safety: none; a control belongs to the thread that uses it.
#ifndef NORVIK50_LIST_VIEW_H_
#define NORVIK50_LIST_VIEW_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

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
  explicit MemoryListView(std::u16string name = u"") : name(std::move(name)) {}
  std::u16string Name() const override { return name; }
  int32_t ColumnCount() const override { return static_cast<int32_t>(columns.size()); }
  std::u16string ColumnHeader(int32_t column) const override;
  void SetColumnHeader(int32_t column, std::u16string_view text) override;
  int32_t ColumnWidth(int32_t column) const override;
  void SetColumnWidth(int32_t column, int32_t width_twips) override;

  std::u16string name;
  std::vector<Column> columns;

 private:
  const Column& At(int32_t column) const;
  Column& At(int32_t column);
};

}  // namespace norvik50

#endif  // NORVIK50_LIST_VIEW_H_
