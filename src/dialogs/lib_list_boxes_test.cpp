// The list-box and option-group helpers on lists held in memory.
#include <gtest/gtest.h>

#include <limits>

#include "norvik50/error.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

struct Row {
  const char16_t* text;
  int32_t data;
  bool chosen;
};

std::shared_ptr<MemoryList> ListOf(std::initializer_list<Row> rows, bool multi = true) {
  auto list = std::make_shared<MemoryList>(multi);
  for (const Row& row : rows) {
    list->AddItem(row.text);
    list->SetItemData(list->NewIndex(), row.data);
    if (row.chosen) list->SetSelected(list->NewIndex(), true);
  }
  return list;
}

using ::norvik50::testing::ErrorOf;

class ListBoxHelpersTest : public ::testing::Test {
 protected:
  LIB lib_;
};

TEST_F(ListBoxHelpersTest, ListBoxDataReadsTheNamedOrTheFirstChosenRow) {
  struct Case {
    const char* what;
    std::shared_ptr<MemoryList> list;
    int32_t index;
    int32_t expected;
  };
  const Case cases[] = {
      {"first chosen", ListOf({{u"a", 10, false}, {u"b", 20, true}, {u"c", 30, true}}), -1, 20},
      {"none chosen", ListOf({{u"a", 10, false}}), -1, -1},
      {"empty list", ListOf({}), -1, -1},
      {"by index", ListOf({{u"a", 10, false}, {u"b", 20, true}}), 0, 10},
      {"negative data", ListOf({{u"a", -7, true}}), -1, -7},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(lib_.tklListBoxData(c.list, c.index), c.expected) << c.what;
  }
}

TEST_F(ListBoxHelpersTest, ItemSumAddsTheChosenRowsOrAll) {
  const auto flags = ListOf({{u"read", 1, true}, {u"write", 2, false}, {u"run", 4, true}});
  EXPECT_EQ(lib_.tklListBoxItemSum(flags), 5);
  EXPECT_EQ(lib_.tklListBoxItemSum(flags, true), 7);
  EXPECT_EQ(lib_.tklListBoxItemSum(ListOf({{u"a", 3, false}})), 0);
  // Negative data count too, and a sum may pass through the Long's edge
  // as long as it ends inside.
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  EXPECT_EQ(lib_.tklListBoxItemSum(ListOf({{u"a", kMax, true}, {u"b", -1, true}})), kMax - 1);
}

TEST_F(ListBoxHelpersTest, ItemSumBeyondALongIsAnOverflow) {
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  EXPECT_EQ(ErrorOf([&] {
              lib_.tklListBoxItemSum(ListOf({{u"a", kMax, true}, {u"b", 1, true}}));
            }),
            kErrOverflow);
  EXPECT_EQ(ErrorOf([&] {
              lib_.tklListBoxItemSum(ListOf({{u"a", kMin, false}, {u"b", -1, false}}), true);
            }),
            kErrOverflow);
}

TEST_F(ListBoxHelpersTest, SelectFindsByDataOrByTextWithoutCase) {
  struct Case {
    const char* what;
    Variant find;
    int32_t row;
  };
  const Case cases[] = {
      {"data", Variant(int32_t{30}), 2},        {"data as Integer", Variant(int16_t{20}), 1},
      {"data as Double", Variant(30.0), 2},     {"fraction names no row", Variant(20.5), -1},
      {"beyond a Long", Variant(1e12), -1},     {"text", Variant(u"Grün"), 1},
      {"text other case", Variant(u"GRÜN"), 1}, {"numeric text is a text", Variant(u"30"), -1},
      {"missing text", Variant(u"Blau"), -1},
  };
  for (const Case& c : cases) {
    const auto list = ListOf({{u"Rot", 10, false}, {u"grün", 20, false}, {u"Gelb", 30, false}});
    EXPECT_EQ(lib_.tklSelectListBoxItem(list, c.find), c.row) << c.what;
    for (int32_t i = 0; i < list->Count(); ++i) {
      EXPECT_EQ(list->Selected(i), i == c.row) << c.what << " row " << i;
    }
  }
}

TEST_F(ListBoxHelpersTest, SelectInASingleChoiceListReleasesTheOtherRow) {
  const auto single = ListOf({{u"a", 1, true}, {u"b", 2, false}}, false);
  EXPECT_EQ(lib_.tklSelectListBoxItem(single, Variant(int32_t{2})), 1);
  EXPECT_FALSE(single->Selected(0));
  EXPECT_TRUE(single->Selected(1));

  const auto multi = ListOf({{u"a", 1, true}, {u"b", 2, false}}, true);
  EXPECT_EQ(lib_.tklSelectListBoxItem(multi, Variant(u"B")), 1);
  EXPECT_TRUE(multi->Selected(0));
  EXPECT_TRUE(multi->Selected(1));
  // Released again, the other row's choice untouched.
  EXPECT_EQ(lib_.tklSelectListBoxItem(multi, Variant(u"b"), false), 1);
  EXPECT_TRUE(multi->Selected(0));
  EXPECT_FALSE(multi->Selected(1));
}

TEST_F(ListBoxHelpersTest, WrongObjectsIndexesAndKeysAreRefused) {
  const auto list = ListOf({{u"a", 1, false}});
  const std::shared_ptr<HostObject> strip = std::make_shared<MemoryTabStrip>();
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"data of no list", [&] { lib_.tklListBoxData(strip); }},
      {"data of Nothing", [&] { lib_.tklListBoxData(nullptr); }},
      {"sum of no list", [&] { lib_.tklListBoxItemSum(strip); }},
      {"select in no list", [&] { lib_.tklSelectListBoxItem(strip, Variant(u"a")); }},
      {"option index of a list", [&] { lib_.tklGetOptionIndex(list); }},
  };
  for (const auto& [what, call] : cases) EXPECT_EQ(ErrorOf(call), kErrInvalidCall) << what;
  EXPECT_EQ(ErrorOf([&] { lib_.tklListBoxData(list, 1); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { lib_.tklListBoxData(list, -2); }), kErrSubscript);
  EXPECT_EQ(ErrorOf([&] { lib_.tklSelectListBoxItem(list, Variant()); }), kErrTypeMismatch);
}

TEST_F(ListBoxHelpersTest, OptionIndexIsTheCheckedButtonOrMinusOne) {
  auto group = std::make_shared<MemoryOptionGroup>();
  group->captions = {u"Netto", u"Brutto", u"Beide"};
  const std::pair<int32_t, int16_t> cases[] = {{-1, -1}, {0, 0}, {2, 2}, {3, -1}, {-5, -1}};
  for (const auto& [checked, expected] : cases) {
    group->checked = checked;
    EXPECT_EQ(lib_.tklGetOptionIndex(group), expected) << checked;
  }
}

}  // namespace
}  // namespace norvik50
