// A host's Qt item view with a horizontal header (QTreeView, QTreeWidget,
// QTableView) behind the library's ListView: its columns' headers and
// widths.
#include <QAbstractItemModel>
#include <QHeaderView>
#include <QPointer>
#include <QTableView>
#include <QTreeView>

#include "dialogs/qt/control_name.h"
#include "dialogs/qt/dialog_driver.h"
#include "norvik50/error.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

QHeaderView* HeaderOf(QTreeView* view) { return view->header(); }
QHeaderView* HeaderOf(QTableView* view) { return view->horizontalHeader(); }

// Columns are the model's, counted as the header counts them (logical
// indexes: a column the user dragged elsewhere keeps its number).
template <typename View>
class HeaderListView final : public ListView {
 public:
  explicit HeaderListView(View* view) : view_(view) {}

  std::u16string Name() const override { return qt::ControlName(view_.data()); }
  int32_t ColumnCount() const override { return view_ ? HeaderOf(view_.data())->count() : 0; }
  std::u16string ColumnHeader(int32_t column) const override {
    Check(column);
    return view_->model()->headerData(column, Qt::Horizontal).toString().toStdU16String();
  }
  // A model that keeps no header texts of its own (a read-only model)
  // keeps its headers.
  void SetColumnHeader(int32_t column, std::u16string_view text) override {
    Check(column);
    view_->model()->setHeaderData(column, Qt::Horizontal, ToQ(text));
  }
  // A hidden column is 0 wide.
  int32_t ColumnWidth(int32_t column) const override {
    Check(column);
    return HeaderOf(view_.data())->sectionSize(column) * qt::kTwipsPerPixel;
  }
  void SetColumnWidth(int32_t column, int32_t width_twips) override {
    Check(column);
    HeaderOf(view_.data())->resizeSection(column, std::max(width_twips, 0) / qt::kTwipsPerPixel);
  }

 private:
  void Check(int32_t column) const {
    if (column < 0 || column >= ColumnCount()) {
      throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
    }
  }

  QPointer<View> view_;
};

}  // namespace

std::shared_ptr<ListView> QtListView(QTreeView* view) {
  return std::make_shared<HeaderListView<QTreeView>>(view);
}

std::shared_ptr<ListView> QtListView(QTableView* view) {
  return std::make_shared<HeaderListView<QTableView>>(view);
}

}  // namespace norvik50
