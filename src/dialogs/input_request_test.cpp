// The input members without a window system: what the form is asked to
// show, how the confirmed text becomes the value, and the headless answer.
#include <gtest/gtest.h>

#include <cmath>

#include "core/library_state.h"
#include "dialogs/input_request.h"
#include "norvik50/dispatch.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

TEST(LeadingNumberTest, ReadsTheNumberAtTheStartWithAPointAsDecimal) {
  struct Case {
    std::u16string text;
    double want;
  };
  const std::vector<Case> cases = {
      {u"12.5kg", 12.5}, {u"  -3.25", -3.25}, {u" 1 2 3", 123},  // blanks inside are skipped
      {u"\t4\n5", 45},   {u"1,5", 1},         {u"abc", 0},      {u"", 0},
      {u".5", 0.5},      {u"-.5x", -0.5},     {u"+7", 7},       {u"1.2.3", 1.2},
      {u"2e3", 2000},    {u"2D-2", 0.02},     {u"2e", 2},       {u"2e-", 2},
      {u"2ex", 2},       {u"--1", 0},         {u".", 0},        {u"1e999", 0},  // beyond Double
      {u"0012", 12},     {u"5 e 2", 500},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(LeadingNumber(c.text), c.want) << std::string(c.text.begin(), c.text.end());
  }
}

TEST(InputRequestTest, TwoDigitsAndABarLimitTheLengthAndLeaveTheRestAsCaption) {
  struct Case {
    std::u16string title;
    int32_t max_length;
    std::u16string caption;
  };
  const std::vector<Case> cases = {
      {u"08|Word", 8, u"Word"},      {u"12|", 12, u""},         {u"00|x", 0, u"x"},
      {u"99|a|b", 99, u"a|b"},       {u"8|Word", 0, u"8|Word"}, {u"ab|Word", 0, u"ab|Word"},
      {u"123|Word", 0, u"123|Word"}, {u"08", 0, u"08"},         {u"", 0, u""},
  };
  for (const Case& c : cases) {
    const InputRequest r = MakeInputRequest(u"p", c.title, Variant(u"v"), u"", false, 1);
    EXPECT_EQ(r.max_length, c.max_length) << std::string(c.title.begin(), c.title.end());
    EXPECT_EQ(r.title, c.caption) << std::string(c.title.begin(), c.title.end());
  }
}

TEST(InputRequestTest, TheBoxStartsWithTheDefaultNeverWithTheValue) {
  struct Case {
    Variant value;
    std::u16string default_text;
    std::u16string want;
  };
  const std::vector<Case> cases = {
      {Variant(u"old"), u"", u""},  // text and no default: empty box
      {Variant(u"old"), u"new", u"new"}, {Variant(int32_t{5}), u"7", u"7"},
      {Variant(), u"new", u""},  // Empty, Null and "" ignore the default
      {Variant::Null(), u"new", u""},    {Variant(u""), u"new", u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeInputRequest(u"p", u"t", c.value, c.default_text, false, 1).initial_text, c.want);
  }
}

TEST(InputRequestTest, CaptionsFollowTheLanguage) {
  struct Case {
    int16_t language;
    std::u16string ok, cancel;
  };
  // Language 8 is a German one.
  for (const Case& c : std::vector<Case>{
           {1, u"OK", u"Abbrechen"}, {2, u"OK", u"Cancel"}, {8, u"OK", u"Abbrechen"}}) {
    const InputRequest r = MakeInputRequest(u"p", u"t", Variant(u"v"), u"", true, c.language);
    EXPECT_EQ(r.ok_caption, c.ok) << c.language;
    EXPECT_EQ(r.cancel_caption, c.cancel) << c.language;
    EXPECT_TRUE(r.masked);
  }
}

TEST(InputRequestTest, NumbersAreReadOnlyForValuesOfANumberType) {
  ScopedLocale locale("en-US");
  EXPECT_EQ(ConfirmedValue(u"12.5kg", Variant(int16_t{1})), u"12.5");
  EXPECT_EQ(ConfirmedValue(u"12.5kg", Variant(int32_t{1})), u"12.5");
  EXPECT_EQ(ConfirmedValue(u"x", Variant(1.5f)), u"0");
  EXPECT_EQ(ConfirmedValue(u"3", Variant(2.0)), u"3");
  // Text, Currency, Boolean and Empty values take the text as typed.
  EXPECT_EQ(ConfirmedValue(u"12.5kg", Variant(u"1")), u"12.5kg");
  EXPECT_EQ(ConfirmedValue(u"12.5kg", Variant(true)), u"12.5kg");
  EXPECT_EQ(ConfirmedValue(u"12.5kg", Variant()), u"12.5kg");
}

class RecordingInput : public UserInterface {
 public:
  int32_t ShowInput(const InputRequest& request, std::u16string& text) override {
    requests.push_back(request);
    if (answer == 1) text = typed;
    return answer;
  }
  std::vector<InputRequest> requests;
  std::u16string typed;
  int32_t answer = 1;
};

class InputMembersTest : public ::testing::Test {
 protected:
  InputMembersTest() {
    SetUserInterface(ui_);
    lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(int32_t{2}));
  }
  ~InputMembersTest() override {
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }

  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedLocale locale_{"en-US"};
  std::shared_ptr<RecordingInput> ui_ = std::make_shared<RecordingInput>();
  LIB lib_;
};

TEST_F(InputMembersTest, OkWritesTheTextAndCancelLeavesTheValue) {
  Variant value(u"old");
  ui_->typed = u"typed";
  EXPECT_EQ(lib_.tklInputValue(u"Name?", u"08|Word", value, u"dflt"), 1);
  EXPECT_EQ(value.as_string(), u"typed");
  const InputRequest& shown = ui_->requests.at(0);
  EXPECT_EQ(shown.title, u"Word");
  EXPECT_EQ(shown.max_length, 8);
  EXPECT_EQ(shown.prompt, u"Name?");
  EXPECT_EQ(shown.initial_text, u"dflt");
  EXPECT_EQ(shown.cancel_caption, u"Cancel");
  EXPECT_FALSE(shown.masked);

  ui_->answer = 2;
  Variant kept(u"old");
  EXPECT_EQ(lib_.tklInputCode(u"Code?", u"t", kept), 2);
  EXPECT_EQ(kept.as_string(), u"old");
  EXPECT_TRUE(ui_->requests.at(1).masked);
}

TEST_F(InputMembersTest, ANumberValueGetsTheLeadingNumberAsText) {
  Variant value(int32_t{5});
  ui_->typed = u"42.5 pieces";
  EXPECT_EQ(lib_.tklInputValue(u"How many?", u"t", value, u"5"), 1);
  EXPECT_EQ(value.type(), VarType::kString);
  EXPECT_EQ(value.as_string(), u"42.5");
}

TEST_F(InputMembersTest, TheDispatchWritesValueBackOnlyAfterOk) {
  ui_->typed = u"12.5kg";
  const InvokeResult ok =
      Invoke(lib_, "tklInputValue", {Variant(u"p"), Variant(u"t"), Variant(int32_t{1})});
  EXPECT_EQ(ok.result->as_long(), 1);
  EXPECT_EQ(ok.by_ref.at(2).as_string(), u"12.5");
  ui_->answer = 2;
  const InvokeResult cancelled =
      Invoke(lib_, "tklInputCode", {Variant(u"p"), Variant(u"t"), Variant(u"v"), Variant(u"d")});
  EXPECT_EQ(cancelled.result->as_long(), 2);
  EXPECT_TRUE(cancelled.by_ref.empty());
}

TEST_F(InputMembersTest, HeadlessAnswersCancelWithoutBlocking) {
  SetUserInterface(nullptr);
  Variant value(u"old");
  EXPECT_EQ(lib_.tklInputValue(u"p", u"t", value, u"d"), 2);
  EXPECT_EQ(lib_.tklInputCode(u"p", u"t", value, u"d"), 2);
  EXPECT_EQ(value.as_string(), u"old");
}

}  // namespace
}  // namespace norvik50
