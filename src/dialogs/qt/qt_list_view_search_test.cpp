// The typed search on real Qt item views reads a copy of the column the
// model keeps; whatever changes the rows' texts or places must be seen by
// the next search, and what does not must leave the copy alone.
#include <gtest/gtest.h>

#include <QStandardItemModel>
#include <QTableView>
#include <QTreeWidget>
#include <functional>

#include "dialogs/qt/column_text_cache.h"
#include "dialogs/qt/qt_application.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

class QtListViewSearchTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }

  void SetUp() override {
    tree_.setColumnCount(2);
    tree_.setHeaderLabels({"Kunde", "Ort"});
    for (const char* name : {"Kunde Adler", "Kunde Bach", "Kunde Meier", "Kunde Zorn"}) {
      auto* item = new QTreeWidgetItem(&tree_, {name, "Kiel"});
      item->setCheckState(0, Qt::Unchecked);
    }
  }
  // The row found for `typed` from the top, without selecting it.
  int32_t Find(const char16_t* typed) { return lib_.tklSearchListItem(view_, typed, 1, 1, false); }
  int32_t Fills() { return qt::ColumnTextCache::Of(*tree_.model()).fills(); }

  QTreeWidget tree_;
  std::shared_ptr<ListView> view_ = QtListView(&tree_);
  LIB lib_;
};

TEST_F(QtListViewSearchTest, EveryChangeOfTextsOrOrderIsSeenByTheNextSearch) {
  struct Case {
    const char* change;
    std::function<void(QTreeWidget&)> apply;
    const char16_t* typed;
    int32_t found;
  };
  const Case cases[] = {
      {"a text changed", [](QTreeWidget& t) { t.topLevelItem(1)->setText(0, "Kunde Zabel"); },
       u"kunde za", 2},
      {"the old text is gone", [](QTreeWidget& t) { t.topLevelItem(1)->setText(0, "Kunde Zabel"); },
       u"kunde b", 0},
      {"sorted descending", [](QTreeWidget& t) { t.sortItems(0, Qt::DescendingOrder); }, u"kunde a",
       4},
      {"a row on top",
       [](QTreeWidget& t) { t.insertTopLevelItem(0, new QTreeWidgetItem({"Kunde Abt"})); },
       u"kunde a", 1},
      {"a row at the end",
       [](QTreeWidget& t) { t.addTopLevelItem(new QTreeWidgetItem({"Kunde Ypsilon"})); },
       u"kunde y", 5},
      {"a row taken out", [](QTreeWidget& t) { delete t.takeTopLevelItem(0); }, u"kunde m", 2},
      {"all rows cleared, one added",
       [](QTreeWidget& t) {
         t.clear();
         t.addTopLevelItem(new QTreeWidgetItem({"Kunde Neu"}));
       },
       u"kunde", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.change);
    tree_.clear();
    SetUp();
    ASSERT_EQ(Find(u"kunde m"), 3);  // the copy is made before the change
    c.apply(tree_);
    EXPECT_EQ(Find(c.typed), c.found);
  }
}

TEST_F(QtListViewSearchTest, SortingThroughTheLibraryMovesTheCopiedRowsToo) {
  ASSERT_EQ(Find(u"kunde z"), 4);
  lib_.tklSortListView(view_, 1);  // ascending already: nothing moves
  lib_.tklSortListView(view_, 1);  // the second click: descending
  EXPECT_EQ(Find(u"kunde z"), 1);
  EXPECT_EQ(Find(u"kunde a"), 4);
}

TEST_F(QtListViewSearchTest, SearchingAgainCheckingOrSelectingKeepsTheCopy) {
  ASSERT_EQ(Find(u"kunde b"), 2);
  ASSERT_EQ(Fills(), 1);
  EXPECT_EQ(lib_.tklSearchListItem(view_, u"kunde m"), 3);  // selects the row
  lib_.tklListCheckAllItems(view_, true);
  EXPECT_EQ(Fills(), 1) << "checking";
  tree_.topLevelItem(0)->setText(1, "Kiel-Holtenau");  // another column
  EXPECT_EQ(Find(u"kunde z"), 4);
  EXPECT_EQ(Fills(), 1) << "another column";
  // A second adapter on the same widget finds the model's copy.
  EXPECT_EQ(lib_.tklSearchListItem(QtListView(&tree_), u"kunde z", 1, 1, false), 4);
  EXPECT_EQ(Fills(), 1);
  // The column changed is copied again when it is searched.
  EXPECT_EQ(lib_.tklSearchListItem(view_, u"kiel-", 1, 2, false), 1);
  EXPECT_EQ(Fills(), 2);
}

TEST_F(QtListViewSearchTest, AStandardModelBehindATableViewIsWatchedAsWell) {
  QStandardItemModel model(0, 1);
  for (const char* name : {"Adler", "Bach", "Meier"}) model.appendRow(new QStandardItem(name));
  QTableView table;
  table.setModel(&model);
  const auto view = QtListView(&table);
  const auto find = [&](const char16_t* typed) {
    return lib_.tklSearchListItem(view, typed, 1, 1, false);
  };
  ASSERT_EQ(find(u"me"), 3);
  model.setData(model.index(0, 0), "Mehl");
  EXPECT_EQ(find(u"me"), 1);
  model.removeRow(0);
  EXPECT_EQ(find(u"me"), 2);
  model.insertRow(0, new QStandardItem("Meise"));
  EXPECT_EQ(find(u"mei"), 1);
  model.sort(0, Qt::DescendingOrder);  // Meise, Meier, Bach
  EXPECT_EQ(find(u"b"), 3);
}

}  // namespace
}  // namespace norvik50
