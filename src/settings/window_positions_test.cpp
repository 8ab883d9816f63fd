// Window positions and column widths against a real settings store.
#include <gtest/gtest.h>

#include "core/library_state.h"
#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "norvik50/list_view.h"
#include "norvik50/text_control.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;
constexpr int32_t HK = HKEY_CURRENT_USER;

// The desktop as a user interface reports it: the seam the members ask.
class Desktop : public UserInterface {
 public:
  std::vector<TwipsRect> ScreenRects() override { return screens; }
  std::vector<TwipsRect> screens;
};

class WindowPositionsTest : public ::testing::Test {
 protected:
  WindowPositionsTest() { SetUserInterface(desktop_); }
  ~WindowPositionsTest() override {
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  static std::shared_ptr<MemoryForm> MakeForm(const TwipsRect& bounds,
                                              WindowState state = WindowState::kNormal) {
    auto form = std::make_shared<MemoryForm>(u"frmCustomer");
    form->placement = {bounds, state};
    return form;
  }
  static std::shared_ptr<MemoryListView> MakeList(std::vector<int32_t> widths) {
    auto list = std::make_shared<MemoryListView>(u"lvwOrders");
    for (int32_t w : widths) list->columns.push_back({u"h", w, u""});
    return list;
  }
  const std::u16string kFormKey = u"SOFTWARE\\VANTEX\\Global\\Positions\\Forms\\frmCustomer";

  TempFolder temp_;
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  std::shared_ptr<Desktop> desktop_ = std::make_shared<Desktop>();
  LIB lib_;
};

TEST_F(WindowPositionsTest, APositionReadsBackAsItWasStored) {
  const WindowPlacement stored{{1500, -300, 9000, 6000}, WindowState::kNormal};
  auto form = MakeForm(stored.bounds);
  ASSERT_TRUE(lib_.tklSaveWindowPos(form));
  // The values a host (or the zoom window's layout) reads under the key.
  EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"Left"), 1500);
  EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"Top"), -300);
  EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"Width"), 9000);
  EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"Height"), 6000);
  EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"WindowState", -1), 0);

  auto other = MakeForm({0, 0, 100, 100}, WindowState::kMaximized);
  ASSERT_TRUE(lib_.tklLoadWindowPos(other));
  EXPECT_EQ(other->placement, stored);
}

TEST_F(WindowPositionsTest, StatesAreKeptAsNormalOrMaximised) {
  struct Case {
    WindowState saved;
    int32_t stored_value;
    WindowState loaded;
  };
  const Case cases[] = {
      {WindowState::kNormal, 0, WindowState::kNormal},
      {WindowState::kMaximized, 2, WindowState::kMaximized},
      // Nobody wants a form to open in the task bar.
      {WindowState::kMinimized, 0, WindowState::kNormal},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({600, 600, 4000, 3000}, c.saved)));
    EXPECT_EQ(lib_.tkrGetLong(HK, kFormKey, u"WindowState"), c.stored_value);
    auto form = MakeForm({0, 0, 1, 1});
    ASSERT_TRUE(lib_.tklLoadWindowPos(form));
    EXPECT_EQ(form->placement.state, c.loaded);
    // The normal bounds come back whatever the state.
    EXPECT_EQ(form->placement.bounds, (TwipsRect{600, 600, 4000, 3000}));
  }
}

TEST_F(WindowPositionsTest, TheSubKeyReplacesTheBaseKeyWithoutBecomingIt) {
  ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({1, 2, 3, 4}), u"Software\\Other"));
  EXPECT_EQ(lib_.tkrGetLong(HK, u"Software\\Other\\Positions\\Forms\\frmCustomer", u"Width"), 3);
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, kFormKey), 0);
  EXPECT_EQ(lib_.tklRegKey(), u"SOFTWARE\\VANTEX\\Global");
  // Without one, the base key of the moment is used.
  lib_.tklRegKey(u"Software\\Mine");
  ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({5, 6, 7, 8})));
  EXPECT_EQ(lib_.tkrGetLong(HK, u"Software\\Mine\\Positions\\Forms\\frmCustomer", u"Left"), 5);
  // Each key reads back its own.
  auto form = MakeForm({0, 0, 1, 1});
  ASSERT_TRUE(lib_.tklLoadWindowPos(form, u"Software\\Other"));
  EXPECT_EQ(form->placement.bounds, (TwipsRect{1, 2, 3, 4}));
  ASSERT_TRUE(lib_.tklLoadWindowPos(form));
  EXPECT_EQ(form->placement.bounds, (TwipsRect{5, 6, 7, 8}));
}

TEST_F(WindowPositionsTest, AnIncompletePositionLeavesTheFormAlone) {
  const TwipsRect designed{100, 200, 300, 400};
  struct Case {
    const char* what;
    const char16_t* value;  // the one value changed after a complete save
    Variant data;
  };
  const Case cases[] = {
      {"nothing stored at all", nullptr, Variant()},
      {"no left", u"Left", Variant(u"-")},
      {"no height", u"Height", Variant(u"-")},
      {"a width of 0", u"Width", Variant(int32_t{0})},
      {"a negative height", u"Height", Variant(int32_t{-15})},
      {"a width that is no number", u"Width", Variant(u"wide")},
  };
  for (const Case& c : cases) {
    lib_.tkrDeleteKey(HK, kFormKey);
    if (c.value != nullptr) {
      ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({1, 2, 3000, 4000})));
      ASSERT_TRUE(lib_.tkrSetValue(HK, kFormKey, c.value, c.data));
    }
    auto form = MakeForm(designed);
    EXPECT_FALSE(lib_.tklLoadWindowPos(form)) << c.what;
    EXPECT_EQ(form->placement.bounds, designed) << c.what;
  }
  // A position written as text (an imported .reg file) reads as numbers.
  lib_.tkrSetValue(HK, kFormKey, u"Width", Variant(u"3000"));
  auto form = MakeForm(designed);
  EXPECT_TRUE(lib_.tklLoadWindowPos(form));
  EXPECT_EQ(form->placement.bounds.width, 3000);
}

TEST_F(WindowPositionsTest, PositionOnlyKeepsTheFormsSize) {
  ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({1500, 1200, 9000, 6000})));
  auto dialog = MakeForm({0, 0, 4500, 2400});
  ASSERT_TRUE(lib_.tklLoadWindowPos(dialog, u"", true));
  EXPECT_EQ(dialog->placement.bounds, (TwipsRect{1500, 1200, 4500, 2400}));
}

TEST_F(WindowPositionsTest, AWindowOffTodaysScreensComesBackOnTheNearest) {
  ASSERT_TRUE(lib_.tklSaveWindowPos(MakeForm({40000, 3000, 9000, 6000})));
  // No screens known: as stored.
  auto form = MakeForm({0, 0, 1, 1});
  ASSERT_TRUE(lib_.tklLoadWindowPos(form));
  EXPECT_EQ(form->placement.bounds, (TwipsRect{40000, 3000, 9000, 6000}));
  // The second monitor is gone: onto the laptop's own screen.
  desktop_->screens = {{0, 0, 20490, 11520}};
  ASSERT_TRUE(lib_.tklLoadWindowPos(form));
  EXPECT_EQ(form->placement.bounds, (TwipsRect{11490, 3000, 9000, 6000}));
  // Position only: the form's own size decides what fits.
  auto small = MakeForm({0, 0, 3000, 3000});
  ASSERT_TRUE(lib_.tklLoadWindowPos(small, u"", true));
  EXPECT_EQ(small->placement.bounds, (TwipsRect{17490, 3000, 3000, 3000}));
}

TEST_F(WindowPositionsTest, ColumnWidthsReadBackByColumn) {
  auto form = MakeForm({0, 0, 9000, 6000});
  ASSERT_TRUE(lib_.tklSaveColWidths(form, MakeList({1440, 0, 2500})));
  const std::u16string key = kFormKey + u"\\lvwOrders";
  EXPECT_EQ(lib_.tkrGetLong(HK, key, u"Col1"), 1440);
  EXPECT_EQ(lib_.tkrGetLong(HK, key, u"Col2"), 0);  // a hidden column stays hidden
  EXPECT_EQ(lib_.tkrGetLong(HK, key, u"Col3"), 2500);

  // More columns than stored: the new one keeps its width.
  auto wider = MakeList({1, 1, 1, 777});
  EXPECT_TRUE(lib_.tklLoadColWidths(form, wider));
  std::vector<int32_t> widths;
  for (const auto& column : wider->columns) widths.push_back(column.width_twips);
  EXPECT_EQ(widths, (std::vector<int32_t>{1440, 0, 2500, 777}));
  // Fewer: the stored ones that have a column.
  auto narrower = MakeList({5});
  EXPECT_TRUE(lib_.tklLoadColWidths(form, narrower));
  EXPECT_EQ(narrower->columns[0].width_twips, 1440);
  // A width that no column can have is passed over.
  ASSERT_TRUE(lib_.tkrSetValue(HK, key, u"Col1", Variant(int32_t{-30})));
  auto one = MakeList({5});
  EXPECT_FALSE(lib_.tklLoadColWidths(form, one));
  EXPECT_EQ(one->columns[0].width_twips, 5);
  // Another list view of the form has its own sub-key.
  auto other = MakeList({9});
  other->name = u"lvwItems";
  EXPECT_FALSE(lib_.tklLoadColWidths(form, other));
  EXPECT_EQ(other->columns[0].width_twips, 9);
  // And another key altogether.
  ASSERT_TRUE(lib_.tklSaveColWidths(form, MakeList({60}), u"Software\\Other"));
  EXPECT_EQ(
      lib_.tkrGetLong(HK, u"Software\\Other\\Positions\\Forms\\frmCustomer\\lvwOrders", u"Col1"),
      60);
}

TEST_F(WindowPositionsTest, ObjectsThatAreNoFormOrListViewAreRefused) {
  auto form = MakeForm({0, 0, 1, 1});
  auto list = MakeList({1});
  auto nameless_form = std::make_shared<MemoryForm>();
  auto nameless_list = std::make_shared<MemoryListView>();
  const auto box = std::make_shared<MemoryTextBox>();
  const std::function<void()> calls[] = {
      [&] { lib_.tklSaveWindowPos(box); },
      [&] { lib_.tklLoadWindowPos(nullptr); },
      [&] { lib_.tklSaveWindowPos(nameless_form); },
      [&] { lib_.tklLoadWindowPos(nameless_form); },
      [&] { lib_.tklSaveColWidths(form, form); },
      [&] { lib_.tklLoadColWidths(list, list); },
      [&] { lib_.tklSaveColWidths(form, nameless_list); },
      [&] { lib_.tklLoadColWidths(nameless_form, list); },
  };
  int index = 0;
  for (const auto& call : calls) {
    try {
      call();
      ADD_FAILURE() << "call " << index << " raised nothing";
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrInvalidCall) << index;
    }
    ++index;
  }
  // Nothing was written for any of them.
  EXPECT_EQ(lib_.tkrSubKeyCount(HK, u"SOFTWARE\\VANTEX\\Global\\Positions"), 0);
}

TEST_F(WindowPositionsTest, ByName) {
  auto form = MakeForm({30, 45, 600, 900}, WindowState::kMaximized);
  auto r = Invoke(lib_, "tklSaveWindowPos", {Variant(std::shared_ptr<HostObject>(form))});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  auto loaded = MakeForm({0, 0, 1, 1});
  r = Invoke(lib_, "tklLoadWindowPos", {Variant(std::shared_ptr<HostObject>(loaded))});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(loaded->placement, form->placement);
  EXPECT_EQ(r.by_ref.count(0), 1u);  // the form comes back to a caller by name

  auto list = MakeList({150, 300});
  r = Invoke(lib_, "tklSaveColWidths",
             {Variant(std::shared_ptr<HostObject>(form)),
              Variant(std::shared_ptr<HostObject>(list)), Variant(u"Software\\ByName")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  auto reloaded = MakeList({0, 0});
  r = Invoke(lib_, "tklLoadColWidths",
             {Variant(std::shared_ptr<HostObject>(form)),
              Variant(std::shared_ptr<HostObject>(reloaded)), Variant(u"Software\\ByName")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(reloaded->columns, list->columns);
  EXPECT_EQ(r.by_ref.count(1), 1u);
  for (const char* member :
       {"tklSaveWindowPos", "tklLoadWindowPos", "tklSaveColWidths", "tklLoadColWidths"}) {
    EXPECT_TRUE(Members().Find(member, MemberKind::kMethod)->designed_here) << member;
  }
}

}  // namespace
}  // namespace norvik50
