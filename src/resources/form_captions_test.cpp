// A form's captions from the real resource libraries in both languages,
// and the rules for ids and access keys.
#include "resources/form_captions.h"

#include <filesystem>

#include "norvik50/dispatch.h"
#include "norvik50/error.h"
#include "norvik50/form.h"
#include "norvik50/resource_module.h"
#include "norvik50/text_control.h"
#include "resources/resource_test_support.h"

namespace norvik50 {
namespace {

using testing::FixturePath;
using testing::ResourceMachineTest;

TEST(FormCaptionRulesTest, WhatAResourceIdNames) {
  struct Case {
    const char16_t* res_id;
    std::optional<int32_t> number;
  };
  const Case cases[] = {
      {u"1001", 1001},
      {u"0", 0},
      {u"007", 7},
      {u"2147483647", 2147483647},
      {u"2147483648", std::nullopt},  // past a Long: a name
      {u"99999999999", std::nullopt},
      {u"-1", std::nullopt},
      {u"+5", std::nullopt},
      {u" 7", std::nullopt},
      {u"1e3", std::nullopt},
      {u"cmdOK", std::nullopt},
      {u"\uff11", std::nullopt},  // a full-width digit is no digit here
  };
  for (const Case& c : cases) {
    EXPECT_EQ(StringResourceNumber(c.res_id), c.number) << ToUtf8(c.res_id);
  }
}

TEST(FormCaptionRulesTest, AccessKeyMarksGoWhereNoneIsShown) {
  struct Case {
    const char16_t* text;
    const char16_t* plain;
  };
  const Case cases[] = {
      {u"&Speichern", u"Speichern"},
      {u"Q&&A", u"Q&A"},
      {u"&&&Mehr", u"&Mehr"},
      {u"Ende&", u"Ende"},  // a mark with nothing after it
      {u"", u""},
      {u"no marks", u"no marks"},
  };
  for (const Case& c : cases) EXPECT_EQ(WithoutAccessKey(c.text), c.plain);
  EXPECT_TRUE(ShowsNoAccessKey(CaptionPlace::kTitle));
  EXPECT_TRUE(ShowsNoAccessKey(CaptionPlace::kToolTip));
  EXPECT_TRUE(ShowsNoAccessKey(CaptionPlace::kColumnHeader));
  EXPECT_FALSE(ShowsNoAccessKey(CaptionPlace::kCaption));
  EXPECT_FALSE(ShowsNoAccessKey(CaptionPlace::kTab));
}

class FormCaptionsTest : public ResourceMachineTest {
 protected:
  FormCaptionsTest() {
    for (const char* name : {"Captions_DE.dll", "Captions_EN.dll"}) {
      std::filesystem::copy_file(FixturePath(name), temp_.File(std::string("c/App/") + name));
    }
    SetMachineValue(u"ResourceDLL", u"C:\\App\\Captions_%L.dll");
  }
  ~FormCaptionsTest() override { SetResourceModuleOpener(nullptr); }

  // The customer form as designed, every text naming its resource.
  static std::shared_ptr<MemoryForm> CustomerForm() {
    auto form = std::make_shared<MemoryForm>(u"frmCustomer");
    form->caption = u"Customer";
    form->res_id = u"1000";
    form->controls = {
        {u"cmdSave", u"Save", u"1001", u"designed tip", u"1002"},
        {u"labName", u"Name", u"1003", u"", u""},
        {u"cmdCancel", u"Cancel", u"cmdCancel", u"", u""},  // the built-in document
        {u"labNote", u"designed note", u"1007", u"", u""},  // empty (German), missing (English)
        {u"labLost", u"designed", u"4711", u"kept", u"notAnItem"},
        {u"labPlain", u"plain", u"", u"", u""},  // names no resource
    };
    auto list = std::make_shared<MemoryListView>(u"lvwOrders");
    list->columns = {{u"Orders", 1500, u"1004"}, {u"Qty", 900, u"1005"}, {u"Date", 900, u""}};
    form->list_views = {list};
    return form;
  }
  static std::vector<std::u16string> Texts(const MemoryForm& form) {
    std::vector<std::u16string> texts = {form.caption};
    for (const auto& control : form.controls) {
      texts.push_back(control.caption);
      texts.push_back(control.tooltip);
    }
    for (const auto& column : form.list_views[0]->columns) texts.push_back(column.header);
    return texts;
  }
};

TEST_F(FormCaptionsTest, EveryTextInBothLanguages) {
  struct Case {
    int32_t language;
    int32_t set;  // title, two captions, a tooltip, the built-in item, two headers
    std::vector<std::u16string> texts;
  };
  const Case cases[] = {
      {LANG_GERMAN,
       7,
       {u"Kunde bearbeiten", u"&Speichern", u"Speichert den Kunden & schließt", u"&Name:", u"",
        u"Abbrechen", u"", u"designed note", u"", u"designed", u"kept", u"plain", u"",
        u"Bestellungen", u"Menge", u"Date"}},
      {LANG_ENGLISH,
       7,
       {u"Edit customer", u"&Save", u"Saves the customer & closes", u"&Name:", u"", u"Cancel", u"",
        u"designed note", u"", u"designed", u"kept", u"plain", u"", u"Orders", u"Quantity",
        u"Date"}},
  };
  for (const Case& c : cases) {
    SetLanguage(c.language);
    auto form = CustomerForm();
    EXPECT_EQ(lib_.tklLoadFormCaptions(form), c.set) << c.language;
    EXPECT_EQ(Texts(*form), c.texts) << c.language;
  }
  EXPECT_TRUE(LoggedErrors().empty());
  EXPECT_TRUE(ui_->messages.empty());
}

TEST_F(FormCaptionsTest, TheLibraryIsLoadedOncePerCall) {
  int opened = 0;
  SetResourceModuleOpener([&opened](std::u16string_view path) {
    ++opened;
    return OpenPeResourceModule(*ToLinuxPath(path));
  });
  SetLanguage(LANG_GERMAN);
  auto form = CustomerForm();
  for (int i = 0; i < 100; ++i) form->controls.push_back({u"lab", u"x", u"1003", u"y", u"1002"});
  EXPECT_EQ(lib_.tklLoadFormCaptions(form), 207);
  EXPECT_EQ(opened, 1);
  // A form that names only items of the built-in document opens none.
  auto buttons = std::make_shared<MemoryForm>(u"frmAsk");
  buttons->controls = {{u"cmdYes", u"Yes", u"yes", u"", u""}, {u"cmdNo", u"No", u"no", u"", u""}};
  EXPECT_EQ(lib_.tklLoadFormCaptions(buttons), 2);
  EXPECT_EQ(buttons->controls[0].caption, u"&Ja");
  EXPECT_EQ(opened, 1);
}

TEST_F(FormCaptionsTest, ALibraryThatCannotBeLoadedIsReportedOnceAndChangesNothing) {
  SetLanguage(LANG_FRENCH);  // there is no Captions_FR.dll
  auto form = CustomerForm();
  // The built-in document still answers its item.
  EXPECT_EQ(lib_.tklLoadFormCaptions(form), 1);
  std::vector<std::u16string> expected = Texts(*CustomerForm());
  expected[5] = u"Interrompre";
  EXPECT_EQ(Texts(*form), expected);
  ASSERT_EQ(LoggedErrors().size(), 1u);
  EXPECT_EQ(LoggedErrors()[0],
            "ERR=-2147221504 'LoadLibrary 'C:\\App\\Captions_FR.dll' failed.' "
            "(Source=Norvik50.tklLoadFormCaptions)");
  EXPECT_EQ(ui_->messages.size(), 1u);
}

// A form that notes how many message boxes and language choosers had been
// shown by the time it asked for each text.
class WatchingForm final : public Form {
 public:
  explicit WatchingForm(const testing::RecordingUi& ui) : ui_(ui) {}
  std::u16string Name() const override { return u"frmWatch"; }
  WindowPlacement Placement() const override { return {}; }
  void SetPlacement(const WindowPlacement&) override {}
  int32_t FillCaptions(const CaptionLookup& lookup) override {
    for (const char16_t* id : {u"1001", u"1003", u"yes"}) {
      lookup(CaptionPlace::kCaption, id);
      boxes_seen.push_back(ui_.messages.size());
      choosers_seen.push_back(ui_.chooser_calls);
    }
    return 0;
  }
  std::vector<std::size_t> boxes_seen;
  std::vector<int> choosers_seen;

 private:
  const testing::RecordingUi& ui_;
};

TEST_F(FormCaptionsTest, NoWindowOpensWhileTheFormIsFilled) {
  // No language stored: the chooser is asked before the first text.
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(u"-"));
  ui_->choice = LANG_FRENCH;  // there is no Captions_FR.dll
  const auto form = std::make_shared<WatchingForm>(*ui_);
  lib_.tklLoadFormCaptions(form);
  EXPECT_EQ(form->choosers_seen, (std::vector<int>{1, 1, 1}));
  // The failed library's message box comes once the form is done.
  EXPECT_EQ(form->boxes_seen, (std::vector<std::size_t>{0, 0, 0}));
  EXPECT_EQ(ui_->messages.size(), 1u);
}

TEST_F(FormCaptionsTest, TheRegKeyBecomesTheBaseKey) {
  SetMachineValue(u"ResourceDLL", u"C:\\App\\Captions_%L.dll", u"Software\\Host");
  lib_.tkrSetValue(HKEY_CURRENT_USER, u"Software\\Host", u"Language", Variant(int32_t{2}));
  SetLanguage(LANG_GERMAN);
  auto form = CustomerForm();
  lib_.tklLoadFormCaptions(form, u"Software\\Host");
  EXPECT_EQ(form->caption, u"Edit customer");
  EXPECT_EQ(lib_.tklRegKey(), u"Software\\Host");
}

TEST_F(FormCaptionsTest, AnythingButAFormIsRefused) {
  for (const std::shared_ptr<HostObject>& object :
       {std::shared_ptr<HostObject>(),
        std::shared_ptr<HostObject>(std::make_shared<MemoryTextBox>()),
        std::shared_ptr<HostObject>(std::make_shared<MemoryListView>(u"lvw"))}) {
    try {
      lib_.tklLoadFormCaptions(object);
      ADD_FAILURE() << "no error";
    } catch (const Error& e) {
      EXPECT_EQ(e.number(), kErrInvalidCall);
    }
  }
}

TEST_F(FormCaptionsTest, ByName) {
  SetLanguage(LANG_ENGLISH);
  auto form = CustomerForm();
  const auto r = Invoke(lib_, "tklLoadFormCaptions", {Variant(std::shared_ptr<HostObject>(form))});
  EXPECT_EQ(r.result->as_long(), 7);
  EXPECT_EQ(r.by_ref.count(0), 1u);
  EXPECT_EQ(form->controls[0].caption, u"&Save");
  EXPECT_TRUE(Members().Find("tklLoadFormCaptions", MemberKind::kMethod)->designed_here);
}

}  // namespace
}  // namespace norvik50
