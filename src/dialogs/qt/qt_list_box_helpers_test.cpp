// The list-box and option-group helpers on real Qt widgets: selection,
// check boxes, combo boxes and button groups.
#include <gtest/gtest.h>

#include <QButtonGroup>
#include <QComboBox>
#include <QListWidget>
#include <QRadioButton>
#include <QSignalSpy>
#include <memory>

#include "dialogs/qt/qt_application.h"
#include "norvik50/error.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class QtListBoxHelpersTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { qt::EnsureApplication(); }
  // A list of the flags 1, 2, 4, 8 under the texts a ... d.
  static void Fill(QListWidget& list, bool check_boxes) {
    int data = 1;
    for (const char* text : {"a", "b", "c", "d"}) {
      auto* row = new QListWidgetItem(QString::fromLatin1(text), &list);
      row->setData(Qt::UserRole, data);
      data *= 2;
      if (check_boxes) {
        row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
        row->setCheckState(Qt::Unchecked);
      }
    }
  }
  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  LIB lib_;
};

TEST_F(QtListBoxHelpersTest, ASingleSelectionListChoosesOneRowAndMakesItCurrent) {
  QListWidget widget;
  Fill(widget, false);
  const auto list = QtListControl(&widget);
  QSignalSpy current(&widget, &QListWidget::currentRowChanged);
  EXPECT_FALSE(list->MultiSelect());
  EXPECT_EQ(lib_.tklListBoxData(list), -1);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(int32_t{4})), 2);
  EXPECT_EQ(widget.currentRow(), 2);
  EXPECT_TRUE(widget.item(2)->isSelected());
  EXPECT_EQ(current.count(), 1);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(u"B")), 1);
  EXPECT_FALSE(widget.item(2)->isSelected());
  EXPECT_EQ(widget.selectedItems().size(), 1);
  EXPECT_EQ(lib_.tklListBoxData(list), 2);
  EXPECT_EQ(lib_.tklListBoxItemSum(list), 2);
  EXPECT_EQ(lib_.tklListBoxItemSum(list, true), 15);
}

TEST_F(QtListBoxHelpersTest, AMultiSelectionListAddsToItsSelection) {
  QListWidget widget;
  widget.setSelectionMode(QAbstractItemView::ExtendedSelection);
  Fill(widget, false);
  const auto list = QtListControl(&widget);
  EXPECT_TRUE(list->MultiSelect());
  widget.item(0)->setSelected(true);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(int32_t{8})), 3);
  EXPECT_EQ(lib_.tklListBoxItemSum(list), 9);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(u"a"), false), 0);
  EXPECT_EQ(lib_.tklListBoxItemSum(list), 8);
  EXPECT_EQ(lib_.tklListBoxData(list), 8);
}

TEST_F(QtListBoxHelpersTest, RowsWithCheckBoxesAreChosenByTheirCheckMark) {
  QListWidget widget;
  Fill(widget, true);
  const auto list = QtListControl(&widget);
  EXPECT_TRUE(list->MultiSelect());
  // A selected but unchecked row is not chosen in such a list.
  widget.setCurrentRow(0);
  widget.item(1)->setCheckState(Qt::Checked);
  EXPECT_EQ(lib_.tklListBoxItemSum(list), 2);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(u"d")), 3);
  EXPECT_EQ(widget.item(3)->checkState(), Qt::Checked);
  EXPECT_EQ(widget.item(1)->checkState(), Qt::Checked);
  EXPECT_EQ(lib_.tklListBoxItemSum(list), 10);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(int32_t{2}), false), 1);
  EXPECT_EQ(widget.item(1)->checkState(), Qt::Unchecked);
  EXPECT_EQ(lib_.tklListBoxData(list), 8);
}

TEST_F(QtListBoxHelpersTest, AComboBoxChoosesItsCurrentRow) {
  QComboBox combo;
  combo.addItem("Netto", 10);
  combo.addItem("Brutto", 20);
  combo.setCurrentIndex(-1);
  const auto list = QtListControl(&combo);
  EXPECT_EQ(lib_.tklListBoxData(list), -1);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(u"brutto")), 1);
  EXPECT_EQ(combo.currentIndex(), 1);
  EXPECT_EQ(lib_.tklListBoxData(list), 20);
  EXPECT_EQ(lib_.tklListBoxItemSum(list, true), 30);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(int32_t{20}), false), 1);
  EXPECT_EQ(combo.currentIndex(), -1);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(int32_t{99})), -1);
  EXPECT_EQ(combo.currentIndex(), -1);
}

TEST_F(QtListBoxHelpersTest, ButtonGroupsNumberTheirButtonsByIdOrByOrder) {
  QWidget parent;
  QRadioButton first("first", &parent), second("second", &parent), third("third", &parent);
  for (const bool own_ids : {false, true}) {
    SCOPED_TRACE(own_ids ? "own ids" : "in order");
    QButtonGroup group;
    if (own_ids) {
      group.addButton(&first, 7);
      group.addButton(&second, 3);
      group.addButton(&third, 5);
    } else {
      group.addButton(&first);
      group.addButton(&second);
      group.addButton(&third);
    }
    const auto options = QtOptionGroup(&group);
    EXPECT_EQ(options->Count(), 3);
    second.setChecked(true);
    EXPECT_EQ(lib_.tklGetOptionIndex(options), own_ids ? 3 : 1);
    third.setChecked(true);
    EXPECT_EQ(lib_.tklGetOptionIndex(options), own_ids ? 5 : 2);
    // No button checked: an exclusive group allows it only before a click.
    group.setExclusive(false);
    third.setChecked(false);
    EXPECT_EQ(lib_.tklGetOptionIndex(options), -1);
  }
}

TEST_F(QtListBoxHelpersTest, ADestroyedWidgetHasNoRowsAndNoChoice) {
  auto widget = std::make_unique<QListWidget>();
  Fill(*widget, false);
  const auto list = QtListControl(widget.get());
  auto group = std::make_unique<QButtonGroup>();
  const auto options = QtOptionGroup(group.get());
  widget.reset();
  group.reset();
  EXPECT_EQ(lib_.tklListBoxItemSum(list, true), 0);
  EXPECT_EQ(lib_.tklSelectListBoxItem(list, Variant(u"a")), -1);
  EXPECT_EQ(lib_.tklGetOptionIndex(options), -1);
  EXPECT_THROW(lib_.tklListBoxData(list, 0), Error);
}

}  // namespace
}  // namespace norvik50
