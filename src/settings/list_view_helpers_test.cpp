// The list view helpers on a list view held in memory: what a host's form
// sees after each member.
#include <gtest/gtest.h>

#include <numeric>

#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

std::shared_ptr<MemoryListView> MakeList(std::vector<std::u16string> headers,
                                         std::vector<std::vector<std::u16string>> rows) {
  auto list = std::make_shared<MemoryListView>(u"lvw");
  for (auto& header : headers) list->columns.push_back({std::move(header), 1000, u""});
  for (auto& texts : rows) list->rows.push_back({std::move(texts), false, false});
  return list;
}

// The texts of `column` from the top row down.
std::vector<std::u16string> Column(const MemoryListView& list, std::size_t column) {
  std::vector<std::u16string> texts;
  for (const auto& row : list.rows) texts.push_back(row.texts.at(column));
  return texts;
}

std::vector<bool> SelectedRows(const MemoryListView& list) {
  std::vector<bool> selected;
  for (const auto& row : list.rows) selected.push_back(row.selected);
  return selected;
}

class ListViewHelpersTest : public ::testing::Test {
 protected:
  LIB lib_;
};

TEST_F(ListViewHelpersTest, ColumnsSortByTheValuesTheLocaleReads) {
  struct Case {
    const char* locale;
    int16_t sort_type;
    std::vector<std::u16string> cells;
    std::vector<std::u16string> ascending;
  };
  const Case cases[] = {
      // As text "10" would come before "9"; as German numbers "1.000" is a thousand.
      {"de-DE",
       0,
       {u"10", u"9", u"1.000", u"-2,5", u"2,25"},
       {u"-2,5", u"2,25", u"9", u"10", u"1.000"}},
      {"en-US",
       0,
       {u"10", u"9", u"1,000", u"-2.5", u"2.25"},
       {u"-2.5", u"2.25", u"9", u"10", u"1,000"}},
      // Day first in German, month first in English; the year counts most.
      {"de-DE",
       0,
       {u"05.03.2024", u"01.12.2023", u"04.03.2024", u"31.01.2024"},
       {u"01.12.2023", u"31.01.2024", u"04.03.2024", u"05.03.2024"}},
      {"en-US",
       0,
       {u"3/5/2024", u"12/1/2023", u"3/4/2024", u"1/31/2024"},
       {u"12/1/2023", u"1/31/2024", u"3/4/2024", u"3/5/2024"}},
      // Text without case, umlauts where the language puts them.
      {"de-DE",
       0,
       {u"Zander", u"äpfel", u"Birne", u"apfel"},
       {u"apfel", u"äpfel", u"Birne", u"Zander"}},
      // Asked for numbers, a cell that holds none comes after them.
      {"de-DE", 2, {u"12,50 €", u"n/a", u"3", u""}, {u"3", u"12,50 €", u"", u"n/a"}},
      // Asked for text, numbers compare as their characters.
      {"en-US", 1, {u"10", u"9", u"100"}, {u"10", u"100", u"9"}},
  };
  for (const Case& c : cases) {
    testing::ScopedLocale locale(c.locale);
    std::vector<std::vector<std::u16string>> rows;
    for (std::size_t i = 0; i < c.cells.size(); ++i) {
      rows.push_back({std::u16string(1, static_cast<char16_t>(u'a' + i)), c.cells[i]});
    }
    auto list = MakeList({u"Key", u"Value"}, rows);
    EXPECT_EQ(lib_.tklSortListView(list, 2, c.sort_type), 0) << c.locale;
    EXPECT_EQ(Column(*list, 1), c.ascending) << c.locale;
    // The rows moved whole: each key still beside its value.
    for (const auto& row : list->rows) {
      const auto at = static_cast<std::size_t>(row.texts[0][0] - u'a');
      EXPECT_EQ(row.texts[1], c.cells[at]) << c.locale;
    }
    // The second click on the same column reverses.
    EXPECT_EQ(lib_.tklSortListView(list, 2, c.sort_type), 1) << c.locale;
    std::vector<std::u16string> descending = c.ascending;
    if (c.sort_type == 2) {
      descending = {u"n/a", u"", u"12,50 €", u"3"};
    } else {
      std::reverse(descending.begin(), descending.end());
    }
    EXPECT_EQ(Column(*list, 1), descending) << c.locale;
    EXPECT_EQ(list->sort, (ListViewSort{1, true})) << c.locale;
  }
}

TEST_F(ListViewHelpersTest, AnotherColumnSortsAscendingAndEqualRowsKeepTheirOrder) {
  testing::ScopedLocale locale("en-US");
  auto list = MakeList({u"Name", u"Qty"}, {{u"b", u"2"}, {u"a", u"1"}, {u"c", u"2"}, {u"d", u"1"}});
  list->sort = {0, false};
  EXPECT_EQ(lib_.tklSortListView(list, 2), 0);
  EXPECT_EQ(Column(*list, 0), (std::vector<std::u16string>{u"a", u"d", u"b", u"c"}));
  EXPECT_EQ(lib_.tklSortListView(list, 2), 1);
  EXPECT_EQ(Column(*list, 0), (std::vector<std::u16string>{u"b", u"c", u"a", u"d"}));
  EXPECT_EQ(lib_.tklSortListView(list, 1), 0);
  EXPECT_EQ(list->sort, (ListViewSort{0, false}));
  EXPECT_EQ(ErrorOf([&] { lib_.tklSortListView(list, 3); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { lib_.tklSortListView(list, 1, 4); }), kErrInvalidCall);
}

TEST_F(ListViewHelpersTest, TypingSearchesAsAPersonExpects) {
  auto list =
      MakeList({u"Name"}, {{u"Anna"}, {u"Bernd"}, {u"bert"}, {u"Ärger"}, {u"Berta"}, {u"Carl"}});
  struct Case {
    std::u16string typed;
    int32_t start;
    int32_t found;
  };
  const Case cases[] = {
      {u"b", 1, 2},  {u"BER", 1, 2}, {u"bert", 1, 3}, {u"bert", 4, 5},
      {u"ä", 1, 4},  {u"ÄR", 1, 4},  {u"c", 6, 6},    {u"a", 6, 1},  // wraps round
      {u"bb", 2, 3}, {u"bbb", 3, 5}, {u"bb", 5, 2},                  // one letter again cycles
      {u"x", 1, 0},  {u"bx", 1, 0},  {u"", 1, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(lib_.tklSearchListItem(list, c.typed, c.start, 1, false), c.found)
        << std::string(c.typed.begin(), c.typed.end()) << " from " << c.start;
  }
  // Started at the selected row, the found row becomes the only selected one.
  list->rows[2].selected = true;
  list->rows[0].selected = true;
  EXPECT_EQ(lib_.tklSearchListItem(list, u"be"), 2);
  EXPECT_EQ(SelectedRows(*list), (std::vector<bool>{false, true, false, false, false, false}));
  EXPECT_EQ(lib_.tklSearchListItem(list, u"bb"), 3);
  EXPECT_EQ(ErrorOf([&] { lib_.tklSearchListItem(list, u"a", 7); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { lib_.tklSearchListItem(list, u"a", 0, 2); }), kErrSubscript);
}

TEST_F(ListViewHelpersTest, CheckedRowsAreSetAndListed) {
  auto list = MakeList({u"Name"}, {{u"a"}, {u"b"}, {u"c"}, {u"d"}});
  SafeArray indexes;
  EXPECT_EQ(lib_.tklListCheckedItems(list, &indexes), 0);
  EXPECT_TRUE(indexes.is_bounded());
  EXPECT_EQ(indexes.size(), 0u);
  EXPECT_TRUE(lib_.tklListItemChecked(list, 2, true));
  EXPECT_TRUE(lib_.tklListItemChecked(list, 4, true));
  EXPECT_TRUE(lib_.tklListItemChecked(list, 2));
  EXPECT_FALSE(lib_.tklListItemChecked(list, 3));
  EXPECT_EQ(lib_.tklListCheckedItems(list, &indexes), 2);
  ASSERT_EQ(indexes.size(), 2u);
  EXPECT_EQ(indexes.at(0).as_long(), 2);
  EXPECT_EQ(indexes.at(1).as_long(), 4);
  EXPECT_EQ(lib_.tklListCheckAllItems(list), 4);
  EXPECT_EQ(lib_.tklListCheckedItems(list), 4);
  EXPECT_EQ(lib_.tklListCheckAllItems(list, false), 4);
  EXPECT_EQ(lib_.tklListCheckedItems(list), 0);
  for (int32_t bad : {0, 5, -1}) {
    EXPECT_EQ(ErrorOf([&] { lib_.tklListItemChecked(list, bad, true); }), kErrSubscript) << bad;
  }
}

TEST_F(ListViewHelpersTest, SelectedRowsAreSetListedAndAsked) {
  auto list = MakeList({u"Name", u"City"},
                       {{u"Anna", u"Bonn"}, {u"Bernd", u"Köln"}, {u"Carl", u"Ulm"}, {u"Dora"}});
  EXPECT_FALSE(lib_.tklHasSelectedItem(list));
  int32_t index = -1;
  EXPECT_EQ(lib_.tklSelectedItem(list, 1, &index), u"");
  EXPECT_EQ(index, 0);

  SafeArray rows = SafeArray(0, {Variant(int32_t{3}), Variant(2.0)}, VarType::kVariant);
  EXPECT_EQ(lib_.tklListSelectItems(list, Variant(rows)), 2);
  EXPECT_EQ(lib_.tklSelectedItem(list, 2, &index), u"Köln");
  EXPECT_EQ(index, 2);
  EXPECT_EQ(lib_.tklSelItemCount(list), 2);
  SafeArray found;
  EXPECT_EQ(lib_.tklListSelectedItems(list, &found), 2);
  EXPECT_EQ(found.at(0).as_long(), 2);
  EXPECT_EQ(found.at(1).as_long(), 3);
  EXPECT_TRUE(lib_.tklIsSelected(list, Variant(u"carl")));
  EXPECT_TRUE(lib_.tklIsSelected(list, Variant(int16_t{2})));
  EXPECT_FALSE(lib_.tklIsSelected(list, Variant(u"Anna")));
  EXPECT_FALSE(lib_.tklIsSelected(list, Variant(u"Nobody")));
  EXPECT_FALSE(lib_.tklIsSelected(list, Variant(int32_t{9})));

  // One bad index: nothing changes.
  rows = SafeArray(0, {Variant(int32_t{1}), Variant(int32_t{5})}, VarType::kVariant);
  EXPECT_EQ(ErrorOf([&] { lib_.tklListSelectItems(list, Variant(rows)); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { lib_.tklListSelectItems(list, Variant(1.5)); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { lib_.tklListSelectItems(list, Variant(u"1")); }), kErrTypeMismatch);
  EXPECT_EQ(SelectedRows(*list), (std::vector<bool>{false, true, true, false}));

  EXPECT_EQ(lib_.tklListSelectItems(list, Variant(int32_t{4}), true, true), 1);
  EXPECT_EQ(SelectedRows(*list), (std::vector<bool>{false, false, false, true}));
  // Dora has no city: an empty sub-item.
  EXPECT_EQ(lib_.tklSelectedItem(list, 2), u"");
  EXPECT_EQ(lib_.tklListSelectItems(list, Variant(int32_t{4}), false), 0);
  EXPECT_FALSE(lib_.tklListItemSelected(list, 1));
  EXPECT_TRUE(lib_.tklListItemSelected(list, 1, true));
  EXPECT_TRUE(lib_.tklHasSelectedItem(list));
  EXPECT_FALSE(lib_.tklListItemSelected(list, 1, false));
  EXPECT_EQ(ErrorOf([&] { lib_.tklSelectedItem(list, 3); }), kErrSubscript);
}

TEST_F(ListViewHelpersTest, HeadersTextsAndIndexes) {
  auto list = MakeList({u"Old", u"Older", u"Oldest"}, {{u"Meier", u"12"}, {u"Müller", u"7"}});
  EXPECT_EQ(lib_.tklSetListViewHeaders(list, u"Name||Menge"), 3);
  EXPECT_EQ(lib_.tklSetListViewHeaders(list, u"Name;;Menge", u";;"), 2);
  EXPECT_EQ(list->columns[0].header, u"Name");
  EXPECT_EQ(list->columns[1].header, u"Menge");
  // A kept column keeps its width; the others went.
  EXPECT_EQ(list->columns[0].width_twips, 1000);
  EXPECT_EQ(lib_.tklGetListViewCol(list, u"MENGE"), 2);
  EXPECT_EQ(lib_.tklGetListViewCol(list, u"Old"), 0);
  EXPECT_EQ(lib_.tklListItemText(list, 2), u"Müller");
  EXPECT_EQ(lib_.tklListItemText(list, 1, 2), u"12");
  EXPECT_EQ(lib_.tklListItemIndex(list, u"MÜLLER"), 2);
  EXPECT_EQ(lib_.tklListItemIndex(list, u"7", 2), 2);
  EXPECT_EQ(lib_.tklListItemIndex(list, u"Müll"), 0);
  for (auto [row, column] : {std::pair{0, 1}, {3, 1}, {1, 0}, {1, 3}}) {
    EXPECT_EQ(ErrorOf([&] { lib_.tklListItemText(list, row, column); }), kErrSubscript)
        << row << "," << column;
  }
  EXPECT_EQ(ErrorOf([&] { lib_.tklSetListViewHeaders(list, u"a", u""); }), kErrInvalidCall);
  EXPECT_EQ(lib_.tklSetListViewHeaders(list, u""), 0);
  EXPECT_TRUE(list->columns.empty());
}

TEST_F(ListViewHelpersTest, RowsBecomeTabSeparatedText) {
  auto list = MakeList({u"Name", u"Note"},
                       {{u"Anna", u"two\tparts"}, {u"Bernd", u"line\r\nbreak"}, {u"Carl"}});
  list->rows[1].selected = true;
  EXPECT_EQ(lib_.tklCopyListView(list),
            u"Name\tNote\r\nAnna\ttwo parts\r\nBernd\tline  break\r\nCarl\t\r\n");
  EXPECT_EQ(lib_.tklCopyListView(list, false, true), u"Bernd\tline  break\r\n");
  EXPECT_EQ(lib_.tklCopyListView(MakeList({}, {})), u"");
}

TEST_F(ListViewHelpersTest, AnythingButAListViewIsRefused) {
  const std::shared_ptr<HostObject> nothing;
  EXPECT_EQ(ErrorOf([&] { lib_.tklSelItemCount(nothing); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCopyListView(std::make_shared<MemoryForm>(u"f")); }),
            kErrInvalidCall);
}

TEST(MemoryListViewTest, ARowOrderThatLosesRowsIsRefused) {
  auto list = MakeList({u"a"}, {{u"1"}, {u"2"}, {u"3"}});
  for (const std::vector<int32_t>& order :
       std::vector<std::vector<int32_t>>{{0, 1}, {0, 1, 1}, {0, 1, 3}, {0, 1, 2, 2}, {-1, 0, 1}}) {
    EXPECT_EQ(ErrorOf([&] { list->ReorderRows(order); }), kErrInvalidCall);
  }
  EXPECT_EQ(Column(*list, 0), (std::vector<std::u16string>{u"1", u"2", u"3"}));
  list->ReorderRows({2, 0, 1});
  EXPECT_EQ(Column(*list, 0), (std::vector<std::u16string>{u"3", u"1", u"2"}));
}

}  // namespace
}  // namespace norvik50
