// Host windows and item views behind the window-position and column-width
// members, on real widgets of the offscreen platform and a real store.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <memory>

#include "core/library_state.h"
#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;
using qt::EnsureApplication;
constexpr int32_t HK = HKEY_CURRENT_USER;

class QtFormTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
  QtFormTest() { InstallQtDialogs(); }
  ~QtFormTest() override {
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  static QRect Available() { return QGuiApplication::primaryScreen()->availableGeometry(); }

  TempFolder temp_;
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  LIB lib_;
};

TEST_F(QtFormTest, TheNameIsTheObjectNameElseTheClassName) {
  QWidget window;
  EXPECT_EQ(QtForm(&window)->Name(), u"QWidget");
  window.setObjectName("frmCustomer");
  EXPECT_EQ(QtForm(&window)->Name(), u"frmCustomer");
  // A window that is gone has no name, so the members refuse it.
  auto gone = std::make_unique<QWidget>();
  gone->setObjectName("frmGone");
  const auto form = QtForm(gone.get());
  gone.reset();
  EXPECT_EQ(form->Name(), u"");
  EXPECT_THROW(lib_.tklSaveWindowPos(form), Error);
}

TEST_F(QtFormTest, APositionReadsBackIntoAnotherWindow) {
  QWidget first;
  first.setObjectName("frmOrders");
  first.setGeometry(40, 50, 300, 200);
  first.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&first));
  // In twips: the frame's position (offscreen draws a frame of 2 pixels)
  // and the size with the classic frame around the client area.
  const QPoint frame = first.frameGeometry().topLeft();
  const WindowPlacement placement = QtForm(&first)->Placement();
  EXPECT_EQ(placement.bounds, (TwipsRect{frame.x() * 15, frame.y() * 15, 308 * 15, 226 * 15}));
  EXPECT_EQ(placement.state, WindowState::kNormal);
  ASSERT_TRUE(lib_.tklSaveWindowPos(QtForm(&first)));
  first.hide();

  QWidget second;
  second.setObjectName("frmOrders");
  second.resize(10, 10);
  ASSERT_TRUE(lib_.tklLoadWindowPos(QtForm(&second)));
  second.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&second));
  EXPECT_EQ(second.geometry(), QRect(40, 50, 300, 200));
}

TEST_F(QtFormTest, AMaximisedWindowKeepsItsNormalGeometry) {
  QWidget window;
  window.setObjectName("frmMax");
  window.setGeometry(60, 70, 320, 240);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  window.showMaximized();
  ASSERT_TRUE(QTest::qWaitFor([&window] { return window.isMaximized(); }));
  ASSERT_TRUE(lib_.tklSaveWindowPos(QtForm(&window)));
  const std::u16string key = u"SOFTWARE\\VANTEX\\Global\\Positions\\Forms\\frmMax";
  EXPECT_EQ(lib_.tkrGetLong(HK, key, u"WindowState"), 2);
  EXPECT_EQ(lib_.tkrGetLong(HK, key, u"Width"), 328 * 15);

  QWidget next;
  next.setObjectName("frmMax");
  ASSERT_TRUE(lib_.tklLoadWindowPos(QtForm(&next)));
  next.show();
  EXPECT_TRUE(QTest::qWaitFor([&next] { return next.isMaximized(); }));
  // Restored, it returns to the stored normal geometry.
  next.showNormal();
  const QRect normal(60, 70, 320, 240);
  EXPECT_TRUE(QTest::qWaitFor([&] { return next.geometry() == normal; }))
      << next.geometry().x() << "," << next.geometry().y() << " " << next.width() << "x"
      << next.height();
}

TEST_F(QtFormTest, AWindowStoredOffScreenComesBackOnTheScreen) {
  const QRect screen = Available();
  const std::u16string key = u"SOFTWARE\\VANTEX\\Global\\Positions\\Forms\\frmLost";
  // Stored on a monitor far to the right that is not there today.
  const int32_t left = (screen.right() + 2000) * 15;
  for (const auto& [name, value] : std::initializer_list<std::pair<const char16_t*, int32_t>>{
           {u"Left", left}, {u"Top", 100 * 15}, {u"Width", 400 * 15}, {u"Height", 300 * 15}}) {
    ASSERT_TRUE(lib_.tkrSetValue(HK, key, name, Variant(value)));
  }
  QWidget window;
  window.setObjectName("frmLost");
  ASSERT_TRUE(lib_.tklLoadWindowPos(QtForm(&window)));
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
  // Moved to the screen's right edge, whole and at its height.
  EXPECT_EQ(window.frameGeometry().topLeft(), QPoint(screen.right() + 1 - 400, 100));
  EXPECT_EQ(window.size(), QSize(392, 274));
  EXPECT_TRUE(screen.contains(window.geometry()));
}

TEST_F(QtFormTest, ColumnWidthsAndHeadersOfATreeAndATable) {
  QWidget window;
  window.setObjectName("frmViews");
  QTreeWidget tree(&window);
  tree.setObjectName("lvwTree");
  tree.setColumnCount(3);
  tree.setHeaderLabels({"Name", "City", "Zip"});
  tree.header()->setStretchLastSection(false);
  QTableView table(&window);
  table.setObjectName("lvwTable");
  QStandardItemModel model(2, 2);
  model.setHorizontalHeaderLabels({"A", "B"});
  table.setModel(&model);
  window.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));

  const auto tree_view = QtListView(&tree);
  const auto table_view = QtListView(&table);
  ASSERT_EQ(tree_view->ColumnCount(), 3);
  ASSERT_EQ(table_view->ColumnCount(), 2);
  EXPECT_EQ(tree_view->ColumnHeader(1), u"City");
  tree_view->SetColumnHeader(1, u"Ort");
  EXPECT_EQ(tree.headerItem()->text(1), "Ort");
  table_view->SetColumnHeader(0, u"Erste");
  EXPECT_EQ(model.horizontalHeaderItem(0)->text(), "Erste");
  EXPECT_THROW(tree_view->ColumnWidth(3), Error);
  EXPECT_THROW(table_view->SetColumnHeader(-1, u"x"), Error);

  tree.header()->resizeSection(0, 120);
  tree.header()->resizeSection(1, 80);
  tree.header()->hideSection(2);
  table.horizontalHeader()->resizeSection(1, 55);
  EXPECT_EQ(tree_view->ColumnWidth(0), 1800);
  EXPECT_EQ(tree_view->ColumnWidth(2), 0);  // hidden
  ASSERT_TRUE(lib_.tklSaveColWidths(QtForm(&window), tree_view));
  ASSERT_TRUE(lib_.tklSaveColWidths(QtForm(&window), table_view));

  // The user moves a column: widths stay with the column, not the place.
  tree.header()->moveSection(0, 1);
  tree.header()->resizeSection(0, 10);
  tree.header()->resizeSection(1, 10);
  table.horizontalHeader()->resizeSection(1, 10);
  EXPECT_TRUE(lib_.tklLoadColWidths(QtForm(&window), tree_view));
  EXPECT_TRUE(lib_.tklLoadColWidths(QtForm(&window), table_view));
  EXPECT_EQ(tree.header()->sectionSize(0), 120);
  EXPECT_EQ(tree.header()->sectionSize(1), 80);
  EXPECT_EQ(table.horizontalHeader()->sectionSize(1), 55);
  EXPECT_EQ(lib_.tkrGetLong(HK, u"SOFTWARE\\VANTEX\\Global\\Positions\\Forms\\frmViews\\lvwTable",
                            u"Col2"),
            55 * 15);
}

}  // namespace
}  // namespace norvik50
