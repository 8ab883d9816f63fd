// A batch host's text fields zoomed through `norvik50 batch` with a dialog
// script: the edited text, selection and focus come back in the answer.
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <fstream>
#include <sstream>

#include "norvik50/qt_dialogs.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

std::vector<QJsonObject> Lines(const std::string& text) {
  std::vector<QJsonObject> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    // Qt's own warnings share the output.
    if (line.empty() || line[0] != '{') continue;
    lines.push_back(QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
  }
  return lines;
}

QJsonObject ByRef(const QJsonObject& answer) {
  return answer.value("byref").toObject().value("0").toObject();
}

TEST(ControlsBatchTest, AZoomedBatchTextBoxComesBackEdited) {
  TempFolder temp;
  // First zoom: the text typed after F2 (caret at the end) is appended and
  // confirmed. Second: the typing is cancelled. Third: the locked box's
  // editor takes no typing.
  std::ofstream(temp.File("script.jsonl"))
      << R"({"keys":["F2"],"text":" und Sohn","click":"OK"})" << "\n"
      << R"({"text":"weg","click":2})" << "\n"
      << R"({"text":"x","click":"OK"})" << "\n";
  std::ofstream(temp.File("in.jsonl"))
      << R"({"id":1,"member":"tklZoomTextBox","args":[{"vt":"Object","type":"TextBox","v":{"text":"Meier","tooltip":"Name","selStart":2}},"Kunde"]})"
      << "\n"
      << R"({"id":2,"member":"tklZoomTextBox","args":[{"vt":"Object","type":"ComboBox","v":{"text":"rot"}}]})"
      << "\n"
      << R"({"id":3,"member":"tklZoomTextBox","args":[{"vt":"Object","type":"Node","v":{"text":"fest","locked":true}}]})"
      << "\n"
      << R"({"id":4,"member":"tklZoomTextBox","args":[{"vt":"Object","type":"StatusPanel","v":{"text":"p"}}]})"
      << "\n";
  const std::string env = "QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                          " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl") +
                          " NORVIK50_DIALOG_LOG=" + temp.File("log.jsonl");
  const CommandRun run = RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
  ASSERT_EQ(run.status, 0) << run.out;
  const auto answers = Lines(run.out);
  ASSERT_EQ(answers.size(), 4u) << run.out;

  EXPECT_TRUE(answers[0].value("ok").toBool()) << run.out;
  const QJsonObject box = ByRef(answers[0]);
  EXPECT_EQ(box.value("type").toString(), "TextBox");
  const QJsonObject state = box.value("v").toObject();
  EXPECT_EQ(state.value("text").toString(), "Meier und Sohn");
  // The field ends with its whole text selected and the focus.
  EXPECT_EQ(state.value("selStart").toInt(), 0);
  EXPECT_EQ(state.value("selLength").toInt(), 14);
  EXPECT_TRUE(state.value("focused").toBool());
  EXPECT_EQ(state.value("tooltip").toString(), "Name");

  const QJsonObject combo = ByRef(answers[1]).value("v").toObject();
  EXPECT_EQ(ByRef(answers[1]).value("type").toString(), "ComboBox");
  EXPECT_EQ(combo.value("text").toString(), "rot");
  EXPECT_EQ(combo.value("selLength").toInt(), 3);

  const QJsonObject node = ByRef(answers[2]).value("v").toObject();
  EXPECT_EQ(node.value("text").toString(), "fest");
  EXPECT_TRUE(node.value("locked").toBool());

  // A status panel is no text field: error 5, and no dialog shown.
  EXPECT_FALSE(answers[3].value("ok").toBool());
  EXPECT_EQ(answers[3].value("error").toObject().value("number").toInt(), 5);
  std::ifstream log(temp.File("log.jsonl"));
  int shown = 0;
  for (std::string line; std::getline(log, line);) ++shown;
  EXPECT_EQ(shown, 3);
}

}  // namespace
}  // namespace norvik50
