// tklChoosePath against a user interface that records what it was asked
// and plays the user's part, on a temporary drive C:.
#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

#include "core/library_state.h"
#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class RecordingChooser : public UserInterface {
 public:
  std::u16string ChoosePath(const ChoosePathRequest& request) override {
    requests.push_back(request);
    if (throw_instead) throw std::runtime_error("no window");
    // The user presses "new folder" in the field's folder, then OK.
    if (!new_folder_in.empty() && request.new_folder) {
      made = request.new_folder(new_folder_in);
    }
    return chosen;
  }
  std::u16string BrowseForFolder(std::u16string_view title, int16_t language) override {
    browsed.push_back(std::u16string(title));
    browsed_language = language;
    return chosen;
  }
  int32_t ShowInput(const InputRequest& request, std::u16string& text) override {
    inputs.push_back(request);
    if (typed_name.empty()) return 2;
    text = typed_name;
    return 1;
  }
  int32_t ShowMessageBox(const MessageBoxRequest& request) override {
    messages.push_back(request);
    return 1;
  }

  std::vector<ChoosePathRequest> requests;
  std::vector<std::u16string> browsed;
  int16_t browsed_language = -1;
  std::vector<InputRequest> inputs;
  std::vector<MessageBoxRequest> messages;
  std::u16string chosen = u"C:\\Daten";
  std::u16string new_folder_in;  // "" presses no "new folder"
  std::u16string typed_name;     // "" cancels the name
  std::optional<std::u16string> made;
  bool throw_instead = false;
};

class ChoosePathTest : public ::testing::Test {
 protected:
  ChoosePathTest() {
    std::filesystem::create_directories(temp_.File("c/Daten"));
    SetDriveRoot(u'C', temp_.File("c"));
    SetUserInterface(ui_);
  }
  ~ChoosePathTest() override {
    SetUserInterface(nullptr);
    ClearDriveRoot(u'C');
    SetBaseKey(u"");
  }
  void SetLanguage(int32_t id) {
    lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(id));
  }

  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedLocale locale_{"en-US"};
  std::shared_ptr<RecordingChooser> ui_ = std::make_shared<RecordingChooser>();
  LIB lib_;
};

TEST_F(ChoosePathTest, WithoutAStartFolderTheToolkitsBrowserIsShown) {
  EXPECT_EQ(lib_.tklChoosePath(u"", u"Ablage w\u00e4hlen"), u"C:\\Daten");
  EXPECT_EQ(ui_->browsed, std::vector<std::u16string>{u"Ablage w\u00e4hlen"});
  EXPECT_TRUE(ui_->requests.empty());
  // No language stored: the browser follows the locale.
  EXPECT_EQ(ui_->browsed_language, 0);
  // Cancelled: nothing chosen.
  ui_->chosen.clear();
  SetLanguage(1);
  EXPECT_EQ(lib_.tklChoosePath(), u"");
  EXPECT_EQ(ui_->browsed.size(), 2u);
  EXPECT_EQ(ui_->browsed_language, 1);
}

TEST_F(ChoosePathTest, WithAStartFolderTheLibrarysFormIsShown) {
  SetLanguage(1);
  EXPECT_EQ(lib_.tklChoosePath(u"c:\\daten"), u"C:\\Daten");
  ASSERT_EQ(ui_->requests.size(), 1u);
  EXPECT_TRUE(ui_->browsed.empty());
  const ChoosePathRequest& r = ui_->requests[0];
  // The caller's spelling stays; the form finds the folder in any case.
  EXPECT_EQ(r.start_path, u"c:\\daten");
  EXPECT_EQ(r.title, u"Verzeichnis w\u00e4hlen");
  EXPECT_EQ(r.drives, u"CZ");
  EXPECT_TRUE(r.new_folder);
}

TEST_F(ChoosePathTest, AStartFolderThatDoesNotExistBecomesTheCurrentFolder) {
  for (const char16_t* start : {u"C:\\Nirgends", u"Q:\\Daten", u"C:\\Daten\\x.txt"}) {
    lib_.tklChoosePath(start);
    EXPECT_EQ(ui_->requests.back().start_path, CurrentFolder()) << ToUtf8(start);
  }
}

TEST_F(ChoosePathTest, CaptionsAreGermanForLanguageOneAndEnglishForEveryOther) {
  struct Case {
    int32_t language;
    const char16_t* label;
    const char16_t* cancel;
    const char16_t* new_folder;
  };
  // Language 8 is a German entry too, yet the form speaks English there.
  for (const Case& c : {Case{1, u"Verzeichnis:", u"Abbrechen", u"&Neuer Ordner..."},
                        Case{2, u"Directory:", u"Cancel", u"&New Folder..."},
                        Case{3, u"Directory:", u"Cancel", u"&New Folder..."},
                        Case{8, u"Directory:", u"Cancel", u"&New Folder..."}}) {
    SetLanguage(c.language);
    lib_.tklChoosePath(u"C:\\Daten", u"Ziel");
    const ChoosePathRequest& r = ui_->requests.back();
    EXPECT_EQ(r.path_label, c.label) << c.language;
    EXPECT_EQ(r.cancel_caption, c.cancel) << c.language;
    EXPECT_EQ(r.new_folder_caption, c.new_folder) << c.language;
    EXPECT_EQ(r.ok_caption, u"OK") << c.language;
    EXPECT_EQ(r.title, u"Ziel") << c.language;
  }
}

TEST_F(ChoosePathTest, NewFolderAsksForTheNameAndCreatesTheFolder) {
  struct Case {
    int32_t language;
    const char16_t* parent;  // the path field's text
    const char16_t* name;
    const char16_t* made;
    const char* on_disk;
    const char16_t* prompt;
    const char16_t* title;
  };
  for (const Case& c :
       {Case{1, u"C:\\Daten", u"Neu", u"C:\\Daten\\Neu", "c/Daten/Neu", u"Name des neuen Ordners:",
             u"Neuen Ordner erstellen"},
        // A root's field ends in "\": the doubled separator is reduced.
        Case{2, u"C:\\", u"Root", u"C:\\Root", "c/Root", u"New folder name:", u"Create new folder"},
        // Three in a row keep two, as one replace of the pair leaves them;
        // the file system reads them as one.
        Case{8, u"C:\\Daten\\", u"\\Tief", u"C:\\Daten\\\\Tief", "c/Daten/Tief",
             u"New folder name:", u"Create new folder"}}) {
    SetLanguage(c.language);
    ui_->new_folder_in = c.parent;
    ui_->typed_name = c.name;
    lib_.tklChoosePath(u"C:\\Daten");
    EXPECT_EQ(ui_->made, std::optional<std::u16string>(c.made)) << c.language;
    EXPECT_TRUE(std::filesystem::is_directory(temp_.File(c.on_disk))) << c.on_disk;
    ASSERT_FALSE(ui_->inputs.empty());
    EXPECT_EQ(ui_->inputs.back().prompt, c.prompt);
    EXPECT_EQ(ui_->inputs.back().title, c.title);
    EXPECT_EQ(ui_->inputs.back().initial_text, u"");
  }
  EXPECT_TRUE(ui_->messages.empty());
}

TEST_F(ChoosePathTest, ANameCancelledMakesNothing) {
  ui_->new_folder_in = u"C:\\Daten";
  ui_->typed_name.clear();
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"C:\\Daten");
  EXPECT_EQ(ui_->made, std::nullopt);
  EXPECT_EQ(ui_->inputs.size(), 1u);
  EXPECT_TRUE(ui_->messages.empty());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp_.File("c/Daten")),
                          std::filesystem::directory_iterator()),
            0);
}

TEST_F(ChoosePathTest, AFolderThatCannotBeMadeIsShownAsTheLibrarysError) {
  struct Case {
    int32_t language;
    const char16_t* parent;
    const char16_t* name;
    const char16_t* heading;
    const char16_t* detail;
  };
  for (const Case& c :
       {// It exists already.
        Case{2, u"C:\\", u"Daten", u"Runtime error '75':", u"Path/File access error"},
        Case{1, u"C:\\", u"Daten", u"Laufzeitfehler '75':", u"Path/File access error"},
        // The folder above it is missing.
        Case{2, u"C:\\Fehlt", u"Neu", u"Runtime error '76':", u"Path not found"},
        // A drive the map does not know.
        Case{2, u"Q:\\", u"Neu", u"Runtime error '76':", u"Path not found"}}) {
    SetLanguage(c.language);
    ui_->new_folder_in = c.parent;
    ui_->typed_name = c.name;
    ui_->messages.clear();
    lib_.tklChoosePath(u"C:\\Daten");
    EXPECT_EQ(ui_->made, std::nullopt);
    ASSERT_EQ(ui_->messages.size(), 1u) << ToUtf8(c.parent);
    EXPECT_EQ(ui_->messages[0].form, u"frmStdMsg");
    EXPECT_EQ(ui_->messages[0].prompt, c.heading);
    EXPECT_EQ(ui_->messages[0].detail, c.detail);
  }
  EXPECT_FALSE(std::filesystem::exists(temp_.File("c/Fehlt")));
}

TEST_F(ChoosePathTest, AFormThatFailsChoosesNothing) {
  ui_->throw_instead = true;
  EXPECT_EQ(lib_.tklChoosePath(u"C:\\Daten"), u"");
}

TEST_F(ChoosePathTest, ByNameBothArgumentsAreOptional) {
  const InvokeResult browsed = Invoke(lib_, "tklChoosePath", {});
  EXPECT_EQ(browsed.result->as_string(), u"C:\\Daten");
  EXPECT_EQ(ui_->browsed, std::vector<std::u16string>{u""});
  const InvokeResult formed =
      Invoke(lib_, "tklChoosePath", {Variant(u"C:\\Daten"), Variant(u"Ziel")});
  EXPECT_EQ(formed.result->as_string(), u"C:\\Daten");
  ASSERT_EQ(ui_->requests.size(), 1u);
  EXPECT_EQ(ui_->requests[0].title, u"Ziel");
  EXPECT_TRUE(formed.by_ref.empty());
}

}  // namespace
}  // namespace norvik50
