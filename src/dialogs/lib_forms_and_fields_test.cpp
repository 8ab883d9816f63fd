// Open forms, the containers of a control and F2 in a field, on forms and
// fields in memory and a user interface that plays the desktop's part.
#include <gtest/gtest.h>

#include <optional>

#include "core/library_state.h"
#include "dialogs/form_fields.h"
#include "norvik50/container.h"
#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "norvik50/text_control.h"
#include "testing/error_number.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

// The forms a desktop shows, and a zoom that types for the user.
class Desktop final : public UserInterface {
 public:
  std::vector<std::u16string> OpenForms() override {
    ++forms_asked;
    return open;
  }
  bool ShowZoom(ZoomRequest& request, std::u16string& text) override {
    zooms.push_back(request);
    request.shown = true;
    text = typed;
    return true;
  }
  std::vector<std::u16string> open;
  int forms_asked = 0;
  std::vector<ZoomRequest> zooms;
  std::u16string typed = u"typed";
};

using ::norvik50::testing::ErrorOf;

class FormsAndFieldsTest : public ::testing::Test {
 protected:
  FormsAndFieldsTest() { SetUserInterface(desktop_); }
  ~FormsAndFieldsTest() override {
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }

  TempFolder temp_;
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  std::shared_ptr<Desktop> desktop_ = std::make_shared<Desktop>();
  LIB lib_;
};

// ---- tklIsFormOpen -----------------------------------------------------

TEST_F(FormsAndFieldsTest, AFormIsOpenByItsNameWithoutRegardToCase) {
  desktop_->open = {u"frmCustomer", u"frmÄnderung"};
  const std::vector<std::pair<std::u16string, bool>> cases = {
      {u"frmCustomer", true},    // as written
      {u"FRMCUSTOMER", true},    // without case
      {u"frmänderung", true},    // the fold covers more than ASCII
      {u"frmCustomers", false},  // a whole name, not a prefix
      {u"frmCust", false},       // nor a part of one
      {u"", false},              // no name, no form
  };
  for (const auto& [name, open] : cases) {
    EXPECT_EQ(lib_.tklIsFormOpen(Variant(name)), open) << std::string(name.begin(), name.end());
  }
}

TEST_F(FormsAndFieldsTest, AFormObjectAnswersForItselfWithoutListingTheDesktop) {
  auto form = std::make_shared<MemoryForm>(u"frmCustomer");
  desktop_->open = {u"frmCustomer"};
  // Not shown: the name being open elsewhere does not count for it.
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(form))));
  form->Show();
  EXPECT_TRUE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(form))));
  EXPECT_EQ(desktop_->forms_asked, 0);
}

TEST_F(FormsAndFieldsTest, AFormContainerIsLookedUpByItsName) {
  desktop_->open = {u"frmOrder"};
  auto order = std::make_shared<MemoryContainer>(u"frmOrder", u"form");
  auto other = std::make_shared<MemoryContainer>(u"frmOther", u"Form");
  // A frame of the same name is no form.
  auto frame = std::make_shared<MemoryContainer>(u"frmOrder", u"Frame");
  EXPECT_TRUE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(order))));
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(other))));
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(frame))));
}

TEST_F(FormsAndFieldsTest, NothingAndEmptyValuesAreNoOpenFormAndNumbersMismatch) {
  desktop_->open = {u"1"};
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant()));
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant::Null()));
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>())));
  EXPECT_FALSE(
      lib_.tklIsFormOpen(Variant(std::shared_ptr<HostObject>(std::make_shared<MemoryTextBox>()))));
  EXPECT_EQ(ErrorOf([&] { lib_.tklIsFormOpen(Variant(int32_t{1})); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([&] { lib_.tklIsFormOpen(Variant(true)); }), kErrTypeMismatch);
}

TEST_F(FormsAndFieldsTest, WithoutADisplayNoFormIsOpen) {
  SetUserInterface(nullptr);
  EXPECT_FALSE(lib_.tklIsFormOpen(Variant(u"frmCustomer")));
}

// ---- tklGetContainer ---------------------------------------------------

// txtStreet in fraAddress on the page tabAddress of frmCustomer.
struct Placed {
  std::shared_ptr<MemoryContainer> form =
      std::make_shared<MemoryContainer>(u"frmCustomer", u"Form");
  std::shared_ptr<MemoryContainer> page =
      std::make_shared<MemoryContainer>(u"tabAddress", u"TabPage", form);
  std::shared_ptr<MemoryContainer> frame =
      std::make_shared<MemoryContainer>(u"fraAddress", u"Frame", page);
  std::shared_ptr<MemoryTextBox> field = [this] {
    auto box = std::make_shared<MemoryTextBox>();
    box->container = frame;
    return box;
  }();
};

TEST_F(FormsAndFieldsTest, TheKindNamesTheNearestContainerOfThatTypeOrName) {
  Placed p;
  const std::vector<std::pair<std::u16string, std::shared_ptr<HostObject>>> cases = {
      {u"", p.frame},            // what holds it directly
      {u"Frame", p.frame},       // by type
      {u"tabpage", p.page},      // types without case
      {u"FORM", p.form},         // the form at the top
      {u"tabAddress", p.page},   // by name
      {u"FRMCUSTOMER", p.form},  // names without case
      {u"GroupBox", nullptr},    // no such type up the chain
      {u"fraAddres", nullptr},   // a whole name, not a prefix
  };
  for (const auto& [kind, expected] : cases) {
    EXPECT_EQ(lib_.tklGetContainer(p.field, kind), expected)
        << std::string(kind.begin(), kind.end());
  }
  // A container is placed too: the page holds the frame.
  EXPECT_EQ(lib_.tklGetContainer(p.frame), p.page);
  EXPECT_EQ(lib_.tklGetContainer(p.form), nullptr);
}

TEST_F(FormsAndFieldsTest, TheNearestOfTwoFramesIsTaken) {
  Placed p;
  auto inner = std::make_shared<MemoryContainer>(u"fraStreet", u"Frame", p.frame);
  p.field->container = inner;
  EXPECT_EQ(lib_.tklGetContainer(p.field, u"Frame"), inner);
  EXPECT_EQ(lib_.tklGetContainer(p.field, u"fraAddress"), p.frame);
}

TEST_F(FormsAndFieldsTest, AFormObjectEndsTheChainAsTheForm) {
  auto form = std::make_shared<MemoryForm>(u"frmOrder");
  auto frame = std::make_shared<MemoryContainer>(u"fraLines", u"Frame", form);
  auto field = std::make_shared<MemoryTextBox>();
  field->container = frame;
  EXPECT_EQ(lib_.tklGetContainer(field, u"form"), form);
  EXPECT_EQ(lib_.tklGetContainer(field, u"frmOrder"), form);
  // A field on no form has no container of any kind.
  EXPECT_EQ(lib_.tklGetContainer(std::make_shared<MemoryTextBox>()), nullptr);
  EXPECT_EQ(lib_.tklGetContainer(std::make_shared<MemoryTextBox>(), u"Form"), nullptr);
}

TEST_F(FormsAndFieldsTest, WhatIsNoPlacedControlIsRefused) {
  EXPECT_EQ(ErrorOf([&] { lib_.tklGetContainer(nullptr); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklGetContainer(std::make_shared<MemoryForm>(u"frmX")); }),
            kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { lib_.tklGetContainer(std::make_shared<MemoryStatusPanel>()); }),
            kErrInvalidCall);
}

TEST_F(FormsAndFieldsTest, ARingOfContainersIsAnErrorNotAHang) {
  auto a = std::make_shared<MemoryContainer>(u"fraA", u"Frame");
  auto b = std::make_shared<MemoryContainer>(u"fraB", u"Frame", a);
  a->parent = b;
  auto field = std::make_shared<MemoryTextBox>();
  field->container = a;
  EXPECT_EQ(lib_.tklGetContainer(field), a);  // the direct container needs no walk
  EXPECT_EQ(ErrorOf([&] { lib_.tklGetContainer(field, u"Form"); }), kErrInvalidCall);
  a->parent = nullptr;  // the ring would outlive the test
}

// ---- tklCheckF2Key -----------------------------------------------------

TEST_F(FormsAndFieldsTest, OnlyF2WithoutShiftCtrlOrAltOpensTheZoom) {
  struct Case {
    int16_t key;
    int16_t shift;
    bool opens;
  };
  const std::vector<Case> cases = {
      {113, 0, true},    // F2
      {113, 1, false},   // Shift+F2
      {113, 2, false},   // Ctrl+F2
      {113, 4, false},   // Alt+F2
      {113, 6, false},   // Ctrl+Alt+F2
      {113, 8, true},    // a bit that is no modifier changes nothing
      {112, 0, false},   // F1
      {114, 0, false},   // F3
      {65, 0, false},    // A
      {0, 0, false},     // a key already handled
      {-113, 0, false},  // no key
  };
  for (const Case& c : cases) {
    EXPECT_EQ(OpensZoom(c.key, c.shift), c.opens) << c.key << " " << c.shift;
  }
}

TEST_F(FormsAndFieldsTest, F2ZoomsTheFieldAndClearsTheKeyCode) {
  auto field = std::make_shared<MemoryTextBox>();
  field->SetText(u"Meier");
  field->locked = true;
  field->tooltip = u"Name";
  int16_t key = 113;
  EXPECT_TRUE(lib_.tklCheckF2Key(field, key, 0, u"Kunde"));
  EXPECT_EQ(key, 0);
  ASSERT_EQ(desktop_->zooms.size(), 1u);
  const ZoomRequest& zoom = desktop_->zooms[0];
  EXPECT_EQ(zoom.title, u"Kunde");
  EXPECT_EQ(zoom.text, u"Meier");
  EXPECT_TRUE(zoom.locked);  // a locked field opens a locked zoom
  EXPECT_EQ(zoom.tooltip, u"Name");
  // As after tklZoomTextBox: the text back, all of it selected, focused.
  EXPECT_EQ(field->Text(), u"typed");
  EXPECT_EQ(field->sel_length, 5);
  EXPECT_TRUE(field->focused);

  // bIgnoreAttributes reaches the zoom; no description is "Zoom".
  key = 113;
  EXPECT_TRUE(lib_.tklCheckF2Key(field, key, 0, u"", true));
  EXPECT_FALSE(desktop_->zooms[1].locked);
  EXPECT_EQ(desktop_->zooms[1].title, u"Zoom");
}

TEST_F(FormsAndFieldsTest, AnyOtherKeyLeavesKeyCodeFieldAndScreenAlone) {
  auto field = std::make_shared<MemoryTextBox>();
  field->SetText(u"Meier");
  field->Select(2, 1);
  for (const auto& [code, shift] :
       std::vector<std::pair<int16_t, int16_t>>{{112, 0}, {113, 1}, {113, 2}, {13, 0}, {27, 0}}) {
    int16_t key = code;
    EXPECT_FALSE(lib_.tklCheckF2Key(field, key, shift));
    EXPECT_EQ(key, code);
  }
  EXPECT_TRUE(desktop_->zooms.empty());
  EXPECT_EQ(field->Text(), u"Meier");
  EXPECT_EQ(field->sel_start, 2);
  EXPECT_EQ(field->sel_length, 1);
  EXPECT_FALSE(field->focused);
  // Not even the control is looked at: a handler may pass any object.
  int16_t key = 65;
  EXPECT_FALSE(lib_.tklCheckF2Key(nullptr, key));
}

TEST_F(FormsAndFieldsTest, F2OnWhatCannotBeZoomedRaisesAndKeepsTheKey) {
  int16_t key = 113;
  EXPECT_EQ(ErrorOf([&] { lib_.tklCheckF2Key(std::make_shared<MemoryTextBox>(u"Label"), key); }),
            kErrInvalidCall);
  EXPECT_EQ(key, 113);
  EXPECT_EQ(ErrorOf([&] { lib_.tklCheckF2Key(nullptr, key); }), kErrInvalidCall);
  EXPECT_EQ(key, 113);
  EXPECT_TRUE(desktop_->zooms.empty());
}

// ---- By name -----------------------------------------------------------

TEST_F(FormsAndFieldsTest, ByNameTheKeyCodeComesBackOnlyWhenTheZoomOpened) {
  auto field = std::make_shared<MemoryTextBox>();
  auto r = Invoke(lib_, "tklCheckF2Key",
                  {Variant(std::shared_ptr<HostObject>(field)), Variant(int16_t{113})});
  EXPECT_EQ(r.result->as_boolean(), kTrue);
  ASSERT_EQ(r.by_ref.count(1), 1u);
  EXPECT_EQ(r.by_ref.at(1).as_integer(), 0);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  // Shift+F2, the key code given as a Long as a script would.
  r = Invoke(
      lib_, "tklCheckF2Key",
      {Variant(std::shared_ptr<HostObject>(field)), Variant(int32_t{113}), Variant(int16_t{1})});
  EXPECT_EQ(r.result->as_boolean(), kFalse);
  EXPECT_TRUE(r.by_ref.empty());

  desktop_->open = {u"frmMain"};
  r = Invoke(lib_, "tklIsFormOpen", {Variant(u"FRMMAIN")});
  EXPECT_EQ(r.result->as_boolean(), kTrue);

  Placed p;
  r = Invoke(lib_, "tklGetContainer",
             {Variant(std::shared_ptr<HostObject>(p.field)), Variant(u"Form")});
  EXPECT_EQ(r.result->as_object(), p.form);
  for (const char* member : {"tklCheckF2Key", "tklIsFormOpen", "tklGetContainer"}) {
    const MemberInfo* info = Members().Find(member, MemberKind::kMethod);
    ASSERT_NE(info, nullptr) << member;
    EXPECT_TRUE(info->designed_here) << member;
  }
}

}  // namespace
}  // namespace norvik50
