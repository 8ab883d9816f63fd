// The texts of a model's columns, each column copied into one piece on
// first use and kept until the model reports that its rows or texts
// changed. Reading 100,000 rows out of a QTreeWidget item by item takes
// tens of milliseconds; a person typing into the list asks for the same
// column at every key, so the copy is read instead.
#ifndef NORVIK50_SRC_DIALOGS_QT_COLUMN_TEXT_CACHE_H_
#define NORVIK50_SRC_DIALOGS_QT_COLUMN_TEXT_CACHE_H_

#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class QAbstractItemModel;

namespace norvik50::qt {

// A column's texts, row after row, in one buffer: row r's text is
// units()[ends()[r - 1] .. ends()[r]) (from 0 for the first row).
class PackedTexts {
 public:
  void Append(std::u16string_view text);
  int32_t size() const { return static_cast<int32_t>(ends_.size()); }
  std::u16string_view units() const { return units_; }
  const std::vector<std::size_t>& ends() const { return ends_; }

 private:
  std::u16string units_;
  std::vector<std::size_t> ends_;
};

// Lives as a child of its model (found again by every adapter of a view
// on that model) and goes with it.
class ColumnTextCache final : public QObject {
 public:
  // The cache of `model`, made on first use.
  static ColumnTextCache& Of(QAbstractItemModel& model);

  // Reads the text of one row of the column into its second argument (a
  // scratch buffer it may use) and answers it.
  using RowReader = std::function<std::u16string_view(int32_t row, std::u16string& scratch)>;
  // The texts of `column` over `rows` top-level rows, read through `read`
  // when there is no copy yet.
  const PackedTexts& Column(int32_t column, int32_t rows, const RowReader& read);

  // How often a column was read row by row: what a test watches to see
  // that the copy is kept, and dropped when it must be.
  int32_t fills() const { return fills_; }

 private:
  explicit ColumnTextCache(QAbstractItemModel& model);
  void Drop() { columns_.clear(); }

  std::map<int32_t, PackedTexts> columns_;
  int32_t fills_ = 0;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_COLUMN_TEXT_CACHE_H_
