// A host's Qt item view with a horizontal header (QTreeView, QTreeWidget,
// QTableView) behind the library's ListView: its columns' headers and
// widths, its model's top-level rows with their check state and the view's
// selection, and the header's sort indicator.
#include <QAbstractItemModel>
#include <QHeaderView>
#include <QIcon>
#include <QImage>
#include <QItemSelectionModel>
#include <QPixmap>
#include <QPointer>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeView>
#include <QTreeWidget>

#include "dialogs/qt/column_text_cache.h"
#include "dialogs/qt/control_name.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/list_view_style.h"
#include "dialogs/qt/qt_containers.h"
#include "norvik50/container.h"
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
class HeaderListView final : public ListView, public Contained {
 public:
  explicit HeaderListView(View* view) : view_(view) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(view_.data()); }

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
  void SetColumnCount(int32_t count) override {
    if (!view_) return;
    if (auto* tree = qobject_cast<QTreeWidget*>(view_.data())) {
      tree->setColumnCount(std::max(count, 0));
    } else {
      QAbstractItemModel* model = view_->model();
      const int have = model->columnCount();
      if (count > have) model->insertColumns(have, count - have);
      if (count >= 0 && count < have) model->removeColumns(count, have - count);
    }
    if (ColumnCount() != count) {
      throw Error(
          kErrInvalidCall,
          u"The list view's model cannot have " + ToU16(QString::number(count)) + u" columns.",
          std::u16string(kErrorSource));
    }
  }

  int32_t RowCount() const override { return view_ ? view_->model()->rowCount() : 0; }
  std::u16string ItemText(int32_t row, int32_t column) const override {
    return ToU16(Cell(row, column).data(Qt::DisplayRole).toString());
  }
  // A QTreeWidget's item is asked directly: no model index and variant on
  // the way, which is what a search through every row spends most on.
  std::u16string_view ItemTextView(int32_t row, int32_t column,
                                   std::u16string& scratch) const override {
    QString text;
    if (auto* tree = qobject_cast<QTreeWidget*>(view_.data())) {
      Check(column);
      if (row < 0 || row >= tree->topLevelItemCount()) OutOfRange();
      text = tree->topLevelItem(row)->text(column);
    } else {
      text = Cell(row, column).data(Qt::DisplayRole).toString();
    }
    scratch.assign(reinterpret_cast<const char16_t*>(text.utf16()),
                   static_cast<std::size_t>(text.size()));
    return scratch;
  }
  bool Checked(int32_t row) const override {
    return Cell(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
  }
  void SetChecked(int32_t row, bool checked) override {
    view_->model()->setData(Cell(row, 0), checked ? Qt::Checked : Qt::Unchecked,
                            Qt::CheckStateRole);
  }
  bool Selected(int32_t row) const override {
    const QItemSelectionModel* selection = view_->selectionModel();
    return selection != nullptr && selection->isSelected(Cell(row, 0));
  }
  void SetSelected(int32_t row, bool selected) override {
    const QModelIndex cell = Cell(row, 0);
    if (QItemSelectionModel* selection = view_->selectionModel()) {
      selection->select(cell,
                        (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) |
                            QItemSelectionModel::Rows);
    }
  }
  // One call on the selection model, which also makes the row current
  // (where the keyboard goes on), as a click does.
  void SelectOnly(int32_t row) override {
    const QModelIndex cell = Cell(row, 0);
    if (QItemSelectionModel* selection = view_->selectionModel()) {
      selection->setCurrentIndex(cell,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
  }
  // A QTreeWidget or a QStandardItemModel moves its items; another model
  // keeps its own order (sort it through a QSortFilterProxyModel).
  void ReorderRows(const std::vector<int32_t>& order) override {
    CheckRowOrder(order, RowCount());
    if (auto* tree = qobject_cast<QTreeWidget*>(view_.data())) {
      ReorderTreeWidget(*tree, order);
    } else if (auto* model = qobject_cast<QStandardItemModel*>(view_->model())) {
      ReorderStandardModel(*model, order);
    } else {
      throw Error(kErrInvalidCall, u"The list view's model cannot rearrange its rows.",
                  std::u16string(kErrorSource));
    }
  }
  ListViewSort Sort() const override {
    const QHeaderView* header = view_ ? HeaderOf(view_.data()) : nullptr;
    if (header == nullptr || !header->isSortIndicatorShown()) return {};
    return {header->sortIndicatorSection(), header->sortIndicatorOrder() == Qt::DescendingOrder};
  }
  void SetSort(ListViewSort sort) override {
    QHeaderView* header = HeaderOf(view_.data());
    header->setSortIndicatorShown(sort.column >= 0);
    // The indicator only: a view that sorts by itself would undo the
    // library's order the moment the indicator moved.
    const QSignalBlocker quiet(header);
    header->setSortIndicator(sort.column,
                             sort.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  }
  int32_t Style() const override { return view_ ? qt::ListViewStyleOf(*view_) : 0; }
  void SetStyle(int32_t style) override {
    if (view_) qt::SetListViewStyle(*view_, style);
  }
  // Qt::ToolTipRole of the cell: what a QTreeWidgetItem's setToolTip sets
  // and what the view shows when the pointer rests on the cell.
  std::u16string ItemToolTip(int32_t row, int32_t column) const override {
    return ToU16(Cell(row, column).data(Qt::ToolTipRole).toString());
  }
  void SetItemToolTip(int32_t row, int32_t column, std::u16string_view text) override {
    const QModelIndex cell = Cell(row, column);
    if (!view_->model()->setData(cell, text.empty() ? QVariant() : QVariant(ToQ(text)),
                                 Qt::ToolTipRole)) {
      throw Error(kErrInvalidCall, u"The list view's model keeps no tooltips.",
                  std::u16string(kErrorSource));
    }
  }
  // On the model's copy of the column, made on the first search and
  // kept until the model reports a change of its rows or texts.
  int32_t FirstRowWithPrefix(int32_t column, std::u16string_view folded_prefix, int32_t from,
                             int32_t to) const override {
    Check(column);
    const qt::PackedTexts& texts =
        qt::ColumnTextCache::Of(*view_->model())
            .Column(column, RowCount(), [&](int32_t row, std::u16string& scratch) {
              return ItemTextView(row, column, scratch);
            });
    return FirstPackedRowWithPrefix(texts.units(), texts.ends(), folded_prefix, from, to);
  }

  // ---- Row icons ----
  // The first column's decoration; a model that keeps none (a read-only
  // model) refuses.
  std::shared_ptr<const Picture> RowIcon(int32_t row) const override {
    const QVariant decoration = Cell(row, 0).data(Qt::DecorationRole);
    QImage image;
    if (decoration.canConvert<QIcon>()) {
      const QIcon icon = decoration.value<QIcon>();
      const QList<QSize> sizes = icon.availableSizes();
      if (!sizes.isEmpty()) image = icon.pixmap(sizes.first()).toImage();
    } else if (decoration.canConvert<QImage>()) {
      image = decoration.value<QImage>();
    }
    if (image.isNull()) return nullptr;
    return std::make_shared<const Picture>(PictureFromQImage(image));
  }
  void SetRowIcon(int32_t row, std::shared_ptr<const Picture> icon) override {
    const QModelIndex cell = Cell(row, 0);
    // One icon for many rows is converted once: Qt shares it among them.
    if (icon != last_icon_) {
      last_icon_ = icon;
      last_qicon_ = icon ? QIcon(QPixmap::fromImage(ToQImage(*icon))) : QIcon();
    }
    const QVariant value = icon ? QVariant(last_qicon_) : QVariant();
    if (!view_->model()->setData(cell, value, Qt::DecorationRole)) {
      throw Error(kErrInvalidCall, u"The list view's model keeps no icons.",
                  std::u16string(kErrorSource));
    }
  }

 private:
  static std::u16string ToU16(const QString& text) { return text.toStdU16String(); }

  void Check(int32_t column) const {
    if (column < 0 || column >= ColumnCount()) OutOfRange();
  }
  [[noreturn]] static void OutOfRange() {
    throw Error(kErrSubscript, u"Invalid property array index", std::u16string(kErrorSource));
  }
  QModelIndex Cell(int32_t row, int32_t column) const {
    if (row < 0 || row >= RowCount()) OutOfRange();
    Check(column);
    return view_->model()->index(row, column);
  }
  // Taking every item out at once and putting them back keeps the work
  // linear; the selection lives in the view, so it is carried over.
  static void ReorderTreeWidget(QTreeWidget& tree, const std::vector<int32_t>& order) {
    QTreeWidgetItem* root = tree.invisibleRootItem();
    std::vector<bool> selected(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
      selected[i] = root->child(static_cast<int>(i))->isSelected();
    }
    const QList<QTreeWidgetItem*> items = root->takeChildren();
    QList<QTreeWidgetItem*> reordered;
    reordered.reserve(items.size());
    for (int32_t from : order) reordered.push_back(items[from]);
    root->addChildren(reordered);
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (selected[static_cast<std::size_t>(order[i])])
        reordered[static_cast<qsizetype>(i)]->setSelected(true);
    }
  }
  void ReorderStandardModel(QStandardItemModel& model, const std::vector<int32_t>& order) {
    std::vector<bool> selected(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) selected[i] = Selected(static_cast<int32_t>(i));
    std::vector<QList<QStandardItem*>> rows(order.size());
    // From the end, so that no row above has to move up.
    for (std::size_t i = order.size(); i-- > 0;) rows[i] = model.takeRow(static_cast<int>(i));
    for (int32_t from : order) model.appendRow(rows[static_cast<std::size_t>(from)]);
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (selected[static_cast<std::size_t>(order[i])]) SetSelected(static_cast<int32_t>(i), true);
    }
  }

  QPointer<View> view_;
  std::shared_ptr<const Picture> last_icon_;
  QIcon last_qicon_;
};

}  // namespace

std::shared_ptr<ListView> QtListView(QTreeView* view) {
  return std::make_shared<HeaderListView<QTreeView>>(view);
}

std::shared_ptr<ListView> QtListView(QTableView* view) {
  return std::make_shared<HeaderListView<QTableView>>(view);
}

}  // namespace norvik50
