// The file dialog on the offscreen platform: the filter as Qt's name
// filters matched in any case, the start folder and name, and every flag
// with a meaning on Linux, through tklFileDialog and a dialog script.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QStyledItemDelegate>
#include <QTest>
#include <QTreeView>
#include <filesystem>
#include <fstream>
#include <set>

#include "core/file_dialog_request.h"
#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/file_dialog.h"
#include "dialogs/qt/file_dialog_views.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/scripted_dialogs_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using namespace norvik50::qt::testing;

TEST(NameFiltersTest, WindowsFiltersBecomeQtNameFilters) {
  struct Case {
    const char* filter;
    QStringList want;
  };
  const std::vector<Case> cases = {
      {"Resource Library (*.DLL)|*.DLL", {"Resource Library (*.DLL)"}},
      // The patterns the description shows are replaced by the real ones.
      {"Texte (*.txt)|*.txt;*.asc|Alle Dateien (*.*)|*.*",
       {"Texte (*.txt *.asc)", "Alle Dateien (*)"}},
      {"Bilder|*.bmp; *.png ", {"Bilder (*.bmp *.png)"}},
      {"|*.log", {"(*.log)"}},
      // A description without a pattern, or an empty pattern, is dropped.
      {"Nur Text", {}},
      {"Leer||Text|*.txt", {"Text (*.txt)"}},
      {"", {}}};
  for (const Case& c : cases) EXPECT_EQ(NameFilters(c.filter), c.want) << c.filter;
}

class FileDialogTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { EnsureApplication(); }
  FileDialogTest() {
    std::filesystem::create_directories(temp_.File("c/Daten/Sub"));
    for (const char* name : {"c/Daten/res_de.dll", "c/Daten/alt.txt", "c/Daten/b.txt"}) {
      std::ofstream(temp_.File(name)) << "x";
    }
    SetDriveRoot(u'C', temp_.File("c"));
    InstallQtDialogs();
  }
  ~FileDialogTest() override {
    SetUserInterface(nullptr);
    ClearDriveRoot(u'C');
    QDir::setCurrent(QString::fromStdString(cwd_));
  }

  std::string cwd_ = std::filesystem::current_path().string();
  TempFolder temp_;
  ScriptedDialogs dialogs_{temp_, "en-US"};
  LIB lib_;
};

TEST_F(FileDialogTest, PatternsMatchInAnyCaseAsOnWindows) {
  FileDialogRequest request;
  request.filter = u"Resource Library (*.DLL)|*.DLL";
  request.flags = 2626560;
  request.initial_folder = u"C:\\DATEN";
  FileDialog dialog(request, nullptr);
  EXPECT_EQ(dialog.directory().absolutePath(), QString::fromStdString(temp_.File("c/Daten")));
  auto* view = dialog.findChild<QListView*>(QStringLiteral("listView"));
  ASSERT_NE(view, nullptr);
  // The folder is read in the background.
  std::set<QString> offered;
  const auto read = [&] {
    offered.clear();
    const QModelIndex root = view->rootIndex();
    for (int row = 0; row < view->model()->rowCount(root); ++row) {
      const QModelIndex index = view->model()->index(row, 0, root);
      if (view->model()->flags(index) & Qt::ItemIsEnabled) offered.insert(index.data().toString());
    }
    return offered.count(QStringLiteral("res_de.dll")) == 1;
  };
  EXPECT_TRUE(QTest::qWaitFor(read, 5000));
  EXPECT_EQ(offered, (std::set<QString>{"Sub", "res_de.dll"}));
}

TEST_F(FileDialogTest, StartsInTheInitialFolderWithTheFilesName) {
  struct Case {
    std::u16string filename;
    std::u16string init_dir;
    std::string folder;
    const char* name;
  };
  for (const Case& c : {Case{u"C:\\Daten\\alt.txt", u"", "c/Daten", "alt.txt"},
                        Case{u"C:\\Daten\\alt.txt", u"C:\\Daten\\Sub", "c/Daten/Sub", "alt.txt"}}) {
    FileDialog dialog(MakeFileDialogRequest(u"", u"", c.filename, 0, 0, c.init_dir, true), nullptr);
    EXPECT_EQ(dialog.directory().absolutePath(), QString::fromStdString(temp_.File(c.folder)));
    EXPECT_EQ(dialog.findChild<QLineEdit*>("fileNameEdit")->text(), c.name);
  }
}

TEST_F(FileDialogTest, SaveWithFlagsZeroAsksBeforeReplacing) {
  dialogs_.Script(R"({"path":"C:\\Daten\\alt.txt","keys":["Enter"]}
{"click":"&No"}
{"path":"C:\\Daten\\alt.txt","keys":["Enter"]}
{"click":"&Yes"}
)");
  std::u16string name = u"C:\\Daten\\neu.txt";
  EXPECT_FALSE(lib_.tklFileDialog(u"Text|*.txt", u"Sichern", name, 0, 0, u"", false));
  EXPECT_EQ(name, u"C:\\Daten\\neu.txt");
  EXPECT_TRUE(lib_.tklFileDialog(u"Text|*.txt", u"Sichern", name, 0, 0, u"", false));
  EXPECT_EQ(name, u"C:\\Daten\\alt.txt");
  const auto log = dialogs_.Log();
  ASSERT_EQ(log.size(), 4u);
  EXPECT_EQ(log[0].value("form").toString(), "system");
  EXPECT_TRUE(log[0].value("prompt").toString().startsWith("alt.txt already exists"));
  EXPECT_EQ(log[0].value("default").toInt(), 2);
  EXPECT_EQ(log[1].value("form").toString(), "save");
  EXPECT_EQ(log[1].value("title").toString(), "Sichern");
  EXPECT_EQ(log[1].value("prompt").toString(), "Text (*.txt)");
  EXPECT_EQ(log[1].value("answer").toInt(), 2);
  EXPECT_EQ(log[3].value("value").toString(), "C:\\Daten\\alt.txt");
  EXPECT_EQ(log[3].value("answer").toInt(), 1);
}

TEST_F(FileDialogTest, CancelLeavesTheFileName) {
  dialogs_.Script(R"({"path":"C:\\Daten\\b.txt","keys":["Escape"]}
{"path":"C:\\Daten\\b.txt","click":"Cancel"}
)");
  for (bool open : {true, false}) {
    std::u16string name = u"C:\\Daten\\alt.txt";
    EXPECT_FALSE(lib_.tklFileDialog(u"", u"", name, 0, 0, u"", open));
    EXPECT_EQ(name, u"C:\\Daten\\alt.txt");
  }
  EXPECT_EQ(dialogs_.Log().size(), 2u);
}

TEST_F(FileDialogTest, EachFlagIsHonoured) {
  struct Case {
    const char* what;
    int32_t flags;
    bool open;
    const char* script;  // the dialog's line, then the boxes' lines
    bool chosen;
    std::u16string result;
    std::size_t boxes;  // system boxes shown
  };
  const std::vector<Case> cases = {
      {"open default: the file must exist", 0, true,
       R"({"path":"C:\\Daten\\fehlt.txt","keys":["Enter"]})"
       "\n{}\n",
       false, u"", 1},
      {"open without it takes a new name", 2, true,
       R"({"path":"C:\\Daten\\fehlt.txt","keys":["Enter"]})"
       "\n",
       true, u"C:\\Daten\\fehlt.txt", 0},
      {"path must exist", 2048, false,
       R"({"path":"C:\\Fehlt\\x.txt","keys":["Enter"]})"
       "\n{}\n",
       false, u"", 1},
      {"no path check without the flag", 2, false,
       R"({"path":"C:\\Fehlt\\x.txt","keys":["Enter"]})"
       "\n",
       true, u"C:\\Fehlt\\x.txt", 0},
      {"create prompt answered Yes", 8192, true,
       R"({"path":"C:\\Daten\\neu.txt","keys":["Enter"]})"
       "\n{\"click\":\"&Yes\"}\n",
       true, u"C:\\Daten\\neu.txt", 1},
      {"create prompt answered No", 2663430, false,
       R"({"path":"C:\\Daten\\neu.txt","keys":["Enter"]})"
       "\n{\"click\":\"&No\"}\n",
       false, u"", 1},
      {"overwrite prompt only when saving", 2, true,
       R"({"path":"C:\\Daten\\alt.txt","keys":["Enter"]})"
       "\n",
       true, u"C:\\Daten\\alt.txt", 0},
      {"several files, explorer form", 512 + 524288 + 4096, true,
       R"({"path":["C:\\Daten\\alt.txt","C:\\Daten\\b.txt"],"keys":["Enter"]})"
       "\n",
       true, std::u16string(u"C:\\Daten\0alt.txt\0b.txt", 22), 0},
      {"several files, old form", 512, true,
       R"({"path":["C:\\Daten\\alt.txt","C:\\Daten\\b.txt"],"keys":["Enter"]})"
       "\n",
       true, u"C:\\Daten alt.txt b.txt", 0},
      {"one file of a multiple choice is a full path", 512 + 524288, true,
       R"({"path":["C:\\Daten\\b.txt"],"keys":["Enter"]})"
       "\n",
       true, u"C:\\Daten\\b.txt", 0}};
  for (const Case& c : cases) {
    std::filesystem::remove(temp_.File("dialogs.jsonl"));
    dialogs_.Script(c.script);
    std::u16string name = u"vorher";
    EXPECT_EQ(lib_.tklFileDialog(u"Alle|*.*", u"", name, c.flags, 0, u"C:\\Daten", c.open),
              c.chosen)
        << c.what;
    EXPECT_EQ(name, c.chosen ? c.result : u"vorher") << c.what;
    std::size_t boxes = 0;
    for (const QJsonObject& entry : dialogs_.Log()) boxes += entry.value("form").toString() == "system";
    EXPECT_EQ(boxes, c.boxes) << c.what;
  }
}

// The dialog speaks the library's language, whatever the process's locale
// (English here): Qt's texts, the sizes and dates of the detail view; it
// shows the folder as the host receives it and draws in the dialog font.
TEST_F(FileDialogTest, SpeaksTheLibrarysLanguageAndShowsTheWindowsFolder) {
  std::ofstream(temp_.File("c/Daten/Sub/gross.bin")) << std::string(1500, 'x');
  struct Case {
    int32_t language;
    const char* look_in;
    const char* size_header;
    const char* size;
    QLocale locale;
  };
  const std::vector<Case> cases = {
      {1, "Suchen in:", "Gr\u00f6\u00dfe", "1,46 KiB", QLocale(QLocale::German, QLocale::Germany)},
      {2, "Look in:", "Size", "1.46 KiB", QLocale(QLocale::English, QLocale::UnitedStates)}};
  for (const Case& c : cases) {
    lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(c.language));
    QString look_in, size_header, size, date, want_date, folder, family;
    SetShownHook([&](QDialog& dialog) {
      look_in = dialog.findChild<QLabel*>(QStringLiteral("lookInLabel"))->text();
      family = dialog.font().family();
      auto* view = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
      QAbstractItemModel* model = view->model();
      size_header = model->headerData(1, Qt::Horizontal).toString();
      QModelIndex file;
      const bool listed = QTest::qWaitFor(
          [&] {
            const QModelIndex root = view->rootIndex();
            for (int row = 0; row < model->rowCount(root); ++row) {
              if (model->index(row, 0, root).data().toString() == "gross.bin") {
                file = model->index(row, 0, root);
              }
            }
            return file.isValid();
          },
          5000);
      ASSERT_TRUE(listed);
      size = file.siblingAtColumn(1).data().toString();
      date = file.siblingAtColumn(3).data().toString();
      const QDateTime modified =
          QFileInfo(QString::fromStdString(temp_.File("c/Daten/Sub/gross.bin"))).lastModified();
      want_date = c.locale.toString(modified, QLocale::ShortFormat);
      auto* combo = dialog.findChild<QComboBox*>(QStringLiteral("lookInCombo"));
      folder = static_cast<QStyledItemDelegate*>(combo->itemDelegate())
                   ->displayText(combo->currentText(), QLocale());
    });
    std::u16string name;
    lib_.tklFileDialog(u"", u"", name, 0, 0, u"C:\\Daten\\Sub");
    SetShownHook(nullptr);
    EXPECT_EQ(look_in, c.look_in) << c.language;
    EXPECT_EQ(size_header, QString::fromUtf8(c.size_header)) << c.language;
    EXPECT_EQ(size, c.size) << c.language;
    EXPECT_EQ(date, want_date) << c.language;
    EXPECT_EQ(folder, "C:\\Daten\\Sub");
    EXPECT_EQ(family, DialogFont().family());
  }
}

TEST(WindowsFormOfTest, FoldersInTheirWindowsFormOtherTextsAsTheyAre) {
  SetDriveRoot(u'Q', "/srv/q");
  EXPECT_EQ(WindowsFormOf("/srv/q/Daten"), "Q:\\Daten");
  EXPECT_EQ(WindowsFormOf("/srv/q"), "Q:\\");
  EXPECT_EQ(WindowsFormOf("/usr/share/"), "Z:\\usr\\share");
  EXPECT_EQ(WindowsFormOf("Computer"), "Computer");
  EXPECT_EQ(WindowsFormOf(""), "");
  ClearDriveRoot(u'Q');
}

TEST_F(FileDialogTest, AWindowsPathTypedIntoTheNameIsTakenInAnyCase) {
  dialogs_.Script(R"({"text":"c:\\daten\\B.TXT","click":"&Open"}
{"text":"\\Daten\\alt.txt","click":"&Open"}
)");
  std::u16string name;
  // An owner window the platform cannot reach leaves the dialog unowned.
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name, 0, 4711, u"C:\\Daten"));
  EXPECT_EQ(name, u"C:\\Daten\\b.txt");
  // Without a drive: the current folder's. The first choice made
  // C:\Daten the current folder, so the path lies on C:.
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name, 0, 0, u"C:\\Daten"));
  EXPECT_EQ(name, u"C:\\Daten\\alt.txt");
}

TEST_F(FileDialogTest, TheCurrentFolderFollowsTheChoiceUnlessNoChangeDir) {
  const QString before = QDir::currentPath();
  dialogs_.Script(R"({"path":"C:\\Daten\\Sub\\x.txt","keys":["Enter"]}
{"path":"C:\\Daten\\b.txt","keys":["Enter"]}
)");
  std::u16string name;
  // 2048 (the folder must exist) stands for any flags without 8.
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name, 2048 + 8, 0, u"", false));
  EXPECT_EQ(QDir::currentPath(), before);
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name, 2048, 0, u"", false));
  EXPECT_EQ(QDir::currentPath(), QString::fromStdString(temp_.File("c/Daten")));
}

TEST_F(FileDialogTest, AWriteProtectedFileIsRefusedWithNoReadOnlyReturn) {
  // No write permission for anyone: refused even for root, as the
  // read-only attribute is on Windows.
  std::filesystem::permissions(temp_.File("c/Daten/b.txt"), std::filesystem::perms::owner_read);
  dialogs_.Script(R"({"path":"C:\\Daten\\b.txt","keys":["Enter"]}
{}
{"path":"C:\\Daten\\b.txt","keys":["Enter"]}
)");
  std::u16string name;
  EXPECT_FALSE(lib_.tklFileDialog(u"", u"", name, 32768, 0, u"", false));
  ASSERT_EQ(dialogs_.Log().size(), 2u);
  EXPECT_EQ(dialogs_.Log()[0].value("form").toString(), "system");
  EXPECT_TRUE(dialogs_.Log()[0].value("prompt").toString().startsWith("b.txt\nThis file is set to read-only"));
  // Without the flag the same file is taken.
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name, 2048, 0, u"", false));
  EXPECT_EQ(name, u"C:\\Daten\\b.txt");
}

}  // namespace
}  // namespace norvik50::qt
