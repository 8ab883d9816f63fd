// frmInput on the offscreen platform: typed keys, clicks and the close box
// on the real form, and the members driven by a dialog script.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <memory>

#include "core/library_state.h"
#include "dialogs/input_request.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_geometry_for_tests.h"
#include "dialogs/qt/input_form.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

class InputFormTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
};

TEST_F(InputFormTest, TheTitleLimitsWhatCanBeTyped) {
  InputForm form(MakeInputRequest(u"Name", u"08|Word", Variant(u"x"), u"", false, 1), nullptr);
  EXPECT_EQ(ShowAndAct(form, [&] { QTest::keyClicks(form.ValueBox(), "abcdefghijk"); }), 2);
  EXPECT_EQ(form.Text(), "abcdefgh");
  EXPECT_EQ(form.windowTitle(), "Word");
}

TEST_F(InputFormTest, TypingReplacesTheSelectedDefaultAndEnterConfirms) {
  InputForm form(MakeInputRequest(u"Name", u"t", Variant(u"x"), u"Vorgabe", false, 2), nullptr);
  EXPECT_EQ(form.ValueBox()->text(), "Vorgabe");
  EXPECT_EQ(ShowAndAct(form,
                       [&] {
                         EXPECT_EQ(form.focusWidget(), form.ValueBox());
                         EXPECT_EQ(form.ValueBox()->selectedText(), "Vorgabe");
                         QTest::keyClicks(form.ValueBox(), "Neu");
                         QTest::keyClick(form.ValueBox(), Qt::Key_Return);
                       }),
            1);
  EXPECT_EQ(form.Text(), "Neu");
}

TEST_F(InputFormTest, OnlyOkAnswersOne) {
  struct Case {
    const char* how;
    int want;
  };
  for (const Case& c : std::vector<Case>{{"ok", 1}, {"cancel", 2}, {"escape", 2}, {"close", 2}}) {
    InputForm form(MakeInputRequest(u"p", u"t", Variant(u"x"), u"d", false, 1), nullptr);
    const int answer = ShowAndAct(form, [&] {
      const std::string how = c.how;
      if (how == "ok") form.findChild<QPushButton*>("cmdOK")->click();
      if (how == "cancel") form.findChild<QPushButton*>("cmdCancel")->click();
      if (how == "escape") QTest::keyClick(form.ValueBox(), Qt::Key_Escape);
    });
    EXPECT_EQ(answer, c.want) << c.how;
    EXPECT_FALSE(form.isVisible()) << c.how;
  }
}

TEST_F(InputFormTest, ACodeShowsAnAsteriskPerCharacterAndKeepsTheClearText) {
  InputForm form(MakeInputRequest(u"Code", u"t", Variant(u"x"), u"", true, 1), nullptr);
  ShowAndAct(form, [&] { QTest::keyClicks(form.ValueBox(), "geheim"); });
  EXPECT_EQ(form.ValueBox()->displayText(), "******");
  EXPECT_EQ(form.Text(), "geheim");
  EXPECT_EQ(form.Facts().value, "******");
}

// At any prompt length, in German and English: nothing overlaps, the
// buttons are alike, the prompt is shown in full and nine pixels stay
// free below the box.
TEST_F(InputFormTest, NothingOverlapsAtAnyPromptLengthInEitherLanguage) {
  const std::vector<QString> prompts = {
      QString(), QString("kurz"), QString("Bitte geben Sie die Kundennummer ein:"),
      QString("Ein langer Hinweis ").repeated(20), QString("Zeile eins\nZeile zwei\nZeile drei"),
      QString("Zeile\n").repeated(12)};
  for (const int16_t language : {1, 2}) {
    for (const QString& prompt : prompts) {
      InputForm form(MakeInputRequest(prompt.toStdU16String(), u"t", Variant(u"x"), u"", false,
                                      language),
                     nullptr);
      SCOPED_TRACE(::testing::Message() << "language " << language << ": " << prompt.size()
                                        << " characters");
      EXPECT_EQ(LayoutFaults(form), std::vector<std::string>{});
      const QRect box = form.ValueBox()->geometry();
      EXPECT_EQ(form.height() - box.bottom() - 1, InputForm::kBottomGap);
      const QLabel* label = form.findChild<QLabel*>();
      EXPECT_GE(label->height(), label->heightForWidth(label->width()));
    }
  }
}

// Qt's own texts in the form (the menu of its text box) speak the form's
// language while it exists; afterwards the host's are as before.
TEST_F(InputFormTest, QtsOwnTextsSpeakTheFormsLanguage) {
  ScopedLocale english("en-US");
  struct Case {
    int16_t language;
    const char* undo;
  };
  for (const Case& c : {Case{1, "&R\u00fcckg\u00e4ngig"}, Case{2, "&Undo"}}) {
    {
      InputForm form(MakeInputRequest(u"p", u"t", Variant(u"x"), u"", false, c.language), nullptr);
      std::unique_ptr<QMenu> menu(form.ValueBox()->createStandardContextMenu());
      ASSERT_FALSE(menu->actions().isEmpty());
      // The text before the tab; the shortcut after it ("Strg+Z") is translated too.
      EXPECT_EQ(menu->actions().first()->text().section(QLatin1Char('\t'), 0, 0),
                QString::fromUtf8(c.undo))
          << c.language;
    }
    EXPECT_EQ(QCoreApplication::translate("QLineEdit", "&Undo"), "&Undo");
  }
}

class InputScriptTest : public QtMembersTest {
 protected:
  InputScriptTest() : QtMembersTest("de-DE") { SetLanguage(8); }
};

TEST_F(InputScriptTest, TheMembersTakeTypedTextAndLogTheForm) {
  dialogs_.Script(R"({"text":"Meier","click":1}
{"text":"geheim","click":"OK"}
{"text":"anders","click":"Abbrechen"}
{"keys":["Escape"]}
{"text":"12.5 kg","click":"OK"}
{"text":"nichts","close":true}
)");
  Variant name(u"alt");
  EXPECT_EQ(lib_.tklInputValue(u"Name?", u"08|Kunde", name, u"Vorgabe"), 1);
  EXPECT_EQ(name.as_string(), u"Meier");
  Variant code(u"x");
  EXPECT_EQ(lib_.tklInputCode(u"Code?", u"Anmeldung", code), 1);
  EXPECT_EQ(code.as_string(), u"geheim");
  EXPECT_EQ(lib_.tklInputCode(u"Code?", u"Anmeldung", code), 2);
  EXPECT_EQ(lib_.tklInputCode(u"Code?", u"Anmeldung", code), 2);  // Escape
  EXPECT_EQ(code.as_string(), u"geheim");
  // A number value reads the leading number; the text it gets back is
  // written in the locale's form.
  Variant weight(2.0);
  EXPECT_EQ(lib_.tklInputValue(u"Gewicht?", u"t", weight, u"2"), 1);
  EXPECT_EQ(weight.as_string(), u"12,5");
  Variant kept(u"alt");
  EXPECT_EQ(lib_.tklInputValue(u"p", u"t", kept, u"d"), 2);
  EXPECT_EQ(kept.as_string(), u"alt");

  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 6u);
  EXPECT_EQ(log[0].value("form").toString(), "frmInput");
  EXPECT_EQ(log[0].value("title").toString(), "Kunde");
  EXPECT_EQ(log[0].value("prompt").toString(), "Name?");
  // Language 8 is German: the captions come from the German texts.
  EXPECT_EQ(log[0].value("buttons").toVariant().toStringList(), (QStringList{"OK", "Abbrechen"}));
  EXPECT_EQ(log[0].value("default").toInt(), 1);
  EXPECT_EQ(log[0].value("value").toString(), "Meier");
  EXPECT_EQ(log[0].value("answer").toInt(), 1);
  // The log never holds a code in the clear.
  EXPECT_EQ(log[1].value("value").toString(), "******");
  EXPECT_EQ(log[2].value("answer").toInt(), 2);
  EXPECT_EQ(log[3].value("answer").toInt(), 2);
  EXPECT_EQ(log[5].value("answer").toInt(), 2);
}

TEST_F(InputScriptTest, EnglishCaptionsForEnglish) {
  SetLanguage(2);
  dialogs_.Script("{\"click\":\"Cancel\"}\n");
  Variant value(u"v");
  EXPECT_EQ(lib_.tklInputValue(u"p", u"t", value), 2);
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].value("buttons").toVariant().toStringList(), (QStringList{"OK", "Cancel"}));
  EXPECT_EQ(log[0].value("value").toString(), "");
}

// Through the command line: the typed text comes back as the written-back
// Value, and Cancel writes nothing back.
TEST(InputBatchTest, TheBatchAnswerCarriesTheTypedValue) {
  TempFolder temp;
  {
    std::ofstream(temp.File("script.jsonl")) << "{\"text\":\"4711\",\"click\":\"OK\"}\n"
                                             << "{\"text\":\"0815\",\"click\":2}\n";
  }
  const std::string env = "QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                          " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl");
  std::ofstream(temp.File("in.jsonl"))
      << R"({"id":0,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\VANTEX\\Global","Language",2]}
{"id":1,"member":"tklInputValue","args":["Number?","04|Customer",{"vt":"Long","v":1}]}
{"id":2,"member":"tklInputCode","args":["Code?","Login","old"]}
)";
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_NE(
      run.out.find(
          R"({"id":1,"ok":true,"result":{"vt":"Long","v":1},"byref":{"2":{"vt":"String","v":"4711"}}})"),
      std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find(R"({"id":2,"ok":true,"result":{"vt":"Long","v":2}})"), std::string::npos)
      << run.out;
}

}  // namespace
}  // namespace norvik50::qt
