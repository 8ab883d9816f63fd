// tklSelectField and tklSetFocus on text boxes held in memory, directly and
// by name.
#include <gtest/gtest.h>

#include <stdexcept>

#include "norvik50/dispatch.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/text_control.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

std::shared_ptr<MemoryTextBox> Box(std::u16string_view text, int32_t start, int32_t length) {
  auto box = std::make_shared<MemoryTextBox>();
  box->SetText(text);
  box->Select(start, length);
  return box;
}

// A field whose selection the host refuses, as a control without one
// would.
class RefusingField final : public TextControl {
 public:
  std::u16string TypeName() const override { return u"TextBox"; }
  std::u16string Text() const override { return u"abc"; }
  void SetText(std::u16string_view) override {}
  bool Enabled() const override { return true; }
  bool Locked() const override { return false; }
  std::u16string ToolTipText() const override { return tip; }
  void SetToolTipText(std::u16string_view t) override { tip = t; }
  int32_t SelStart() const override { throw std::runtime_error("no selection"); }
  int32_t SelLength() const override { throw std::runtime_error("no selection"); }
  void Select(int32_t, int32_t) override { throw std::runtime_error("no selection"); }
  void SetFocus() override { throw std::runtime_error("hidden"); }
  std::u16string tip;
};

class SelectFieldTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  LIB lib_;
};

TEST_F(SelectFieldTest, SelectsAllOrTogglesToTheCaretAtTheEnd) {
  struct Case {
    const char* what;
    std::u16string text;
    int32_t start, length;  // the selection before
    bool toggle;
    int32_t want_start, want_length;
  };
  const Case cases[] = {
      {"caret inside, select", u"Meier", 2, 0, false, 0, 5},
      {"all selected, select keeps it", u"Meier", 0, 5, false, 0, 5},
      {"caret inside, toggle selects all", u"Meier", 2, 0, true, 0, 5},
      {"part selected, toggle selects all", u"Meier", 1, 3, true, 0, 5},
      {"tail selected, toggle selects all", u"Meier", 1, 4, true, 0, 5},
      {"all selected, toggle leaves the caret at the end", u"Meier", 0, 5, true, 5, 0},
      {"empty text, toggle", u"", 0, 0, true, 0, 0},
      {"empty text, select", u"", 0, 0, false, 0, 0},
      {"lines count every character", u"a\r\nb", 0, 4, true, 4, 0},
  };
  for (const Case& c : cases) {
    auto box = Box(c.text, c.start, c.length);
    lib_.tklSelectField(box, c.toggle);
    EXPECT_EQ(box->SelStart(), c.want_start) << c.what;
    EXPECT_EQ(box->SelLength(), c.want_length) << c.what;
    EXPECT_EQ(box->Text(), c.text) << c.what;
  }
  // Toggling twice comes back to the whole text.
  auto box = Box(u"xy", 0, 0);
  lib_.tklSelectField(box, true);
  lib_.tklSelectField(box, true);
  EXPECT_EQ(box->SelLength(), 0);
  lib_.tklSelectField(box, true);
  EXPECT_EQ(box->SelLength(), 2);
}

TEST_F(SelectFieldTest, TheStatusPanelsTextBecomesTheTooltip) {
  auto box = Box(u"x", 0, 0);
  box->tooltip = u"old";
  lib_.tklSelectField(box, false, std::make_shared<MemoryStatusPanel>(u"Kundennummer"));
  EXPECT_EQ(box->tooltip, u"Kundennummer");
  // An empty panel empties the tooltip; Nothing or another object as the
  // panel leaves it alone.
  lib_.tklSelectField(box, false, std::make_shared<MemoryStatusPanel>());
  EXPECT_EQ(box->tooltip, u"");
  box->tooltip = u"kept";
  lib_.tklSelectField(box, false, nullptr);
  lib_.tklSelectField(box, false, std::make_shared<MemoryList>());
  EXPECT_EQ(box->tooltip, u"kept");
}

TEST_F(SelectFieldTest, NothingRaisesWhateverComes) {
  // Not a text field, or no object at all: nothing happens.
  auto list = std::make_shared<MemoryList>();
  list->AddItem(u"row");
  EXPECT_NO_THROW(lib_.tklSelectField(list, true, std::make_shared<MemoryStatusPanel>(u"p")));
  EXPECT_NO_THROW(lib_.tklSelectField(nullptr, true));
  EXPECT_NO_THROW(lib_.tklSetFocus(list));
  EXPECT_NO_THROW(lib_.tklSetFocus(nullptr));
  EXPECT_EQ(list->rows().size(), 1u);
  // A field that refuses its selection still gets the tooltip.
  auto refusing = std::make_shared<RefusingField>();
  EXPECT_NO_THROW(lib_.tklSelectField(refusing, true, std::make_shared<MemoryStatusPanel>(u"p")));
  EXPECT_EQ(refusing->tip, u"p");
  EXPECT_NO_THROW(lib_.tklSetFocus(refusing));
}

TEST_F(SelectFieldTest, SetFocusGivesTheFieldTheFocus) {
  auto box = Box(u"x", 0, 0);
  lib_.tklSetFocus(box);
  EXPECT_TRUE(box->focused);
}

TEST_F(SelectFieldTest, ByNameTheControlComesBackAsWritten) {
  auto box = Box(u"Meier", 0, 5);
  const std::shared_ptr<HostObject> object = box;
  const InvokeResult toggled = Invoke(
      lib_, "tklSelectField",
      {Variant(object), Variant(true), Variant(std::shared_ptr<HostObject>(
                                           std::make_shared<MemoryStatusPanel>(u"Name")))});
  EXPECT_EQ(box->SelStart(), 5);
  EXPECT_EQ(box->tooltip, u"Name");
  ASSERT_EQ(toggled.by_ref.size(), 1u);
  ASSERT_EQ(toggled.by_ref.count(0), 1u);
  EXPECT_EQ(toggled.by_ref.at(0).as_object().get(), box.get());
  // Both optional arguments left out: select all, no tooltip change.
  Invoke(lib_, "tklSelectField", {Variant(object)});
  EXPECT_EQ(box->SelLength(), 5);
  EXPECT_EQ(box->tooltip, u"Name");
  const InvokeResult focused = Invoke(lib_, "tklSetFocus", {Variant(object)});
  EXPECT_TRUE(box->focused);
  EXPECT_EQ(focused.by_ref.size(), 1u);
}

TEST(MemoryTextBoxTest, KeepsTheSelectionInsideTheText) {
  MemoryTextBox box;
  box.SetText(u"abcd");
  box.Select(2, 10);  // past the end: up to the end
  EXPECT_EQ(box.SelStart(), 2);
  EXPECT_EQ(box.SelLength(), 2);
  box.Select(9, 1);  // a start past the end is the end
  EXPECT_EQ(box.SelStart(), 4);
  EXPECT_EQ(box.SelLength(), 0);
  box.Select(-3, -1);
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 0);
  box.Select(1, 2);
  box.SetText(u"z");  // a new text puts the caret at the start
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_EQ(box.SelLength(), 0);
}

}  // namespace
}  // namespace norvik50
