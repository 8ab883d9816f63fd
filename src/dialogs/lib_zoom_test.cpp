// tklZoomTextBox against a user interface that records the request and
// plays the user's part.
#include <gtest/gtest.h>

#include "core/library_state.h"
#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/host_controls.h"
#include "norvik50/lib.h"
#include "norvik50/registry.h"
#include "norvik50/text_control.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class RecordingZoom : public UserInterface {
 public:
  bool ShowZoom(ZoomRequest& request, std::u16string& text) override {
    requests.push_back(request);
    request.shown = true;
    if (resize_to_width > 0) {
      request.width_twips = resize_to_width;
      request.height_twips = resize_to_height;
    }
    if (confirm) text = typed;
    return confirm;
  }
  std::vector<ZoomRequest> requests;
  bool confirm = true;
  std::u16string typed = u"edited";
  int32_t resize_to_width = 0;
  int32_t resize_to_height = 0;
};

class ZoomMemberTest : public ::testing::Test {
 protected:
  ZoomMemberTest() { SetUserInterface(ui_); }
  ~ZoomMemberTest() override {
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  std::shared_ptr<MemoryTextBox> Box(std::u16string type = u"TextBox") {
    auto box = std::make_shared<MemoryTextBox>(std::move(type));
    box->SetText(u"first");
    box->tooltip = u"Customer's remark";
    return box;
  }

  TempFolder temp_;
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  std::shared_ptr<RecordingZoom> ui_ = std::make_shared<RecordingZoom>();
  LIB lib_;
};

TEST_F(ZoomMemberTest, OnlyTheListedTypesAreZoomedAnyCase) {
  for (const char16_t* type :
       {u"TextBox", u"COMBOBOX", u"node", u"ListItem", u"ListBox", u"QSCombo", u"DCCombo"}) {
    EXPECT_NO_THROW(lib_.tklZoomTextBox(Box(type)));
  }
  EXPECT_EQ(ui_->requests.size(), 7u);
  for (const char16_t* type : {u"Label", u"TextBoxes", u""}) {
    try {
      lib_.tklZoomTextBox(Box(type));
      ADD_FAILURE() << "no error";
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), 5);
    }
  }
  // Objects that are no text field at all, and no object.
  EXPECT_THROW(lib_.tklZoomTextBox(std::make_shared<MemoryList>()), Error);
  EXPECT_THROW(lib_.tklZoomTextBox(nullptr), Error);
  EXPECT_EQ(ui_->requests.size(), 7u);  // nothing shown for any of them
}

TEST_F(ZoomMemberTest, TheEditorTakesTheSourcesStateUnlessIgnored) {
  auto box = Box();
  box->locked = true;
  box->enabled = false;
  lib_.tklZoomTextBox(box, u"Remark");
  lib_.tklZoomTextBox(box, u"", true);
  ASSERT_EQ(ui_->requests.size(), 2u);
  EXPECT_EQ(ui_->requests[0].title, u"Remark");
  EXPECT_EQ(ui_->requests[0].text, u"first");
  EXPECT_TRUE(ui_->requests[0].locked);
  EXPECT_FALSE(ui_->requests[0].enabled);
  EXPECT_EQ(ui_->requests[0].tooltip, u"Customer's remark");
  EXPECT_EQ(ui_->requests[1].title, u"Zoom");
  EXPECT_FALSE(ui_->requests[1].locked);
  EXPECT_TRUE(ui_->requests[1].enabled);
}

TEST_F(ZoomMemberTest, TheTextGoesBackSelectedAndTheSourceGetsTheFocus) {
  auto box = Box();
  lib_.tklZoomTextBox(box);
  EXPECT_EQ(box->Text(), u"edited");
  EXPECT_EQ(box->sel_start, 0);
  EXPECT_EQ(box->sel_length, 6);
  EXPECT_TRUE(box->focused);
  ui_->confirm = false;
  box->SetText(u"first");
  lib_.tklZoomTextBox(box);
  EXPECT_EQ(box->Text(), u"first");
  // Headless: nothing shown, the text stays.
  SetUserInterface(nullptr);
  lib_.tklZoomTextBox(box);
  EXPECT_EQ(box->Text(), u"first");
}

TEST_F(ZoomMemberTest, TheWindowSizeIsKeptUnderTheBaseKey) {
  const std::u16string key = lib_.tklRegKey() + u"\\Positions\\Forms\\ZoomWindow";
  lib_.tklZoomTextBox(Box());
  EXPECT_EQ(ui_->requests.back().width_twips, 9000);  // the designed size
  EXPECT_EQ(ui_->requests.back().height_twips, 5400);
  ui_->resize_to_width = 12000;
  ui_->resize_to_height = 6000;
  lib_.tklZoomTextBox(Box());
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width"), 12000);
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Height"), 6000);
  ui_->resize_to_width = 0;
  lib_.tklZoomTextBox(Box());
  EXPECT_EQ(ui_->requests.back().width_twips, 12000);
  EXPECT_EQ(ui_->requests.back().height_twips, 6000);
}

// The size is written on every unload, also when it is the size the
// window opened with, but not when no window was shown at all.
TEST_F(ZoomMemberTest, EveryShownWindowWritesItsSizeAHeadlessOneNothing) {
  const std::u16string key = lib_.tklRegKey() + u"\\Positions\\Forms\\ZoomWindow";
  SetUserInterface(nullptr);
  lib_.tklZoomTextBox(Box());
  constexpr int32_t kAbsent = -1;
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width", kAbsent), kAbsent);
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Height", kAbsent), kAbsent);
  SetUserInterface(ui_);
  for (bool confirm : {true, false}) {
    lib_.tkrDeleteKey(HKEY_CURRENT_USER, key);
    ui_->confirm = confirm;
    lib_.tklZoomTextBox(Box());
    EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Width", kAbsent), 9000) << confirm;
    EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, key, u"Height", kAbsent), 5400) << confirm;
  }
}

TEST_F(ZoomMemberTest, TheDispatchPassesTheObject) {
  auto box = Box();
  Invoke(lib_, "tklZoomTextBox", {Variant(std::shared_ptr<HostObject>(box)), Variant(u"Remark")});
  EXPECT_EQ(box->Text(), u"edited");
  EXPECT_EQ(ui_->requests.back().title, u"Remark");
}

}  // namespace
}  // namespace norvik50
