// The dialog script and the dialog log: in process through the members,
// and end to end through `norvik50 batch`.
#include <gtest/gtest.h>

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>

#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "norvik50/text_control.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

class DialogScriptTest : public QtMembersTest {
 protected:
  DialogScriptTest() : QtMembersTest("de-DE") {
    SetHostApplication(u"host", u"Host");
    SetLanguage(1);
  }
  ~DialogScriptTest() override { SetHostApplication(u"", u""); }
};

TEST_F(DialogScriptTest, EachDialogTakesTheNextLine) {
  dialogs_.Script(R"({"keys":["J"]}
{"keys":["Escape"]}
{"click":2}
{"click":"&Nein"}
{"close":true}
{"keys":["Tab","Space"]}
)");
  EXPECT_EQ(lib_.tklMsgBox(u"Weiter?", u"Details", 4 + 32), 6);
  EXPECT_EQ(lib_.tklExtMsgBox(u"{\\b Abbruch}", 2), 5);
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 3), 7);
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 3), 7);
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 3), 0);
  // Tab moves the focus from the default (Ja) to Nein, Space presses it.
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 4), 7);
  // The script is used up: the next box closes at once by its close box.
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 0), 0);
  // A member that fails before showing anything takes no line.
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 0, u"", 16), 10);

  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 7u);
  EXPECT_EQ(log[0].value("form").toString(), "frmStdMsg");
  EXPECT_EQ(log[0].value("title").toString(), "Host");
  EXPECT_EQ(log[0].value("prompt").toString(), "Weiter?");
  EXPECT_EQ(log[0].value("detail").toString(), "Details");
  EXPECT_EQ(LoggedButtons(log[0]), (QStringList{"&Ja", "&Nein"}));
  EXPECT_EQ(log[0].value("default").toInt(), 1);
  EXPECT_EQ(log[0].value("cancel").toInt(), 2);
  EXPECT_EQ(log[0].value("symbol").toInt(), 32);
  EXPECT_EQ(log[0].value("answer").toInt(), 6);
  EXPECT_EQ(log[1].value("form").toString(), "frmMsgBox");
  EXPECT_EQ(log[1].value("prompt").toString(), "Abbruch");
  EXPECT_EQ(LoggedButtons(log[1]), (QStringList{"&Abbrechen", "&Wiederholen", "&Ignorieren"}));
  EXPECT_EQ(log[1].value("width").toInt(), 6000);  // the designed outer size
  EXPECT_EQ(log[1].value("height").toInt(), 2850);
  EXPECT_EQ(log[4].value("answer").toInt(), 0);
}

TEST_F(DialogScriptTest, ALineMayBeStepsDoneInOrder) {
  dialogs_.Script(R"([{"text":"Meier"},{"keys":["Enter"]}]
[{"keys":["Tab"]},{"keys":["Space"]}]
[{"text":"x"},{"click":"OK"},{"text":"never typed"}]
[]
)");
  Variant name(u"alt");
  // Typed first, then confirmed.
  EXPECT_EQ(lib_.tklInputValue(u"Name?", u"Kunde", name), 1);
  EXPECT_EQ(name.as_string(), u"Meier");
  // Tab moves the focus from Ja to Nein, the next step presses it.
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 4), 7);
  // A step left over after the dialog closed is not acted out.
  Variant other(u"alt");
  EXPECT_EQ(lib_.tklInputValue(u"Name?", u"Kunde", other), 1);
  EXPECT_EQ(other.as_string(), u"x");
  // No steps at all: closed by its close box.
  EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", 3), 0);

  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 4u);
  EXPECT_FALSE(log[0].contains("warnings"));
  EXPECT_FALSE(log[1].contains("warnings"));
  EXPECT_EQ(log[2].value("warnings").toVariant().toStringList(),
            QStringList{"the dialog closed before step 3 of its script line"});
  EXPECT_FALSE(log[3].contains("warnings"));
}

TEST_F(DialogScriptTest, TheLogWarnsOfWhatTheDialogClosedBefore) {
  struct Case {
    const char* line;
    int answer;           // tklInputValue's
    const char* value;    // what Value holds afterwards
    const char* warning;  // the one warning in the log
  };
  const Case cases[] = {
      // The keys of one object come first: Enter confirms an empty box.
      {R"({"text":"abc","keys":["Enter"]})", 1, "",
       "the keys closed the dialog before the text \"abc\" was typed (the keys of a line come "
       "first; a list of steps types first: [{\"text\":...},{\"keys\":[...]}])"},
      {R"({"keys":["Escape","Enter"]})", 2, "alt",
       "the dialog closed before the key \"Enter\" was pressed"},
      {R"({"keys":["Escape"],"click":["OK"]})", 2, "alt",
       "the dialog closed before the click on \"OK\""},
      // Lines that are not steps act out nothing (the box is closed) or
      // only their objects.
      {R"(Enter)", 2, "alt",
       "the script line is neither an object nor a list of objects (illegal value)"},
      {R"([{"text":"b"},"Enter",{"click":1}])", 1, "b",
       "step 2 of the script line is not an object; skipped"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    dialogs_.Script(std::string(c.line) + "\n");
    std::remove(dialogs_.LogPath().c_str());
    Variant value(u"alt");
    EXPECT_EQ(lib_.tklInputValue(u"Wert?", u"t", value), c.answer);
    EXPECT_EQ(value.as_string(), QString::fromUtf8(c.value).toStdU16String());
    const auto log = dialogs_.Log();
    ASSERT_EQ(log.size(), 1u);
    EXPECT_EQ(log[0].value("warnings").toVariant().toStringList(),
              QStringList{QString::fromUtf8(c.warning)});
  }
}

// With the script used up, each dialog is closed by its close box at once:
// what every member then answers, as the README's table says.
TEST_F(DialogScriptTest, EveryDialogClosedWithoutAnAnswer) {
  dialogs_.Script("");
  // The message boxes were shown and no button was pressed: 0, never 10.
  for (int32_t style : {0, 1, 2, 3, 4, 5}) {
    EXPECT_EQ(lib_.tklExtMsgBox(u"p", style), 0) << style;
    EXPECT_EQ(lib_.tklMsgBox(u"p", u"d", style), 0) << style;
  }
  EXPECT_FALSE(lib_.tklExtAsk(Variant(u"q")));
  EXPECT_FALSE(lib_.tklAsk(Variant(u"q")));
  const SafeArray captions(0, {Variant(u"&A"), Variant(u"&B")});
  EXPECT_EQ(lib_.tklGetAnswer(u"p", u"d", u"t", captions), 0);
  Variant value(u"alt");
  EXPECT_EQ(lib_.tklInputValue(u"p", u"t", value, u"neu"), 2);
  EXPECT_EQ(lib_.tklInputCode(u"p", u"t", value, u"neu"), 2);
  EXPECT_EQ(value.as_string(), u"alt");
  auto field = std::make_shared<MemoryTextBox>();
  field->SetText(u"Meier");
  lib_.tklZoomTextBox(field);
  EXPECT_EQ(field->Text(), u"Meier");
  EXPECT_EQ(lib_.tklChoosePath(u"Z:\\"), u"");
  EXPECT_EQ(lib_.tklChoosePath(), u"");
  std::u16string file = u"Z:\\tmp\\x.txt";
  EXPECT_FALSE(lib_.tklFileDialog(u"All (*.*)|*.*", u"t", file, 0, 0, u"", true));
  EXPECT_FALSE(lib_.tklFileDialog(u"All (*.*)|*.*", u"t", file, 0, 0, u"", false));
  EXPECT_EQ(file, u"Z:\\tmp\\x.txt");

  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 22u);
  // The system box's close box is its No.
  EXPECT_EQ(log[13].value("form").toString(), "system");
  EXPECT_EQ(log[13].value("answer").toInt(), 7);
}

TEST_F(DialogScriptTest, SizeFromThePromptReachesTheLog) {
  dialogs_.Script("{\"keys\":[\"Enter\"]}\n");
  EXPECT_EQ(lib_.tklExtMsgBox(u"Text|6000|3000"), 1);
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].value("width").toInt(), 6000);
  EXPECT_EQ(log[0].value("height").toInt(), 3000);
}

TEST_F(DialogScriptTest, AnswerBoxQuestionAndChooser) {
  dialogs_.Script(R"({"keys":["V"]}
{"keys":["Enter"]}
{"keys":["Tab"]}
{"keys":["Escape"]}
)");
  const SafeArray captions(1, {Variant(u"&Speichern"), Variant(u"&Verwerfen"), Variant(u"Nichts")});
  EXPECT_EQ(lib_.tklGetAnswer(u"p", u"d", u"", captions), 2);
  // The system box with No as default: Enter answers No.
  EXPECT_FALSE(lib_.tklAsk(Variant(u"Sicher?"), std::nullopt, true));
  // The chooser: closing it any way keeps the selection (the first row).
  // A fresh base key has no language stored yet.
  EXPECT_EQ(lib_.tklLanguage(u"SOFTWARE\\Fresh"), 1);
  EXPECT_EQ(lib_.tklGetAnswer(u"p", u"d", u"t", captions), 0);
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 4u);
  EXPECT_EQ(log[0].value("form").toString(), "frmAnswer");
  EXPECT_EQ(log[0].value("title").toString(), "Benutzereingabe notwendig");
  EXPECT_EQ(log[1].value("form").toString(), "system");
  EXPECT_EQ(log[1].value("default").toInt(), 2);
  // Qt's own captions, translated for the German locale.
  EXPECT_EQ(LoggedButtons(log[1]), (QStringList{"&Ja", "&Nein"}));
  EXPECT_EQ(log[2].value("form").toString(), "frmChooseLang");
  EXPECT_EQ(log[2].value("title").toString(), "Choose language");
}

TEST(DialogBatchTest, BatchActsOutTheScriptAndLogsEachDialog) {
  TempFolder temp;
  { std::ofstream(temp.File("script.jsonl")) << "{\"keys\":[\"N\"]}\n{\"click\":1}\n"; }
  const std::string env = "QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                          " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl") +
                          " NORVIK50_DIALOG_LOG=" + temp.File("log.jsonl");
  const std::string requests =
      R"({"id":0,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\VANTEX\\Global","Language",2]}
{"id":1,"member":"tklExtAsk","args":["Continue?"]}
{"id":2,"member":"tklMsgBox","args":["Saved","All done"]}
{"id":3,"member":"tklMsgBox","args":["x","y",0,"",16]}
)";
  std::ofstream(temp.File("in.jsonl")) << requests;
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find(R"({"id":1,"ok":true,"result":{"vt":"Boolean","v":false})"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find(R"({"id":2,"ok":true,"result":{"vt":"Long","v":1})"), std::string::npos);
  EXPECT_NE(run.out.find(R"({"id":3,"ok":true,"result":{"vt":"Long","v":10})"), std::string::npos);
  const auto log = ReadDialogLog(temp.File("log.jsonl"));
  ASSERT_EQ(log.size(), 2u);
  EXPECT_EQ(LoggedButtons(log[0]), (QStringList{"&Yes", "&No"}));
  EXPECT_EQ(log[0].value("answer").toInt(), 7);
  EXPECT_EQ(log[1].value("prompt").toString(), "Saved");
  EXPECT_EQ(log[1].value("answer").toInt(), 1);

  // --headless: nothing is shown, the box answers as failed.
  const CommandRun headless = RunCommand(env + " " NORVIK50_TOOL " call --headless tklMsgBox a b");
  EXPECT_EQ(headless.out, "10\n");
  EXPECT_EQ(ReadDialogLog(temp.File("log.jsonl")).size(), 2u);
}

}  // namespace
}  // namespace norvik50

namespace norvik50 {
namespace {

TEST(DialogGalleryTest, EveryFormInBothLanguagesBecomesAPicture) {
  TempFolder temp;
  ScopedEnv script("NORVIK50_DIALOG_SCRIPT", std::nullopt);
  ScopedEnv log("NORVIK50_DIALOG_LOG", std::nullopt);
  const std::string folder = temp.File("gallery");
  EXPECT_EQ(RenderDialogGallery(folder), 22);
  for (const char* name :
       {"frmMsgBox_de", "frmMsgBox_en", "frmStdMsg_de", "frmAnswer_en", "system_de",
        "frmChooseLang", "frmInput_de", "frmInput_en", "frmZoom", "frmChoosePath_de",
        "frmChoosePath_en", "fileOpen_de", "fileOpen_en", "folderBrowse_de", "folderBrowse_en",
        "frmMessage_de", "frmMessage_en"}) {
    QImage picture(QString::fromStdString(folder + "/" + name + ".png"));
    EXPECT_GT(picture.width(), 150) << name;
    EXPECT_GT(picture.height(), 60) << name;
  }
}

}  // namespace
}  // namespace norvik50
