// A dialog script that types a long text, a script or log that is a FIFO,
// and dialogs on the offscreen platform with no script at all: the host
// gets its answer promptly every time.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <chrono>
#include <fstream>
#include <string>

#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/text_control.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

std::string TextStep(const std::u16string& text) {
  QJsonObject step{{"text", QString::fromStdU16String(text)}};
  return QJsonDocument(step).toJson(QJsonDocument::Compact).toStdString();
}

// Typed one character at a time, each insertion cost the whole field's
// length: 16,000 characters took half a minute. Runs of printable
// characters now go in at once, with the same result.
TEST(DialogScriptHostileTest, ALongTypedTextIsPromptAndWhole) {
  TempFolder temp;
  ScriptedDialogs dialogs(temp, "en-US");
  QtDialogsInstalled installed;
  LIB lib;
  StoreLanguage(lib, 2);
  std::u16string text;
  for (int i = 0; text.size() < 200000; ++i) {
    text += u"Zeile " + QString::number(i).toStdU16String() + (i % 7 == 0 ? u"\t\u00e4\U0001F600" : u" ");
  }
  const std::u16string field_text = text.substr(0, 40000);
  dialogs.Script("[" + TextStep(field_text) + R"(,{"keys":["Enter"]}])" + "\n" + "[" +
                 TextStep(text) + R"(,{"click":"OK"}])" + "\n");
  const auto started = std::chrono::steady_clock::now();
  Variant value(u"");
  EXPECT_EQ(lib.tklInputValue(u"Text:", u"Long", value), 1);
  // The box keeps what a line edit keeps: its 32,767 characters, the tab
  // dropped as typing drops it.
  std::u16string typed;
  for (char16_t c : field_text) {
    if (c != u'\t') typed += c;
  }
  EXPECT_EQ(value.as_string(), typed.substr(0, 32767));
  auto box = std::make_shared<MemoryTextBox>();
  lib.tklZoomTextBox(box, u"Long");
  EXPECT_EQ(box->Text(), text);
  EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(20));
}

// Nobody answers a dialog on the offscreen platform without a script:
// each closes at once as by its close box and says why in the log; a
// FIFO as script or log changes nothing and blocks nothing.
TEST(DialogScriptHostileTest, OffscreenWithoutAScriptAndFifosNeverWait) {
  TempFolder temp;
  ASSERT_EQ(::mkfifo(temp.File("script-fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(temp.File("log-fifo").c_str(), 0600), 0);
  {
    std::ofstream(temp.File("in.jsonl"))
        << R"({"id":0,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\VANTEX\\Global","Language",2]}
{"id":1,"member":"tklMsgBox","args":["Saved?","",3,"Offscreen"]}
{"id":2,"member":"tklInputValue","args":["Name:","Offscreen","before"]}
{"id":3,"member":"tklGetFullPath","args":["C:\\Temp","x.LOG"]}
)";
  }
  struct Case {
    const char* environment;
    bool logged;
  } cases[] = {
      {"NORVIK50_DIALOG_LOG={log}", true},
      {"NORVIK50_DIALOG_SCRIPT={script-fifo} NORVIK50_DIALOG_LOG={log}", true},
      {"NORVIK50_DIALOG_LOG={log-fifo}", false},
  };
  for (const Case& c : cases) {
    std::string environment = c.environment;
    for (const char* file : {"script-fifo", "log-fifo", "log"}) {
      const std::string name = "{" + std::string(file) + "}";
      if (const auto at = environment.find(name); at != std::string::npos) {
        environment.replace(at, name.size(), temp.File(file));
      }
    }
    std::remove(temp.File("log").c_str());
    const CommandRun run = RunCommand(
        "env -u NORVIK50_DIALOG_SCRIPT -u NORVIK50_DIALOG_LOG QT_QPA_PLATFORM=offscreen TMPDIR=" +
        temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.File("reg") + " " + environment +
        " timeout 30 " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
    SCOPED_TRACE(c.environment);
    EXPECT_EQ(run.status, 0) << run.out;
    // The close box: 0 for the message box, Cancel (2) and Value kept.
    EXPECT_NE(run.out.find(R"({"id":1,"ok":true,"result":{"vt":"Long","v":0}})"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find(R"({"id":2,"ok":true,"result":{"vt":"Long","v":2})"),
              std::string::npos)
        << run.out;
    EXPECT_NE(run.out.find(R"({"id":3,"ok":true)"), std::string::npos) << run.out;
    const auto log = ReadDialogLog(temp.File("log"));
    if (!c.logged) continue;
    ASSERT_EQ(log.size(), 2u);
    for (const QJsonObject& entry : log) {
      const QString warnings = entry.value("warnings").toVariant().toStringList().join("|");
      // With a script that has no line for it, a dialog closes as when the
      // script is used up; without one, the log says why it closed.
      EXPECT_EQ(warnings.contains("nobody can answer"),
                std::string(c.environment).find("SCRIPT") == std::string::npos)
          << warnings.toStdString();
    }
  }
}

}  // namespace
}  // namespace norvik50
