// The look and the tooltips of real Qt item views set through the members:
// what the widgets then do, and what a person sees.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QHelpEvent>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QToolTip>
#include <QTreeWidget>
#include <functional>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

class QtListViewStyleTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }

  void SetUp() override {
    tree_.setColumnCount(2);
    tree_.setHeaderLabels({"Kunde", "Ort"});
    for (const char* name : {"Meier & Söhne Maschinenbau", "Adler", "Zorn"}) {
      new QTreeWidgetItem(&tree_, {name, "Kiel"});
    }
  }
  // Asks the viewport for the tooltip at the middle of a cell, as the
  // pointer resting there does; answers the text shown ("" for none).
  static QString TooltipAt(QAbstractItemView& view, const QModelIndex& index) {
    // A tooltip goes after a moment, not at once: wait until it has.
    QToolTip::hideText();
    if (!QTest::qWaitFor([] { return !QToolTip::isVisible(); }, 2000)) return "(still shown)";
    const QPoint at = view.visualRect(index).center();
    QHelpEvent help(QEvent::ToolTip, at, view.viewport()->mapToGlobal(at));
    QApplication::sendEvent(view.viewport(), &help);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
  }

  QTreeWidget tree_;
  std::shared_ptr<ListView> view_ = QtListView(&tree_);
  LIB lib_;
};

TEST_F(QtListViewStyleTest, EachBitChangesWhatTheTreeWidgetDoes) {
  struct Case {
    const char* bit;
    int32_t style;
    std::function<bool(const QTreeWidget&)> shown;
  };
  const Case cases[] = {
      {"full-row select", kListViewFullRowSelect,
       [](const QTreeWidget& t) {
         return t.selectionBehavior() == QAbstractItemView::SelectRows && t.allColumnsShowFocus();
       }},
      {"check boxes", kListViewCheckBoxes,
       [](const QTreeWidget& t) {
         for (int row = 0; row < t.topLevelItemCount(); ++row) {
           if (!t.topLevelItem(row)->data(0, Qt::CheckStateRole).isValid()) return false;
         }
         return true;
       }},
      {"header drag and drop", kListViewHeaderDragDrop,
       [](const QTreeWidget& t) {
         return t.header()->sectionsMovable() && t.header()->isFirstSectionMovable();
       }},
      {"hot tracking", kListViewHotTracking,
       [](const QTreeWidget& t) {
         return t.viewport()->testAttribute(Qt::WA_Hover) && t.hasMouseTracking();
       }},
      {"no headers", kListViewNoHeaders, [](const QTreeWidget& t) { return t.isHeaderHidden(); }},
      {"single selection", kListViewSingleSelect,
       [](const QTreeWidget& t) {
         return t.selectionMode() == QAbstractItemView::SingleSelection;
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.bit);
    lib_.tklSetListViewStyle(view_, c.style, false);
    ASSERT_FALSE(c.shown(tree_));
    EXPECT_EQ(lib_.tklSetListViewStyle(view_, c.style) & c.style, c.style);
    EXPECT_TRUE(c.shown(tree_));
    EXPECT_EQ(lib_.tklSetListViewStyle(view_, c.style, false) & c.style, 0);
    EXPECT_FALSE(c.shown(tree_));
  }
}

TEST_F(QtListViewStyleTest, ATreeKeepsGridLinesItCannotDraw) {
  EXPECT_EQ(lib_.tklSetListViewStyle(view_, kListViewGridLines) & kListViewGridLines,
            kListViewGridLines);
  EXPECT_EQ(view_->Style() & kListViewGridLines, kListViewGridLines);
}

TEST_F(QtListViewStyleTest, WhatTheHostSetItselfStaysWhileNoBitNamesIt) {
  tree_.setSelectionMode(QAbstractItemView::MultiSelection);
  tree_.topLevelItem(1)->setCheckState(0, Qt::Checked);
  lib_.tklSetListViewStyle(view_, kListViewGridLines | kListViewHeaderDragDrop);
  EXPECT_EQ(tree_.selectionMode(), QAbstractItemView::MultiSelection);
  lib_.tklSetListViewStyle(view_, kListViewCheckBoxes);  // boxes are there for row 2 already
  EXPECT_EQ(tree_.topLevelItem(1)->checkState(0), Qt::Checked);
  EXPECT_EQ(tree_.topLevelItem(0)->checkState(0), Qt::Unchecked);
}

TEST_F(QtListViewStyleTest, ATableViewDrawsGridLinesAndHidesItsHeader) {
  QStandardItemModel model(2, 2);
  model.setItem(0, 0, new QStandardItem("Meier"));
  model.setItem(1, 0, new QStandardItem("Adler"));
  QTableView table;
  table.setModel(&model);
  const auto view = QtListView(&table);
  ASSERT_TRUE(table.showGrid());
  lib_.tklSetListViewStyle(view, kListViewGridLines, false);
  EXPECT_FALSE(table.showGrid());
  lib_.tklSetListViewStyle(view, kListViewGridLines | kListViewNoHeaders | kListViewCheckBoxes);
  EXPECT_TRUE(table.showGrid());
  EXPECT_FALSE(table.horizontalHeader()->isVisibleTo(&table));
  EXPECT_EQ(model.item(1, 0)->checkState(), Qt::Unchecked);
  lib_.tklListItemChecked(view, 2, true);
  EXPECT_EQ(model.item(1, 0)->checkState(), Qt::Checked);
  lib_.tklSetListViewStyle(view, kListViewCheckBoxes, false);
  EXPECT_FALSE(model.index(1, 0).data(Qt::CheckStateRole).isValid());
}

TEST_F(QtListViewStyleTest, ATooltipIsWhatTheModelAndThePointerShow) {
  tree_.resize(400, 160);
  tree_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree_));
  EXPECT_EQ(lib_.tklShowListViewTooltip(view_, 2, 2, u"Hafen, Liegeplatz 3"),
            u"Hafen, Liegeplatz 3");
  EXPECT_EQ(tree_.topLevelItem(1)->toolTip(1), "Hafen, Liegeplatz 3");
  const QModelIndex cell = tree_.model()->index(1, 1);
  EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), "Hafen, Liegeplatz 3");
  EXPECT_EQ(TooltipAt(tree_, cell), "Hafen, Liegeplatz 3");
  EXPECT_EQ(TooltipAt(tree_, tree_.model()->index(1, 0)), "");
  lib_.tklShowListViewTooltip(view_, 2, 2, u"");
  EXPECT_EQ(TooltipAt(tree_, cell), "");
  EXPECT_EQ(ErrorOf([&] { lib_.tklShowListViewTooltip(view_, 4, 1, u"x"); }), kErrSubscript);
}

TEST_F(QtListViewStyleTest, ACutOffCellShowsItsFullTextWhenAsked) {
  tree_.resize(400, 160);
  tree_.header()->resizeSection(0, 70);  // "Meier & Söhne Maschinenbau" is cut off
  tree_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree_));
  const QModelIndex cut = tree_.model()->index(0, 0);
  const QModelIndex whole = tree_.model()->index(1, 1);
  EXPECT_EQ(TooltipAt(tree_, cut), "") << "not without the bit";
  lib_.tklSetListViewStyle(view_, kListViewCutTextTips);
  EXPECT_EQ(TooltipAt(tree_, cut), "Meier & Söhne Maschinenbau");
  EXPECT_EQ(TooltipAt(tree_, whole), "") << "a cell shown whole needs none";
  lib_.tklShowListViewTooltip(view_, 1, 1, u"Stammkunde");
  EXPECT_EQ(TooltipAt(tree_, cut), "Stammkunde") << "a cell's own tooltip comes first";
  lib_.tklShowListViewTooltip(view_, 1, 1, u"");
  tree_.header()->resizeSection(0, 380);
  EXPECT_EQ(TooltipAt(tree_, cut), "") << "widened, the cell is whole";
  lib_.tklSetListViewStyle(view_, kListViewCutTextTips, false);
  tree_.header()->resizeSection(0, 70);
  EXPECT_EQ(TooltipAt(tree_, cut), "");
}

TEST_F(QtListViewStyleTest, AModelWithoutTooltipsRefusesOne) {
  QStringListModel model({"Meier", "Adler"});
  QTreeView list;
  list.setModel(&model);
  EXPECT_EQ(ErrorOf([&] { lib_.tklShowListViewTooltip(QtListView(&list), 1, 1, u"x"); }),
            kErrInvalidCall);
}

TEST_F(QtListViewStyleTest, AStyledTableRendersGridLinesFullRowsAndCheckBoxes) {
  QStandardItemModel model(0, 3);
  model.setHorizontalHeaderLabels({"Kunde", "Betrag", "Datum"});
  const char* rows[][3] = {{"Meier & Söhne", "1.250,00", "05.03.2024"},
                           {"Adler GmbH", "99,50", "28.02.2024"},
                           {"Zorn KG", "-3,00", "01.12.2023"},
                           {"Bach AG", "200,00", "15.03.2024"}};
  for (const auto& row : rows) {
    model.appendRow(
        {new QStandardItem(row[0]), new QStandardItem(row[1]), new QStandardItem(row[2])});
  }
  QTableView table;
  table.setModel(&model);
  table.verticalHeader()->hide();
  table.resize(420, 170);
  const auto view = QtListView(&table);
  lib_.tklSetListViewStyle(view, kListViewFullRowSelect | kListViewGridLines | kListViewCheckBoxes);
  lib_.tklListItemChecked(view, 1, true);
  lib_.tklListItemChecked(view, 3, true);
  lib_.tklListItemSelected(view, 2, true);
  for (int column = 0; column < 3; ++column) table.horizontalHeader()->resizeSection(column, 130);
  table.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&table));
  table.setFocus();
  const QImage picture = table.grab().toImage();
  const QString folder = qEnvironmentVariable("NORVIK50_PICTURES_DIR");
  if (!folder.isEmpty()) {
    QDir().mkpath(folder);
    ASSERT_TRUE(picture.save(folder + "/list_view_styled.png"));
  }
  // The whole selected row is painted in the highlight, its last cell too.
  const QRect last_cell = table.visualRect(model.index(1, 2));
  const QPoint inside = last_cell.topRight() + QPoint(-4, 4) + table.viewport()->pos();
  EXPECT_EQ(picture.pixelColor(inside),
            table.palette().color(QPalette::Active, QPalette::Highlight));
}

}  // namespace
}  // namespace norvik50
