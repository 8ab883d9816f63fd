#include "dialogs/qt/list_view_style.h"

#include <QAbstractItemModel>
#include <QEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QTableView>
#include <QToolTip>
#include <QTreeView>
#include <QVariant>

#include "norvik50/list_view.h"

namespace norvik50::qt {
namespace {

// Where the bits the view cannot show (or shows per row) are kept.
constexpr char kKeptStyle[] = "norvik50ListViewStyle";
constexpr char kCutTextTipsName[] = "norvik50.cutTextTips";

QHeaderView* HeaderOf(const QAbstractItemView& view) {
  if (const auto* tree = qobject_cast<const QTreeView*>(&view)) return tree->header();
  if (const auto* table = qobject_cast<const QTableView*>(&view)) return table->horizontalHeader();
  return nullptr;
}

// Shows a cell's full text as its tooltip when the column is too narrow
// for it, for cells without a tooltip of their own; the others are left
// to the view.
class CutTextTips final : public QObject {
 public:
  explicit CutTextTips(QAbstractItemView& view) : QObject(&view), view_(view) {
    setObjectName(QLatin1String(kCutTextTipsName));
    view.viewport()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ToolTip || watched != view_.viewport()) return false;
    const auto* help = static_cast<QHelpEvent*>(event);
    const QModelIndex index = view_.indexAt(help->pos());
    if (!index.isValid() || !index.data(Qt::ToolTipRole).toString().isEmpty()) return false;
    const QString text = index.data(Qt::DisplayRole).toString();
    const QRect cell = view_.visualRect(index);
    if (text.isEmpty() || !IsCut(index, text, cell)) {
      QToolTip::hideText();
      return true;
    }
    QToolTip::showText(help->globalPos(), text, view_.viewport(), cell);
    return true;
  }

 private:
  // The delegate's own measure of the cell (text, check box, margins)
  // against the room the column gives it.
  bool IsCut(const QModelIndex& index, const QString& text, const QRect& cell) const {
    QStyleOptionViewItem option;
    option.initFrom(&view_);
    option.rect = cell;
    option.features |= QStyleOptionViewItem::HasDisplay;
    option.text = text;
    const QSize wanted = view_.itemDelegateForIndex(index)->sizeHint(option, index);
    return wanted.width() > cell.width();
  }

  QAbstractItemView& view_;
};

CutTextTips* CutTextTipsOf(const QAbstractItemView& view) {
  for (QObject* child : view.children()) {
    if (child->objectName() == QLatin1String(kCutTextTipsName)) {
      return dynamic_cast<CutTextTips*>(child);
    }
  }
  return nullptr;
}

// A check box before every row's item, or none: rows added later get
// theirs from the host, as it fills them.
void ShowCheckBoxes(QAbstractItemView& view, bool on) {
  QAbstractItemModel* model = view.model();
  if (model == nullptr || model->columnCount() == 0) return;
  for (int row = 0, rows = model->rowCount(); row < rows; ++row) {
    const QModelIndex item = model->index(row, 0);
    const bool has = item.data(Qt::CheckStateRole).isValid();
    if (on && !has) model->setData(item, Qt::Unchecked, Qt::CheckStateRole);
    if (!on && has) model->setData(item, QVariant(), Qt::CheckStateRole);
  }
}

}  // namespace

int32_t ListViewStyleOf(const QAbstractItemView& view) {
  int32_t style = view.property(kKeptStyle).toInt() & (kListViewGridLines | kListViewCheckBoxes);
  if (view.selectionBehavior() == QAbstractItemView::SelectRows) style |= kListViewFullRowSelect;
  if (const auto* table = qobject_cast<const QTableView*>(&view)) {
    style = (style & ~kListViewGridLines) | (table->showGrid() ? kListViewGridLines : 0);
  }
  if (const QHeaderView* header = HeaderOf(view)) {
    if (header->sectionsMovable()) style |= kListViewHeaderDragDrop;
    if (!header->isVisibleTo(&view)) style |= kListViewNoHeaders;
  }
  if (view.viewport()->testAttribute(Qt::WA_Hover)) style |= kListViewHotTracking;
  if (view.selectionMode() == QAbstractItemView::SingleSelection) style |= kListViewSingleSelect;
  if (CutTextTipsOf(view) != nullptr) style |= kListViewCutTextTips;
  return style;
}

// Only the bits that change are applied, so that what a host set on the
// view itself (a multi-selection, say) stays while it is not named.
void SetListViewStyle(QAbstractItemView& view, int32_t style) {
  const int32_t changed = ListViewStyleOf(view) ^ style;
  const auto change = [changed](int32_t bit) { return (changed & bit) != 0; };
  const auto on = [style](int32_t bit) { return (style & bit) != 0; };
  view.setProperty(kKeptStyle, style);
  auto* tree = qobject_cast<QTreeView*>(&view);
  auto* table = qobject_cast<QTableView*>(&view);
  if (change(kListViewFullRowSelect)) {
    view.setSelectionBehavior(on(kListViewFullRowSelect) ? QAbstractItemView::SelectRows
                                                         : QAbstractItemView::SelectItems);
    // The focus frame around the whole row too, not around one cell.
    if (tree != nullptr) tree->setAllColumnsShowFocus(on(kListViewFullRowSelect));
  }
  if (change(kListViewGridLines) && table != nullptr) {
    table->setShowGrid(on(kListViewGridLines));
  }
  if (change(kListViewCheckBoxes)) ShowCheckBoxes(view, on(kListViewCheckBoxes));
  QHeaderView* header = HeaderOf(view);
  if (change(kListViewHeaderDragDrop) && header != nullptr) {
    header->setSectionsMovable(on(kListViewHeaderDragDrop));
    header->setFirstSectionMovable(on(kListViewHeaderDragDrop));
  }
  if (change(kListViewNoHeaders) && header != nullptr) {
    header->setVisible(!on(kListViewNoHeaders));
  }
  if (change(kListViewHotTracking)) {
    // The style paints the item under the pointer highlighted once the
    // view hears of the pointer's moves.
    view.viewport()->setAttribute(Qt::WA_Hover, on(kListViewHotTracking));
    view.setMouseTracking(on(kListViewHotTracking));
  }
  if (change(kListViewSingleSelect)) {
    view.setSelectionMode(on(kListViewSingleSelect) ? QAbstractItemView::SingleSelection
                                                    : QAbstractItemView::ExtendedSelection);
  }
  if (change(kListViewCutTextTips)) {
    if (on(kListViewCutTextTips)) {
      new CutTextTips(view);
    } else {
      delete CutTextTipsOf(view);
    }
  }
}

}  // namespace norvik50::qt
