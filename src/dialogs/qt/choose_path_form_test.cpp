// frmChoosePath on the offscreen platform: the drive list, the tree and
// the path field kept in step, OK with a typed path, Cancel; and
// tklChoosePath driven by a dialog script, the folder browser included.
#include <gtest/gtest.h>

#include <QTest>
#include <QTimer>
#include <filesystem>
#include <fstream>

#include "core/library_state.h"
#include "dialogs/qt/choose_path_form.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

class ChoosePathFormTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
  ChoosePathFormTest() {
    std::filesystem::create_directories(temp_.File("c/Daten/Sub"));
    std::filesystem::create_directories(temp_.File("d/Archiv"));
    SetDriveRoot(u'C', temp_.File("c"));
    SetDriveRoot(u'D', temp_.File("d"));
  }
  ~ChoosePathFormTest() override {
    ClearDriveRoot(u'C');
    ClearDriveRoot(u'D');
  }
  ChoosePathRequest Request(std::u16string start, int16_t language = 1) {
    return MakeChoosePathRequest(start, u"", language);
  }
  QString Linux(const std::string& relative) {
    return QString::fromStdString(temp_.File(relative));
  }

  TempFolder temp_;
};

TEST_F(ChoosePathFormTest, TheStartFolderIsShownInTreeDriveAndField) {
  ChoosePathForm form(Request(u"c:\\daten"), nullptr);
  EXPECT_EQ(form.PathField()->text(), "C:\\Daten");
  EXPECT_EQ(form.Folder(), Linux("c/Daten"));
  EXPECT_TRUE(form.DriveList()->currentText().startsWith("C:"));
  EXPECT_EQ(form.DriveList()->count(), 3);  // C, D and Z
  EXPECT_EQ(form.windowTitle(), QString::fromUtf16(u"Verzeichnis w\u00e4hlen"));
}

TEST_F(ChoosePathFormTest, TreeDriveAndFieldMoveTogether) {
  ChoosePathForm form(Request(u"C:\\Daten"), nullptr);
  // A folder picked in the tree shows in the field.
  auto* model = static_cast<QFileSystemModel*>(form.FolderTree()->model());
  form.FolderTree()->setCurrentIndex(model->index(Linux("c/Daten/Sub")));
  EXPECT_EQ(form.PathField()->text(), "C:\\Daten\\Sub");
  // The next drive in the list moves the tree to its root.
  form.DriveList()->setFocus();
  QTest::keyClick(form.DriveList(), Qt::Key_Down);
  EXPECT_TRUE(form.DriveList()->currentText().startsWith("D:"));
  EXPECT_EQ(form.PathField()->text(), "D:\\");
  EXPECT_EQ(form.Folder(), Linux("d"));
  // A folder given by its path moves the drive list back.
  form.GoToPaths({"C:\\DATEN\\SUB"});
  EXPECT_TRUE(form.DriveList()->currentText().startsWith("C:"));
  EXPECT_EQ(form.PathField()->text(), "C:\\Daten\\Sub");
}

TEST_F(ChoosePathFormTest, OkTakesATypedPathOnlyWhenItExists) {
  struct Case {
    const char* typed;
    const char* chosen;
  };
  for (const Case& c : {Case{"d:\\archiv", "D:\\Archiv"}, Case{"C:\\Daten\\Sub", "C:\\Daten\\Sub"},
                        // Not a folder: the tree's folder is the answer.
                        Case{"C:\\Nirgends", "C:\\Daten"}, Case{"", "C:\\Daten"}}) {
    ChoosePathForm form(Request(u"C:\\Daten"), nullptr);
    const int result = ShowAndAct(form, [&] {
      form.PathField()->selectAll();
      QTest::keyClicks(form.PathField(), c.typed);
      QTest::mouseClick(form.findChild<QPushButton*>("cmdOk"), Qt::LeftButton);
    });
    EXPECT_EQ(result, 1) << c.typed;
    EXPECT_EQ(form.ChosenPath(), c.chosen) << c.typed;
  }
}

TEST_F(ChoosePathFormTest, CancelEscapeAndTheCloseBoxChooseNothing) {
  for (const char* how : {"cancel", "escape", "close"}) {
    ChoosePathForm form(Request(u"C:\\Daten"), nullptr);
    const int result = ShowAndAct(form, [&] {
      const std::string h = how;
      if (h == "cancel") QTest::mouseClick(form.findChild<QPushButton*>("cmdCancel"), Qt::LeftButton);
      if (h == "escape") QTest::keyClick(form.PathField(), Qt::Key_Escape);
    });
    EXPECT_EQ(result, 2) << how;
    EXPECT_EQ(form.ChosenPath(), "") << how;
    EXPECT_FALSE(form.isVisible()) << how;
  }
}

TEST_F(ChoosePathFormTest, NewFolderHandsTheFieldOverAndMovesToTheNewFolder) {
  ChoosePathRequest request = Request(u"C:\\Daten", 2);
  std::u16string asked_below;
  request.new_folder = [&](std::u16string_view parent) -> std::optional<std::u16string> {
    asked_below = parent;
    std::filesystem::create_directory(temp_.File("c/Daten/Neu"));
    return u"C:\\Daten\\Neu";
  };
  ChoosePathForm form(std::move(request), nullptr);
  auto* button = form.findChild<QPushButton*>("cmdNewFolder");
  EXPECT_EQ(button->text(), "&New Folder...");
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(asked_below, u"C:\\Daten");
  EXPECT_EQ(form.PathField()->text(), "C:\\Daten\\Neu");
  EXPECT_EQ(form.Folder(), Linux("c/Daten/Neu"));
}

// tklChoosePath through the Qt dialogs with a dialog script.
class ChoosePathScriptTest : public ChoosePathFormTest {
 protected:
  void SetLanguage(int32_t id) { StoreLanguage(lib_, id); }

  QtDialogsInstalled qt_;
  ScriptedDialogs dialogs_{temp_, "en-US"};
  LIB lib_;
};

TEST_F(ChoosePathScriptTest, CaptionsAreGermanOnlyForLanguageOne) {
  struct Case {
    int32_t language;
    QStringList buttons;
    const char* label;
  };
  // Language 8 is a German entry, yet this form speaks English there.
  const std::vector<Case> cases = {
      {1, {"OK", "Abbrechen", "&Neuer Ordner..."}, "Verzeichnis:"},
      {2, {"OK", "Cancel", "&New Folder..."}, "Directory:"},
      {8, {"OK", "Cancel", "&New Folder..."}, "Directory:"}};
  for (const Case& c : cases) {
    SetLanguage(c.language);
    dialogs_.Script("{\"path\":\"C:\\\\Daten\\\\Sub\",\"click\":\"OK\"}\n");
    EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten", u"Ablage"), u"C:\\Daten\\Sub");
    const QJsonObject entry = dialogs_.Log().back();
    EXPECT_EQ(entry.value("form").toString(), "frmChoosePath");
    EXPECT_EQ(entry.value("title").toString(), "Ablage");
    EXPECT_EQ(LoggedButtons(entry), c.buttons) << c.language;
    EXPECT_EQ(entry.value("prompt").toString(), c.label);
    EXPECT_EQ(entry.value("value").toString(), "C:\\Daten\\Sub");
    EXPECT_EQ(entry.value("answer").toInt(), 1);
  }
}

TEST_F(ChoosePathScriptTest, TypedPathCancelAndAMissingStartFolder) {
  SetLanguage(1);
  dialogs_.Script(R"({"keys":["Tab","Ctrl+A"],"text":"D:\\Archiv","click":"OK"}
{"click":"Abbrechen"}
{"click":"OK"}
)");
  // Tab leaves the tree for the path field; the typed path replaces its
  // text and OK takes it.
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"D:\\Archiv");
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"");
  // A start folder that does not exist: the current folder is shown.
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Nirgends"), CurrentFolder());
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 3u);
  EXPECT_EQ(log[1].value("answer").toInt(), 2);
  EXPECT_EQ(log[1].value("value").toString(), "");
}

TEST_F(ChoosePathScriptTest, NewFolderIsCreatedOrItsFailureShown) {
  SetLanguage(1);
  dialogs_.Script(R"({"click":["&Neuer Ordner...","OK"]}
{"text":"Neu","click":"OK"}
{"click":["&Neuer Ordner...","OK"]}
{"text":"Sub","click":"OK"}
{"keys":["Enter"]}
)");
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"C:\\Daten\\Neu");
  EXPECT_TRUE(std::filesystem::is_directory(temp_.File("c/Daten/Neu")));
  // Sub exists already: the library's error message, and the form stays
  // where it was.
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"C:\\Daten");
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 5u);
  EXPECT_EQ(log[0].value("form").toString(), "frmInput");
  EXPECT_EQ(log[0].value("title").toString(), "Neuen Ordner erstellen");
  EXPECT_EQ(log[0].value("prompt").toString(), "Name des neuen Ordners:");
  EXPECT_EQ(log[1].value("form").toString(), "frmChoosePath");
  EXPECT_EQ(log[2].value("form").toString(), "frmInput");
  EXPECT_EQ(log[3].value("form").toString(), "frmStdMsg");
  EXPECT_EQ(log[3].value("prompt").toString(), "Laufzeitfehler '75':");
  EXPECT_EQ(log[4].value("form").toString(), "frmChoosePath");
  EXPECT_EQ(log[4].value("value").toString(), "C:\\Daten");
}

TEST_F(ChoosePathScriptTest, WithoutAStartFolderTheToolkitsBrowserIsShown) {
  dialogs_.Script(R"({"path":"C:\\Daten\\Sub","keys":["Enter"]}
{"keys":["Escape"]}
)");
  EXPECT_EQ(lib_.tklChoosePath(u"", u"Pick a folder"), u"C:\\Daten\\Sub");
  EXPECT_EQ(lib_.tklChoosePath(), u"");
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 2u);
  EXPECT_EQ(log[0].value("form").toString(), "folder");
  EXPECT_EQ(log[0].value("title").toString(), "Pick a folder");
  EXPECT_EQ(log[0].value("value").toString(), "C:\\Daten\\Sub");
  EXPECT_EQ(log[1].value("answer").toInt(), 2);
}

}  // namespace
}  // namespace norvik50::qt
