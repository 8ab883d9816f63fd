// The look a host gives a Qt item view with a horizontal header (QTreeView,
// QTreeWidget, QTableView) through the ListViewStyle bits of
// norvik50/list_view.h, and the tooltip that shows a cut-off cell's text.
#ifndef NORVIK50_SRC_DIALOGS_QT_LIST_VIEW_STYLE_H_
#define NORVIK50_SRC_DIALOGS_QT_LIST_VIEW_STYLE_H_

#include <cstdint>

class QAbstractItemView;

namespace norvik50::qt {

// The bits in effect: read off the view where it shows them, else as last
// set (grid lines on a tree view, check boxes).
int32_t ListViewStyleOf(const QAbstractItemView& view);
// Shows `view` with `style`; the bits it cannot show are kept for
// ListViewStyleOf.
void SetListViewStyle(QAbstractItemView& view, int32_t style);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_LIST_VIEW_STYLE_H_
