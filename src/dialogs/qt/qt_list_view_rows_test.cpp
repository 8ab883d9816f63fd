// The list view helpers on real Qt item views: a QTreeWidget with check
// boxes and a multi-selection, and a QTableView over a QStandardItemModel.
#include <gtest/gtest.h>

#include <QDir>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

struct Order {
  const char* customer;
  const char* amount;
  const char* date;
};

class QtListViewRowsTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }

  // A list view as a host's form fills it, in `locale`'s notation.
  void Fill(const std::vector<Order>& orders) {
    tree_.setColumnCount(3);
    tree_.setHeaderLabels({"Customer", "Amount", "Date"});
    tree_.setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree_.setRootIsDecorated(false);
    for (const Order& order : orders) {
      auto* item = new QTreeWidgetItem(&tree_, {order.customer, order.amount, order.date});
      item->setCheckState(0, Qt::Unchecked);
    }
  }
  QStringList ColumnOf(int column) const {
    QStringList texts;
    for (int row = 0; row < tree_.topLevelItemCount(); ++row) {
      texts << tree_.topLevelItem(row)->text(column);
    }
    return texts;
  }

  QTreeWidget tree_;
  std::shared_ptr<ListView> view_ = QtListView(&tree_);
  LIB lib_;
};

TEST_F(QtListViewRowsTest, NumbersAndDatesSortAsValuesInBothLocales) {
  struct Case {
    const char* locale;
    std::vector<Order> orders;
    QStringList by_amount;
    QStringList by_date;
  };
  const Case cases[] = {
      {"de-DE",
       {{"Meier", "1.250,00", "05.03.2024"},
        {"Adler", "99,5", "28.02.2024"},
        {"Zorn", "-3", "01.12.2023"},
        {"Bach", "200", "15.03.2024"}},
       {"-3", "99,5", "200", "1.250,00"},
       {"01.12.2023", "28.02.2024", "05.03.2024", "15.03.2024"}},
      {"en-US",
       {{"Meier", "1,250.00", "3/5/2024"},
        {"Adler", "99.5", "2/28/2024"},
        {"Zorn", "-3", "12/1/2023"},
        {"Bach", "200", "3/15/2024"}},
       {"-3", "99.5", "200", "1,250.00"},
       {"12/1/2023", "2/28/2024", "3/5/2024", "3/15/2024"}},
  };
  for (const Case& c : cases) {
    testing::ScopedLocale locale(c.locale);
    tree_.clear();
    Fill(c.orders);
    EXPECT_EQ(lib_.tklSortListView(view_, 2), 0) << c.locale;
    EXPECT_EQ(ColumnOf(1), c.by_amount) << c.locale;
    EXPECT_EQ(lib_.tklSortListView(view_, 3), 0) << c.locale;
    EXPECT_EQ(ColumnOf(2), c.by_date) << c.locale;
    EXPECT_EQ(lib_.tklSortListView(view_, 3), 1) << c.locale;
    QStringList reversed(c.by_date.rbegin(), c.by_date.rend());
    EXPECT_EQ(ColumnOf(2), reversed) << c.locale;
    // The header shows it.
    EXPECT_TRUE(tree_.header()->isSortIndicatorShown());
    EXPECT_EQ(tree_.header()->sortIndicatorSection(), 2);
    EXPECT_EQ(tree_.header()->sortIndicatorOrder(), Qt::DescendingOrder);
    EXPECT_EQ(lib_.tklSortListView(view_, 1), 0) << c.locale;
    EXPECT_EQ(ColumnOf(0), QStringList({"Adler", "Bach", "Meier", "Zorn"})) << c.locale;
  }
}

TEST_F(QtListViewRowsTest, CheckedAndSelectedItemsFollowTheWidget) {
  testing::ScopedLocale locale("en-US");
  Fill({{"Meier", "3", ""}, {"Adler", "1", ""}, {"Zorn", "2", ""}});
  tree_.topLevelItem(2)->setCheckState(0, Qt::Checked);
  tree_.topLevelItem(1)->setSelected(true);
  EXPECT_EQ(lib_.tklListCheckedItems(view_), 1);
  EXPECT_TRUE(lib_.tklListItemChecked(view_, 3));
  EXPECT_TRUE(lib_.tklListItemChecked(view_, 1, true));
  EXPECT_EQ(tree_.topLevelItem(0)->checkState(0), Qt::Checked);
  EXPECT_EQ(lib_.tklListCheckAllItems(view_, false), 3);
  EXPECT_EQ(tree_.topLevelItem(2)->checkState(0), Qt::Unchecked);

  EXPECT_EQ(lib_.tklSelectedItem(view_), u"Adler");
  EXPECT_EQ(lib_.tklListSelectItems(view_, Variant(int32_t{3})), 2);
  EXPECT_TRUE(tree_.topLevelItem(2)->isSelected());
  // Checked and selected rows move with their row when sorted.
  tree_.topLevelItem(0)->setCheckState(0, Qt::Checked);
  lib_.tklSortListView(view_, 2);
  EXPECT_EQ(ColumnOf(0), QStringList({"Adler", "Zorn", "Meier"}));
  EXPECT_TRUE(tree_.topLevelItem(0)->isSelected());
  EXPECT_TRUE(tree_.topLevelItem(1)->isSelected());
  EXPECT_FALSE(tree_.topLevelItem(2)->isSelected());
  EXPECT_EQ(tree_.topLevelItem(2)->checkState(0), Qt::Checked);

  // The typed search moves the selection.
  EXPECT_EQ(lib_.tklSearchListItem(view_, u"me"), 3);
  EXPECT_EQ(tree_.selectedItems(), QList<QTreeWidgetItem*>{tree_.topLevelItem(2)});
  EXPECT_EQ(lib_.tklCopyListView(view_, true, true), u"Customer\tAmount\tDate\r\nMeier\t3\t\r\n");
  EXPECT_EQ(lib_.tklSetListViewHeaders(view_, u"Kunde|Betrag"), 2);
  EXPECT_EQ(tree_.headerItem()->text(1), "Betrag");
}

TEST(QtListViewModelTest, ATableOverAStandardModelSortsAndAnotherModelSaysWhyNot) {
  qt::EnsureApplication();
  testing::ScopedLocale locale("de-DE");
  QStandardItemModel model(0, 2);
  for (const auto& [name, amount] :
       std::vector<std::pair<QString, QString>>{{"b", "10"}, {"a", "9"}, {"c", "1.000"}}) {
    model.appendRow({new QStandardItem(name), new QStandardItem(amount)});
  }
  QTableView table;
  table.setModel(&model);
  table.selectionModel()->select(model.index(1, 0),
                                 QItemSelectionModel::Select | QItemSelectionModel::Rows);
  LIB lib;
  const auto view = QtListView(&table);
  EXPECT_EQ(lib.tklSortListView(view, 2), 0);
  EXPECT_EQ(model.item(0, 0)->text(), "a");
  EXPECT_EQ(model.item(2, 1)->text(), "1.000");
  // The selection went with its row.
  EXPECT_EQ(lib.tklListSelectedItems(view), 1);
  EXPECT_EQ(lib.tklSelectedItem(view), u"a");

  // A model that cannot move its rows leaves them where they are.
  QStringListModel names({"b", "a"});
  QTreeView plain;
  plain.setModel(&names);
  const auto plain_view = QtListView(&plain);
  EXPECT_EQ(ErrorOf([&] { lib.tklSortListView(plain_view, 1); }), kErrInvalidCall);
  EXPECT_EQ(names.stringList(), QStringList({"b", "a"}));
  EXPECT_EQ(lib.tklListItemIndex(plain_view, u"A"), 2);
}

TEST_F(QtListViewRowsTest, ASortedListViewRendersWithItsSortIndicator) {
  testing::ScopedLocale locale("de-DE");
  Fill({{"Meier & Söhne", "1.250,00", "05.03.2024"},
        {"Adler GmbH", "99,50", "28.02.2024"},
        {"Zorn KG", "-3,00", "01.12.2023"},
        {"Bach AG", "200,00", "15.03.2024"},
        {"Özdemir", "12,00", "02.01.2024"}});
  tree_.topLevelItem(1)->setCheckState(0, Qt::Checked);
  tree_.resize(420, 180);
  for (int column = 0; column < 3; ++column) tree_.header()->resizeSection(column, 130);
  tree_.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree_));
  lib_.tklSortListView(view_, 2);
  lib_.tklSortListView(view_, 2);
  lib_.tklSearchListItem(view_, u"ö");
  const QString folder = qEnvironmentVariable("NORVIK50_PICTURES_DIR");
  if (!folder.isEmpty()) {
    QDir().mkpath(folder);
    ASSERT_TRUE(tree_.grab().save(folder + "/list_view_sorted.png"));
  }
  EXPECT_EQ(ColumnOf(1), QStringList({"1.250,00", "200,00", "99,50", "12,00", "-3,00"}));
}

}  // namespace
}  // namespace norvik50
