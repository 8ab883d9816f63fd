// The host's frame containers and table views behind the library's
// TabFrames and Grid.
#include <QAbstractItemModel>
#include <QHeaderView>
#include <QPointer>
#include <QStackedWidget>
#include <QTableView>
#include <QTableWidget>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_containers.h"
#include "norvik50/container.h"
#include "norvik50/error.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

[[noreturn]] void NoSuch(const char16_t* what) {
  throw Error(kErrSubscript, what, std::u16string(kErrorSource));
}

class ContainerFrames final : public TabFrames {
 public:
  explicit ContainerFrames(QWidget* container) : container_(container) {}
  int32_t Count() const override { return static_cast<int32_t>(Frames().size()); }
  void SetVisible(int32_t index, bool visible) override {
    const QList<QWidget*> frames = Frames();
    if (index < 0 || index >= frames.size()) NoSuch(u"There is no such frame.");
    if (auto* stack = qobject_cast<QStackedWidget*>(container_.data())) {
      // A stack shows one page by itself; hiding the others is its job.
      if (visible) stack->setCurrentWidget(frames[index]);
      return;
    }
    frames[index]->setVisible(visible);
  }

 private:
  // The direct children that are widgets inside the container, not windows
  // of their own, in the order they were made.
  QList<QWidget*> Frames() const {
    QList<QWidget*> frames;
    if (!container_) return frames;
    if (auto* stack = qobject_cast<QStackedWidget*>(container_.data())) {
      for (int i = 0; i < stack->count(); ++i) frames.append(stack->widget(i));
      return frames;
    }
    for (QObject* child : container_->children()) {
      auto* widget = qobject_cast<QWidget*>(child);
      if (widget && !widget->isWindow()) frames.append(widget);
    }
    return frames;
  }

  QPointer<QWidget> container_;
};

Qt::Alignment ToQt(TextAlignment alignment) {
  switch (alignment) {
    case TextAlignment::kRight:
      return Qt::AlignRight | Qt::AlignVCenter;
    case TextAlignment::kCenter:
      return Qt::AlignHCenter | Qt::AlignVCenter;
    case TextAlignment::kLeft:
      break;
  }
  return Qt::AlignLeft | Qt::AlignVCenter;
}

class TableGrid final : public Grid, public Contained {
 public:
  explicit TableGrid(QTableView* table) : table_(table) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(table_.data()); }
  int32_t ColumnCount() const override {
    return table_ && table_->model() ? table_->model()->columnCount() : 0;
  }
  int32_t ColumnWidth(int32_t column) const override {
    Check(column);
    if (table_->isColumnHidden(column)) return 0;
    return table_->columnWidth(column) * qt::kTwipsPerPixel;
  }
  void SetColumnWidth(int32_t column, int32_t width_twips) override {
    Check(column);
    table_->setColumnWidth(column, std::max(width_twips, 0) / qt::kTwipsPerPixel);
  }
  int32_t ClientWidth() const override {
    return table_ ? table_->viewport()->width() * qt::kTwipsPerPixel : 0;
  }
  void SetColumnAlignment(int32_t column, TextAlignment alignment) override {
    Check(column);
    QAbstractItemModel* model = table_->model();
    const int align = static_cast<int>(ToQt(alignment));
    // A table widget keeps header data only in header items, and a column
    // shown with its default number has none yet.
    auto* widget = qobject_cast<QTableWidget*>(table_.data());
    if (widget && !widget->horizontalHeaderItem(column)) {
      widget->setHorizontalHeaderItem(column, new QTableWidgetItem(QString::number(column + 1)));
    }
    model->setHeaderData(column, Qt::Horizontal, align, Qt::TextAlignmentRole);
    for (int row = 0; row < model->rowCount(); ++row) {
      model->setData(model->index(row, column), align, Qt::TextAlignmentRole);
    }
  }

 private:
  void Check(int32_t column) const {
    if (column < 0 || column >= ColumnCount()) NoSuch(u"The grid has no such column.");
  }
  QPointer<QTableView> table_;
};

}  // namespace

std::shared_ptr<TabFrames> QtTabFrames(QWidget* container) {
  return std::make_shared<ContainerFrames>(container);
}

std::shared_ptr<Grid> QtGrid(QTableView* table) { return std::make_shared<TableGrid>(table); }

}  // namespace norvik50
