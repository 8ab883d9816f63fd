// The look and the tooltips of a list view through the members, on the
// list view held in memory (the Qt views have tests of their own).
#include <gtest/gtest.h>

#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "testing/error_number.h"

namespace norvik50 {
namespace {

using testing::ErrorOf;

class ListViewStyleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    list_->columns = {{u"Kunde", 1440, u""}, {u"Betrag", 900, u""}, {u"Datum", 900, u""}};
    list_->rows = {{{u"Meier", u"10"}, false, false}, {{u"Adler"}, true, false}};
  }
  std::shared_ptr<MemoryListView> list_ = std::make_shared<MemoryListView>(u"lvw");
  LIB lib_;
};

TEST_F(ListViewStyleTest, BitsAreTurnedOnAndOffOneCallAtATime) {
  struct Step {
    int32_t bits;
    bool on;
    int32_t style;
  };
  const Step steps[] = {
      {0, true, 0},
      {kListViewFullRowSelect | kListViewGridLines, true, 3},
      {kListViewCheckBoxes, true, 7},
      {kListViewGridLines | kListViewNoHeaders, false, 5},  // a bit not set stays off
      {0, false, 5},                                        // nothing named, nothing changed
      {kListViewAllStyles, true, 255},
      {kListViewAllStyles & ~kListViewCutTextTips, false, 128},
  };
  for (const Step& step : steps) {
    EXPECT_EQ(lib_.tklSetListViewStyle(list_, step.bits, step.on), step.style)
        << step.bits << " " << step.on;
    EXPECT_EQ(list_->style, step.style);
  }
}

TEST_F(ListViewStyleTest, UnknownBitsAndOtherObjectsAreRefused) {
  list_->style = kListViewGridLines;
  for (int32_t bits : {256, -1, INT32_MIN, 1 | 512}) {
    EXPECT_EQ(ErrorOf([&] { lib_.tklSetListViewStyle(list_, bits); }), kErrInvalidCall) << bits;
  }
  EXPECT_EQ(list_->style, kListViewGridLines) << "a refused call changes nothing";
  EXPECT_EQ(ErrorOf([&] { lib_.tklSetListViewStyle(nullptr, 1); }), kErrInvalidCall);
}

TEST_F(ListViewStyleTest, TooltipsBelongToOneCellEach) {
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 1, 2, u"netto"), u"netto");
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 1, 1), u"") << "the item keeps none";
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 2, 2), u"") << "another row keeps none";
  // A sub-item the row has no text for may still have a tooltip.
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 2, 3, u"unbekannt"), u"unbekannt");
  EXPECT_EQ(list_->rows[1].tooltips, (std::vector<std::u16string>{u"", u"", u"unbekannt"}));
  // "" takes it away; reading does not change a row.
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 1, 2, u""), u"");
  EXPECT_EQ(list_->rows[0].tooltips, (std::vector<std::u16string>{u"", u""}));
  EXPECT_EQ(lib_.tklShowListViewTooltip(list_, 1, 3, u""), u"");
  EXPECT_EQ(list_->rows[0].tooltips.size(), 2u) << "taking away none grows nothing";
}

TEST_F(ListViewStyleTest, TooltipsOutsideTheListRaiseSubscriptOutOfRange) {
  struct Case {
    int32_t index;
    int32_t column;
  };
  for (const Case c : {Case{0, 1}, Case{3, 1}, Case{1, 0}, Case{1, 4}}) {
    EXPECT_EQ(ErrorOf([&] { lib_.tklShowListViewTooltip(list_, c.index, c.column, u"x"); }),
              kErrSubscript)
        << c.index << "," << c.column;
  }
  for (const MemoryListView::Row& row : list_->rows) EXPECT_TRUE(row.tooltips.empty());
}

}  // namespace
}  // namespace norvik50
