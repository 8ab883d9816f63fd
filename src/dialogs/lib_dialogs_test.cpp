// The dialog members against a user interface that records each request.
#include <gtest/gtest.h>

#include "core/library_state.h"
#include "norvik50/dispatch.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class RecordingDialogs : public UserInterface {
 public:
  int32_t ShowMessageBox(const MessageBoxRequest& request) override {
    requests.push_back(request);
    return answer;
  }
  int32_t AskYesNo(std::u16string_view question, std::u16string_view title, bool default_no,
                   int16_t language) override {
    asked = std::u16string(question) + u"|" + std::u16string(title);
    asked_default_no = default_no;
    asked_language = language;
    return answer;
  }
  int16_t GetAnswer(std::u16string_view prompt, std::u16string_view, std::u16string_view title,
                    const std::vector<std::u16string>& given) override {
    asked = std::u16string(prompt) + u"|" + std::u16string(title);
    captions = given;
    return static_cast<int16_t>(answer);
  }
  std::vector<MessageBoxRequest> requests;
  std::u16string asked;
  bool asked_default_no = false;
  int16_t asked_language = -1;
  std::vector<std::u16string> captions;
  int32_t answer = 1;
};

class DialogMembersTest : public ::testing::Test {
 protected:
  DialogMembersTest() {
    SetUserInterface(ui_);
    SetHostApplication(u"host", u"Host Title");
    SetLanguage(2);
  }
  ~DialogMembersTest() override {
    SetUserInterface(nullptr);
    SetHostApplication(u"", u"");
    SetBaseKey(u"");
  }
  void SetLanguage(int32_t id) {
    lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(id));
  }

  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedEnv title_{"NORVIK50_APP_TITLE", std::nullopt};
  std::shared_ptr<RecordingDialogs> ui_ = std::make_shared<RecordingDialogs>();
  LIB lib_;
};

TEST_F(DialogMembersTest, SizeInThePromptAndExplicitSizesWin) {
  struct Case {
    std::u16string prompt;
    int32_t width, height, want_width, want_height;
    std::u16string want_prompt;
  };
  const std::vector<Case> cases = {
      {u"Text|6000|3000", 0, 0, 6000, 3000, u"{Text}"},
      {u"Text|6000|3000", 7000, 4000, 7000, 4000, u"{Text}"},
      {u"Text|6000", 0, 0, 6000, 0, u"{Text}"},
      {u"Text|6000|3000|9|x", 0, 0, 6000, 3000, u"{Text}"},  // further pieces ignored
      {u"Plain", 0, 0, 0, 0, u"{Plain}"},
      {u"Text|-5|-5", 0, 0, 0, 0, u"{Text}"},  // below 1: the designed size
  };
  for (const Case& c : cases) {
    ui_->requests.clear();
    std::u16string title = u"T";
    EXPECT_EQ(lib_.tklExtMsgBox(c.prompt, 0, &title, c.width, c.height), 1);
    ASSERT_EQ(ui_->requests.size(), 1u);
    EXPECT_EQ(ui_->requests[0].form, u"frmMsgBox");
    EXPECT_EQ(ui_->requests[0].prompt, c.want_prompt);
    EXPECT_EQ(ui_->requests[0].width_twips, c.want_width);
    EXPECT_EQ(ui_->requests[0].height_twips, c.want_height);
  }
}

TEST_F(DialogMembersTest, SizePieceThatIsNoNumberFailsWithTenAndShowsNothing) {
  std::u16string title;
  EXPECT_EQ(lib_.tklExtMsgBox(u"Text|wide|3000", 0, &title), 10);
  EXPECT_TRUE(ui_->requests.empty());
}

TEST_F(DialogMembersTest, EmptyTitleBecomesTheApplicationTitleAndIsWrittenBack) {
  std::u16string title;
  lib_.tklExtMsgBox(u"x", 0, &title);
  EXPECT_EQ(title, u"Host Title");
  EXPECT_EQ(ui_->requests.at(0).title, u"Host Title");
  // The dispatch writes it back too, and only when it was empty.
  const InvokeResult r =
      Invoke(lib_, "tklExtMsgBox", {Variant(u"x"), Variant(int32_t{0}), Variant(u"")});
  EXPECT_EQ(r.by_ref.at(2).as_string(), u"Host Title");
  const InvokeResult kept =
      Invoke(lib_, "tklExtMsgBox", {Variant(u"x"), Variant(int32_t{0}), Variant(u"Mine")});
  EXPECT_TRUE(kept.by_ref.empty());
}

TEST_F(DialogMembersTest, ExtAskIsAYesNoQuestionWithNoAsDefaultOnRequest) {
  ui_->answer = 6;
  EXPECT_TRUE(lib_.tklExtAsk(Variant(int32_t{42})));
  EXPECT_EQ(ui_->requests.back().style, 36);
  EXPECT_EQ(ui_->requests.back().prompt, u"{42}");
  EXPECT_EQ(ui_->requests.back().default_button, 1);
  ui_->answer = 7;
  EXPECT_FALSE(lib_.tklExtAsk(Variant(u"q"), nullptr, 0, 0, true));
  EXPECT_EQ(ui_->requests.back().style, 36 + 256);
  EXPECT_EQ(ui_->requests.back().default_button, 2);
  EXPECT_EQ(ui_->requests.back().symbol, 32);
}

TEST_F(DialogMembersTest, MsgBoxCarriesColourFontAndLanguageCaptions) {
  SetLanguage(1);
  EXPECT_EQ(lib_.tklMsgBox(u"Prompt", u"Detail", 4 + 32, u"", 4, 8, false), 1);
  const MessageBoxRequest& r = ui_->requests.at(0);
  EXPECT_EQ(r.form, u"frmStdMsg");
  EXPECT_EQ(r.title, u"Host Title");
  EXPECT_EQ(r.prompt_rgb, 0x800000u);
  EXPECT_EQ(r.font_size, 8);
  EXPECT_FALSE(r.font_bold);
  EXPECT_EQ(r.language, 1);
  ASSERT_EQ(r.buttons.size(), 2u);
  EXPECT_EQ(r.buttons[0].caption, u"&Ja");
  EXPECT_EQ(r.buttons[1].caption, u"&Nein");
}

TEST_F(DialogMembersTest, PromptColourOutsideThePaletteFailsWithoutABox) {
  for (int32_t colour : {16, -1, 255}) {
    EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 0, u"t", colour), 10);
  }
  EXPECT_TRUE(ui_->requests.empty());
}

TEST_F(DialogMembersTest, HeadlessAnswersFailedWithoutBlocking) {
  SetUserInterface(nullptr);
  EXPECT_EQ(lib_.tklExtMsgBox(u"x"), 10);
  EXPECT_EQ(lib_.tklMsgBox(u"x", u""), 10);
  EXPECT_FALSE(lib_.tklAsk(Variant(u"x")));
  EXPECT_EQ(lib_.tklGetAnswer(u"p", u"d", u"t", SafeArray(0, {Variant(u"A")})), 0);
}

TEST_F(DialogMembersTest, AskUsesTheSystemBoxWithTheApplicationTitleWhenMissing) {
  ui_->answer = 6;
  EXPECT_TRUE(lib_.tklAsk(Variant(u"Sure?")));
  EXPECT_EQ(ui_->asked, u"Sure?|Host Title");
  EXPECT_FALSE(ui_->asked_default_no);
  ui_->answer = 7;
  EXPECT_FALSE(lib_.tklAsk(Variant(u"Sure?"), Variant(u""), true));
  EXPECT_EQ(ui_->asked, u"Sure?|");  // a title given as "" stays ""
  EXPECT_TRUE(ui_->asked_default_no);
}

// The system box speaks the stored language; with none stored it follows
// the locale (0), and asking never brings up the chooser or stores one.
TEST_F(DialogMembersTest, AskSpeaksTheStoredLanguageWithoutChoosingOne) {
  lib_.tklAsk(Variant(u"q"));
  EXPECT_EQ(ui_->asked_language, 2);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(u"-"));
  lib_.tklAsk(Variant(u"q"));
  EXPECT_EQ(ui_->asked_language, 0);
  EXPECT_EQ(lib_.tkrGetLong(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", -1), -1);
}

TEST_F(DialogMembersTest, GetAnswerPassesTheCaptionsWhateverTheLowerBound) {
  ui_->answer = 2;
  const SafeArray captions(5,
                           {Variant(u"&Speichern"), Variant(u"&Verwerfen"), Variant(int32_t{3})});
  EXPECT_EQ(lib_.tklGetAnswer(u"p", u"d", u"", captions), 2);
  EXPECT_EQ(ui_->captions, (std::vector<std::u16string>{u"&Speichern", u"&Verwerfen", u"3"}));
}

TEST_F(DialogMembersTest, ErrorMessageShowsThroughTheStandardBox) {
  SetLanguage(1);
  lib_.tklErrorMsg(-2147467259, u"Unspecified", u"");
  const MessageBoxRequest& r = ui_->requests.at(0);
  EXPECT_EQ(r.form, u"frmStdMsg");
  EXPECT_EQ(r.prompt, u"Laufzeitfehler '&H80004005':");
  EXPECT_EQ(r.detail, u"Unspecified");
  EXPECT_EQ(r.style, 48);
  EXPECT_EQ(r.symbol, 48);
  EXPECT_EQ(r.title, u"Host Title");
  EXPECT_EQ(r.buttons.at(0).caption, u"OK");
}

}  // namespace
}  // namespace norvik50
