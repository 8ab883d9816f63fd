// The screen and frame sizes and the top-most forms, on forms in memory
// and on a desktop the tests describe.
#include <gtest/gtest.h>

#include <climits>
#include <set>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

// A desktop as a user interface reports it, remembering what it was asked.
class Desktop final : public UserInterface {
 public:
  TwipsRect PrimaryScreen() override { return screen; }
  int32_t MenuBarHeight() override { return menu_bar; }
  int32_t SetApplicationTopMost(bool top_most) override {
    calls.push_back(top_most);
    return windows;
  }
  bool IsKeyDown(int32_t virtual_key) override {
    asked.push_back(virtual_key);
    return down.count(virtual_key) > 0;
  }
  std::vector<std::u16string> FontFamilies() override { return fonts; }
  std::set<int32_t> down;
  std::vector<int32_t> asked;
  std::vector<std::u16string> fonts;
  TwipsRect screen{0, 0, 1920 * 15, 1080 * 15};
  int32_t menu_bar = 22 * 15;
  int32_t windows = 3;
  std::vector<bool> calls;
};

// A form of a toolkit that can neither show it nor keep it on top: the
// defaults every Form has.
class PlainForm final : public Form {
 public:
  std::u16string Name() const override { return u"frmPlain"; }
  WindowPlacement Placement() const override { return {{0, 0, 3000, 2000}}; }
  void SetPlacement(const WindowPlacement&) override {}
  int32_t FillCaptions(const CaptionLookup&) override { return 0; }
};

std::shared_ptr<HostObject> Object(std::shared_ptr<Form> form) { return form; }

class WindowsTest : public ::testing::Test {
 protected:
  ~WindowsTest() override { SetUserInterface(nullptr); }
  void UseDesktop() { SetUserInterface(desktop_); }
  std::shared_ptr<Desktop> desktop_ = std::make_shared<Desktop>();
  LIB lib_;
};

TEST_F(WindowsTest, WithoutADisplayThereIsNoScreenButTheClassicFrame) {
  EXPECT_EQ(lib_.tklGetScreenWidth(), 0);
  EXPECT_EQ(lib_.tklGetScreenHeight(), 0);
  EXPECT_EQ(lib_.tklGetMenuHeight(), 19 * 15);
  int32_t width = -1;
  int32_t height = -1;
  lib_.tklGetFrameSize(width, height);
  EXPECT_EQ(width, 2 * 4 * 15);
  EXPECT_EQ(height, (2 * 4 + 18) * 15);
  EXPECT_EQ(lib_.tklApplicationTopMost(), 0);
}

TEST_F(WindowsTest, TheScreenAndMenuBarAreTheUserInterfaces) {
  UseDesktop();
  desktop_->screen = {-1200 * 15, 0, 1280 * 15, 1024 * 15};
  EXPECT_EQ(lib_.tklGetScreenWidth(), 1280 * 15);
  EXPECT_EQ(lib_.tklGetScreenHeight(), 1024 * 15);
  EXPECT_EQ(lib_.tklGetMenuHeight(), 22 * 15);
}

TEST_F(WindowsTest, TheInnerSizeIsTheOuterWithoutFrameAndMenuBar) {
  struct Case {
    TwipsRect bounds;
    bool menu_bar;
    TwipsSize inner;
  };
  const Case cases[] = {
      {{0, 0, 9000, 6000}, false, {9000 - 120, 6000 - 390}},
      {{500, -200, 9000, 6000}, true, {9000 - 120, 6000 - 390 - 285}},
      // Smaller than its frame: nothing inside, never a negative size.
      {{0, 0, 100, 300}, false, {0, 0}},
      {{0, 0, 120, 390}, false, {0, 0}},
      {{0, 0, 121, 676}, true, {1, 1}},
      {{0, 0, INT32_MIN, INT32_MIN}, true, {0, 0}},
      {{0, 0, INT32_MAX, INT32_MAX}, false, {INT32_MAX - 120, INT32_MAX - 390}},
  };
  for (const Case& c : cases) {
    auto form = std::make_shared<MemoryForm>(u"frmA");
    form->placement.bounds = c.bounds;
    form->menu_bar = c.menu_bar;
    int32_t width = -1;
    int32_t height = -1;
    lib_.tklGetInternalFormSize(form, width, height);
    EXPECT_EQ((TwipsSize{width, height}), c.inner) << c.bounds.width << " " << c.menu_bar;
  }
  // Outer = inner + frame: what a host computes a form's size with.
  auto form = std::make_shared<MemoryForm>(u"frmB");
  form->placement.bounds = {0, 0, 7777, 5555};
  int32_t inner_width = 0, inner_height = 0, frame_width = 0, frame_height = 0;
  lib_.tklGetInternalFormSize(form, inner_width, inner_height);
  lib_.tklGetFrameSize(frame_width, frame_height);
  EXPECT_EQ(inner_width + frame_width, 7777);
  EXPECT_EQ(inner_height + frame_height, 5555);
}

TEST_F(WindowsTest, AFormIsKeptOnTopAndLetGo) {
  auto form = std::make_shared<MemoryForm>(u"frmTool");
  EXPECT_TRUE(lib_.tklTopMost(form));
  EXPECT_TRUE(form->top_most);
  EXPECT_FALSE(form->visible);  // kept on top, not shown
  EXPECT_TRUE(lib_.tklTopMost(form, false));
  EXPECT_FALSE(form->top_most);

  EXPECT_TRUE(lib_.tklOpenTopMost(form));
  EXPECT_TRUE(form->top_most);
  EXPECT_TRUE(form->visible);
}

TEST_F(WindowsTest, TheApplicationIsKeptOnTopThroughTheUserInterface) {
  UseDesktop();
  EXPECT_EQ(lib_.tklApplicationTopMost(), 3);
  EXPECT_EQ(lib_.tklApplicationTopMost(false), 3);
  auto form = std::make_shared<MemoryForm>(u"frmMain");
  EXPECT_TRUE(lib_.tklOpenApplicationTopMost(form));
  EXPECT_TRUE(form->visible);
  EXPECT_TRUE(form->top_most);
  EXPECT_EQ(desktop_->calls, (std::vector<bool>{true, false, true}));
}

TEST_F(WindowsTest, AFormThatCannotShowLeavesTheApplicationAlone) {
  UseDesktop();
  auto plain = std::make_shared<PlainForm>();
  EXPECT_FALSE(lib_.tklTopMost(plain));
  EXPECT_FALSE(lib_.tklOpenTopMost(plain));
  EXPECT_FALSE(lib_.tklOpenApplicationTopMost(plain));
  EXPECT_TRUE(desktop_->calls.empty());
  // Its inner size comes from its placement with the classic frame.
  int32_t width = 0;
  int32_t height = 0;
  lib_.tklGetInternalFormSize(plain, width, height);
  EXPECT_EQ(width, 3000 - 120);
  EXPECT_EQ(height, 2000 - 390);
}

TEST_F(WindowsTest, AnythingButAFormIsRefused) {
  const std::shared_ptr<HostObject> nothing;
  const std::shared_ptr<HostObject> list = std::make_shared<MemoryListView>(u"lvw");
  for (const auto& object : {nothing, list}) {
    int32_t width = 7;
    int32_t height = 7;
    const std::function<void()> calls[] = {
        [&] { lib_.tklGetInternalFormSize(object, width, height); },
        [&] { lib_.tklTopMost(object); },
        [&] { lib_.tklOpenTopMost(object); },
        [&] { lib_.tklOpenApplicationTopMost(object); },
    };
    for (const auto& call : calls) {
      try {
        call();
        ADD_FAILURE() << "no error";
      } catch (const Error& e) {
        EXPECT_EQ(e.number(), kErrInvalidCall);
      }
    }
    EXPECT_EQ(width, 7);  // nothing written on failure
  }
}

TEST_F(WindowsTest, CornersAndShadowAreTheFormsToKeep) {
  auto form = std::make_shared<MemoryForm>(u"frmSplash");
  EXPECT_TRUE(lib_.tklRoundWindow(form));
  EXPECT_EQ(form->corner_radius, 150);
  EXPECT_TRUE(lib_.tklRoundWindow(form, 0));
  EXPECT_EQ(form->corner_radius, 0);
  EXPECT_THROW(lib_.tklRoundWindow(form, -15), Error);
  EXPECT_EQ(form->corner_radius, 0);
  EXPECT_TRUE(lib_.tklWindowShadow(form));
  EXPECT_TRUE(form->shadow);
  EXPECT_TRUE(lib_.tklWindowShadow(form, false));
  EXPECT_FALSE(form->shadow);
  auto plain = std::make_shared<PlainForm>();
  EXPECT_FALSE(lib_.tklRoundWindow(plain, 300));
  EXPECT_FALSE(lib_.tklWindowShadow(plain));
  EXPECT_THROW(lib_.tklRoundWindow(nullptr), Error);
  EXPECT_THROW(lib_.tklWindowShadow(nullptr), Error);

  auto r = Invoke(lib_, "tklRoundWindow", {Variant(Object(form)), Variant(int32_t{300})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(form->corner_radius, 300);
  r = Invoke(lib_, "tklWindowShadow", {Variant(Object(form))});
  EXPECT_EQ(r.by_ref.count(0), 1u);
  EXPECT_TRUE(form->shadow);
  for (const char* member : {"tklRoundWindow", "tklWindowShadow"}) {
    EXPECT_TRUE(Members().Find(member, MemberKind::kMethod)->designed_here) << member;
  }
}

TEST_F(WindowsTest, KeysAreAskedByTheirVirtualKeyCode) {
  EXPECT_FALSE(lib_.tklIsKeyDown(0x41));  // headless: no keyboard
  UseDesktop();
  desktop_->down = {0x10, 0x41};
  EXPECT_TRUE(lib_.tklIsKeyDown(0x41));
  EXPECT_TRUE(lib_.tklIsKeyDown(0x10));
  EXPECT_FALSE(lib_.tklIsKeyDown(0x42));
  EXPECT_FALSE(lib_.tklIsKeyDown(254));  // the highest code is asked, not refused
  EXPECT_EQ(desktop_->asked, (std::vector<int32_t>{0x41, 0x10, 0x42, 254}));
  for (int32_t code : {0, -1, 255, 0x10041, INT32_MIN}) {
    EXPECT_THROW(lib_.tklIsKeyDown(code), Error) << code;
  }
}

TEST_F(WindowsTest, MouseButtonsAreTheirVirtualKeys) {
  UseDesktop();
  struct Case {
    std::set<int32_t> down;
    int32_t button;
    bool expected;
  };
  const Case cases[] = {
      {{}, 1, false},    {{0x01}, 1, true},       {{0x02}, 1, false},
      {{0x02}, 2, true}, {{0x04}, 4, true},       {{0x04}, 3, false},
      {{0x04}, 7, true}, {{0x01, 0x02}, 6, true}, {{0x05, 0x06}, 7, false},
  };
  for (const Case& c : cases) {
    desktop_->down = c.down;
    EXPECT_EQ(lib_.tklIsMouseButtonDown(c.button), c.expected) << c.button;
  }
  desktop_->down = {0x01};
  EXPECT_TRUE(lib_.tklIsMouseButtonDown());  // the left one by default
  for (int32_t button : {0, -1, 8, 9, 16, INT32_MIN}) {
    try {
      lib_.tklIsMouseButtonDown(button);
      ADD_FAILURE() << button;
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrInvalidCall);
    }
  }
}

TEST_F(WindowsTest, TheFontListIsTheUserInterfacesFamilies) {
  const SafeArray none = lib_.tklGetFontList();
  EXPECT_EQ(none.lbound(), 0);
  EXPECT_EQ(none.ubound(), -1);
  UseDesktop();
  desktop_->fonts = {u"DejaVu Sans", u"Liberation Serif", u"Noto Sans Ünicode"};
  const SafeArray fonts = lib_.tklGetFontList();
  ASSERT_EQ(fonts.ubound(), 2);
  EXPECT_EQ(fonts.lbound(), 0);
  EXPECT_EQ(fonts.at(0).as_string(), u"DejaVu Sans");
  EXPECT_EQ(fonts.at(2).as_string(), u"Noto Sans Ünicode");
}

TEST_F(WindowsTest, ByName) {
  UseDesktop();
  auto r = Invoke(lib_, "tklGetScreenWidth", {});
  EXPECT_EQ(r.result->as_long(), 1920 * 15);
  r = Invoke(lib_, "tklGetScreenHeight", {});
  EXPECT_EQ(r.result->as_long(), 1080 * 15);
  r = Invoke(lib_, "tklGetMenuHeight", {});
  EXPECT_EQ(r.result->as_long(), 22 * 15);
  r = Invoke(lib_, "tklGetFrameSize", {Variant(int32_t{0}), Variant(int32_t{0})});
  EXPECT_FALSE(r.result.has_value());
  EXPECT_EQ(r.by_ref.at(0).as_long(), 120);
  EXPECT_EQ(r.by_ref.at(1).as_long(), 390);

  auto form = std::make_shared<MemoryForm>(u"frmA");
  form->placement.bounds = {0, 0, 6120, 4390};
  r = Invoke(lib_, "tklGetInternalFormSize",
             {Variant(Object(form)), Variant(int32_t{0}), Variant(int32_t{0})});
  EXPECT_EQ(r.by_ref.at(1).as_long(), 6000);
  EXPECT_EQ(r.by_ref.at(2).as_long(), 4000);

  r = Invoke(lib_, "tklTopMost", {Variant(Object(form))});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(r.by_ref.count(0), 1u);  // the form comes back with its new state
  EXPECT_TRUE(form->top_most);
  r = Invoke(lib_, "tklTopMost", {Variant(Object(form)), Variant(false)});
  EXPECT_FALSE(form->top_most);
  r = Invoke(lib_, "tklOpenTopMost", {Variant(Object(form))});
  EXPECT_TRUE(form->visible && form->top_most);
  r = Invoke(lib_, "tklApplicationTopMost", {Variant(false)});
  EXPECT_EQ(r.result->as_long(), 3);
  r = Invoke(lib_, "tklOpenApplicationTopMost", {Variant(Object(form))});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  EXPECT_EQ(desktop_->calls, (std::vector<bool>{false, true}));
  desktop_->down = {0x02, 0x70};
  EXPECT_EQ(Invoke(lib_, "tklIsKeyDown", {Variant(int32_t{0x70})}).result->as_boolean(), kTrue);
  EXPECT_EQ(Invoke(lib_, "tklIsMouseButtonDown", {}).result->as_boolean(), kFalse);
  EXPECT_EQ(Invoke(lib_, "tklIsMouseButtonDown", {Variant(int32_t{2})}).result->as_boolean(),
            kTrue);
  desktop_->fonts = {u"Tahoma"};
  r = Invoke(lib_, "tklGetFontList", {});
  EXPECT_EQ(r.result->as_array().at(0).as_string(), u"Tahoma");
  for (const char* member :
       {"tklGetScreenWidth", "tklGetScreenHeight", "tklGetFrameSize", "tklGetMenuHeight",
        "tklGetInternalFormSize", "tklTopMost", "tklOpenTopMost", "tklApplicationTopMost",
        "tklOpenApplicationTopMost", "tklIsKeyDown", "tklIsMouseButtonDown", "tklGetFontList"}) {
    const MemberInfo* info = Members().Find(member, MemberKind::kMethod);
    ASSERT_NE(info, nullptr) << member;
    EXPECT_TRUE(info->designed_here) << member;
  }
}

}  // namespace
}  // namespace norvik50
