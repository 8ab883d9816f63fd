// The list view held in memory keeps its columns as a real one does.
#include "norvik50/list_view.h"

#include <gtest/gtest.h>

#include "norvik50/error.h"

namespace norvik50 {
namespace {

TEST(MemoryListViewTest, ColumnsOutsideTheViewRaiseSubscriptOutOfRange) {
  MemoryListView list(u"lvw");
  list.columns = {{u"Name", 1500, u""}, {u"City", 900, u""}};
  for (int32_t column : {-1, 2, INT32_MAX}) {
    try {
      list.SetColumnWidth(column, 100);
      ADD_FAILURE() << column;
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrSubscript) << column;
    }
    EXPECT_THROW(static_cast<void>(list.ColumnHeader(column)), Error) << column;
  }
  list.SetColumnHeader(1, u"Ort");
  EXPECT_EQ(list.ColumnHeader(1), u"Ort");
  EXPECT_EQ(list.ColumnWidth(0), 1500);
}

TEST(MemoryListViewTest, ANegativeWidthIsAHiddenColumn) {
  MemoryListView list(u"lvw");
  list.columns = {{u"Name", 1500, u""}};
  list.SetColumnWidth(0, -200);
  EXPECT_EQ(list.ColumnWidth(0), 0);
}

}  // namespace
}  // namespace norvik50
