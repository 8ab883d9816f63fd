// The tab-frame and grid helpers on real Qt widgets: frames in a container
// and in a stack behind a tab bar, table widgets' widths and alignment.
#include <gtest/gtest.h>

#include <QApplication>
#include <QFrame>
#include <QStackedWidget>
#include <QTabBar>
#include <QTableWidget>
#include <memory>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class QtTabFramesAndGridsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  LIB lib_;
};

TEST_F(QtTabFramesAndGridsTest, TheClickedTabsFrameShowsInItsContainer) {
  QWidget form;
  QTabBar bar(&form);
  for (const char* caption : {"General", "Address", "Notes"}) bar.addTab(caption);
  QWidget container(&form);
  QFrame general(&container), address(&container), notes(&container);
  // A window parented to the container is no frame.
  QWidget popup(&container, Qt::Tool);
  form.show();
  const auto strip = QtTabStrip(&bar);
  const auto frames = QtTabFrames(&container);
  EXPECT_EQ(frames->Count(), 3);
  for (int tab : {1, 2, 0}) {
    SCOPED_TRACE(tab);
    bar.setCurrentIndex(tab);
    EXPECT_EQ(lib_.tklOnTabClick(strip, frames), tab);
    EXPECT_EQ(general.isVisible(), tab == 0);
    EXPECT_EQ(address.isVisible(), tab == 1);
    EXPECT_EQ(notes.isVisible(), tab == 2);
  }
  bar.addTab("Extra");
  bar.setCurrentIndex(3);
  EXPECT_THROW(lib_.tklOnTabClick(strip, frames), Error);
  EXPECT_TRUE(general.isVisible());
}

TEST_F(QtTabFramesAndGridsTest, AStackShowsThePageOfTheClickedTab) {
  QTabBar bar;
  bar.addTab("One");
  bar.addTab("Two");
  QStackedWidget stack;
  auto* one = new QWidget;
  auto* two = new QWidget;
  stack.addWidget(one);
  stack.addWidget(two);
  bar.setCurrentIndex(1);
  EXPECT_EQ(lib_.tklOnTabClick(QtTabStrip(&bar), QtTabFrames(&stack)), 1);
  EXPECT_EQ(stack.currentWidget(), two);
}

TEST_F(QtTabFramesAndGridsTest, ATableColumnFillsTheViewportAndTakesAnAlignment) {
  QTableWidget table(2, 3);
  table.resize(400, 200);
  table.show();
  QApplication::processEvents();
  table.setColumnWidth(0, 100);
  table.setColumnWidth(1, 60);
  table.setColumnWidth(2, 20);
  const auto grid = QtGrid(&table);
  EXPECT_EQ(grid->ColumnCount(), 3);
  EXPECT_EQ(grid->ColumnWidth(0), 1500);
  const int viewport = table.viewport()->width();
  ASSERT_GT(viewport, 160);
  EXPECT_EQ(lib_.tklResizeGridCol(grid), (viewport - 160) * 15);
  EXPECT_EQ(table.columnWidth(2), viewport - 160);
  // A hidden column leaves its room to the others.
  table.setColumnHidden(1, true);
  EXPECT_EQ(lib_.tklResizeGridCol(grid, 0), (viewport - (viewport - 160)) * 15);
  EXPECT_EQ(table.columnWidth(0), 160);

  table.setItem(1, 2, new QTableWidgetItem("12,50"));
  lib_.tklAlignText(grid, 1, 2);
  EXPECT_EQ(table.item(1, 2)->textAlignment(), int(Qt::AlignRight | Qt::AlignVCenter));
  EXPECT_EQ(table.model()->headerData(2, Qt::Horizontal, Qt::TextAlignmentRole).toInt(),
            int(Qt::AlignRight | Qt::AlignVCenter));
  EXPECT_NE(table.item(1, 2)->textAlignment(), 0);
  lib_.tklAlignText(grid, 2);
  for (int column = 0; column < 3; ++column) {
    EXPECT_EQ(table.model()->index(0, column).data(Qt::TextAlignmentRole).toInt(),
              int(Qt::AlignHCenter | Qt::AlignVCenter))
        << column;
  }
  EXPECT_THROW(grid->ColumnWidth(3), Error);
}

TEST_F(QtTabFramesAndGridsTest, DestroyedWidgetsHaveNoFramesOrColumns) {
  auto container = std::make_unique<QWidget>();
  new QFrame(container.get());
  auto table = std::make_unique<QTableWidget>(1, 2);
  const auto frames = QtTabFrames(container.get());
  const auto grid = QtGrid(table.get());
  container.reset();
  table.reset();
  EXPECT_EQ(frames->Count(), 0);
  EXPECT_EQ(grid->ColumnCount(), 0);
  EXPECT_THROW(lib_.tklResizeGridCol(grid), Error);
}

}  // namespace
}  // namespace norvik50
