// The folder chooser and the file dialog end to end: `norvik50 batch`
// with a dialog script, drive C: mapped through NORVIK50_DRIVES.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "dialogs/qt/dialog_log_for_tests.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

TEST(ChoosersBatchTest, ScriptedChoicesComeBackAsResultAndWrittenBackName) {
  TempFolder temp;
  std::filesystem::create_directories(temp.File("c/Daten/Sub"));
  std::ofstream(temp.File("c/Daten/Res_DE.dll")) << "x";
  {
    std::ofstream(temp.File("script.jsonl"))
        << R"({"path":"C:\\Daten\\Sub","click":"OK"})" << "\n"
        << R"({"click":"Cancel"})" << "\n"
        // The path is found whatever case it is written in; Enter opens it.
        << R"({"path":"c:\\daten\\res_de.dll","keys":["Enter"]})" << "\n"
        << R"({"keys":["Escape"]})" << "\n";
  }
  const std::string env = "QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                          " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DRIVES=C=" + temp.File("c") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl") +
                          " NORVIK50_DIALOG_LOG=" + temp.File("log.jsonl");
  std::ofstream(temp.File("in.jsonl"))
      << R"({"id":0,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\VANTEX\\Global","Language",8]}
{"id":1,"member":"tklChoosePath","args":["C:\\Daten","Ablage"]}
{"id":2,"member":"tklChoosePath","args":["C:\\Daten"]}
{"id":3,"member":"tklFileDialog","args":["Resource Library (*.DLL)|*.DLL","Where?","C:\\Daten\\x.dll"]}
{"id":4,"member":"tklFileDialog","args":["Text|*.txt","t","C:\\alt.txt",0,0,"",false]}
)";
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find(R"({"id":1,"ok":true,"result":{"vt":"String","v":"C:\\Daten\\Sub"}})"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find(R"({"id":2,"ok":true,"result":{"vt":"String","v":""}})"),
            std::string::npos)
      << run.out;
  EXPECT_NE(
      run.out.find(
          R"({"id":3,"ok":true,"result":{"vt":"Boolean","v":true},"byref":{"2":{"vt":"String","v":"C:\\Daten\\Res_DE.dll"}}})"),
      std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find(R"({"id":4,"ok":true,"result":{"vt":"Boolean","v":false}})"),
            std::string::npos)
      << run.out;

  const auto log = ReadDialogLog(temp.File("log.jsonl"));
  ASSERT_EQ(log.size(), 4u);
  EXPECT_EQ(log[0].value("form").toString(), "frmChoosePath");
  // Language 8: English captions on this form.
  EXPECT_EQ(LoggedButtons(log[0]), (QStringList{"OK", "Cancel", "&New Folder..."}));
  EXPECT_EQ(log[0].value("value").toString(), "C:\\Daten\\Sub");
  EXPECT_EQ(log[1].value("answer").toInt(), 2);
  EXPECT_EQ(log[2].value("form").toString(), "open");
  EXPECT_EQ(log[2].value("title").toString(), "Where?");
  EXPECT_EQ(log[2].value("value").toString(), "C:\\Daten\\Res_DE.dll");
  EXPECT_EQ(log[3].value("form").toString(), "save");
  EXPECT_EQ(log[3].value("answer").toInt(), 2);
}

// tklResource without a "ResourceDLL": the file dialog asks for the
// library, and the chosen one is stored with "%L" for the language.
TEST(ChoosersBatchTest, TheResourcePromptShowsTheFileDialog) {
  TempFolder temp;
  std::filesystem::create_directories(temp.File("c/App"));
  std::filesystem::copy_file(std::string(NORVIK50_FIXTURE_DIR) + "/Res_DE.dll",
                             temp.File("c/App/Res_DE.dll"));
  std::ofstream(temp.File("script.jsonl"))
      << R"({"path":"C:\\APP\\res_de.dll","keys":["Enter"]})" << "\n";
  const std::string env = "QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                          " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DRIVES=C=" + temp.File("c") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl") +
                          " NORVIK50_DIALOG_LOG=" + temp.File("log.jsonl");
  std::ofstream(temp.File("in.jsonl"))
      << R"({"id":0,"member":"tkrSetValue","args":[-2147483647,"SOFTWARE\\VANTEX\\Global","Language",1]}
{"id":1,"member":"tklResource","args":[101,"XML"]}
{"id":2,"member":"tkrGetValue","args":[-2147483646,"SOFTWARE\\VANTEX\\Global","ResourceDLL",""]}
)";
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find(R"({"id":1,"ok":true,"result":{"vt":"String","v":"<def>"}})"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find(R"("v":"C:\\App\\Res_%L.dll")"), std::string::npos) << run.out;
  const auto log = ReadDialogLog(temp.File("log.jsonl"));
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0].value("form").toString(), "open");
  EXPECT_EQ(log[0].value("prompt").toString(), "Resource Bibliothek (*.DLL)");
  EXPECT_EQ(log[0].value("title").toString(),
            "Definieren Sie bitte den Standort der deutschen Resource-DLL");
}

}  // namespace
}  // namespace norvik50::qt
