// tklFileDialog against a user interface that records the request and
// plays the user's part.
#include <gtest/gtest.h>

#include <stdexcept>

#include "norvik50/dispatch.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using namespace norvik50::testing;

class RecordingFileDialog : public UserInterface {
 public:
  bool ShowFileDialog(const FileDialogRequest& request, std::u16string& filename) override {
    requests.push_back(request);
    if (throw_instead) throw std::runtime_error("no window");
    if (chosen.empty()) return false;
    filename = chosen;
    return true;
  }
  std::vector<FileDialogRequest> requests;
  std::u16string chosen = u"C:\\Daten\\neu.txt";  // "" cancels
  bool throw_instead = false;
};

class FileDialogTest : public ::testing::Test {
 protected:
  FileDialogTest() { SetUserInterface(ui_); }
  ~FileDialogTest() override { SetUserInterface(nullptr); }

  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  std::shared_ptr<RecordingFileDialog> ui_ = std::make_shared<RecordingFileDialog>();
  LIB lib_;
};

TEST_F(FileDialogTest, FlagsZeroTakeTheDefaultsOfOpenAndSave) {
  struct Case {
    int32_t flags;
    bool open;
    int32_t shown;
  };
  for (const Case& c : {Case{0, true, 2626560}, Case{0, false, 2663430},
                        // Any other value is taken as it is, even without the defaults.
                        Case{4096, false, 4096}, Case{2, true, 2}, Case{-32768, true, -32768}}) {
    std::u16string name;
    lib_.tklFileDialog(u"Text (*.txt)|*.txt", u"t", name, c.flags, 0, u"", c.open);
    EXPECT_EQ(ui_->requests.back().flags, c.shown) << c.flags << " " << c.open;
    EXPECT_EQ(ui_->requests.back().open, c.open);
  }
}

// The dialog speaks the stored language, or the locale's (0) when none is
// stored; showing it never brings up the language chooser.
TEST_F(FileDialogTest, TheDialogSpeaksTheStoredLanguage) {
  std::u16string name;
  lib_.tklFileDialog(u"", u"t", name);
  EXPECT_EQ(ui_->requests.back().language, 0);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"DefaultLanguage", Variant(int32_t{2}));
  lib_.tklFileDialog(u"", u"t", name);
  EXPECT_EQ(ui_->requests.back().language, 2);
  lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(int32_t{1}));
  lib_.tklFileDialog(u"", u"t", name);
  EXPECT_EQ(ui_->requests.back().language, 1);
}

TEST_F(FileDialogTest, TheInitialFolderIsInitDirElseTheFileNamesFolder) {
  struct Case {
    const char16_t* filename;
    const char16_t* init_dir;
    const char16_t* folder;
  };
  for (const Case& c : {Case{u"C:\\Daten\\alt.txt", u"D:\\Ablage", u"D:\\Ablage"},
                        Case{u"C:\\Daten\\alt.txt", u"", u"C:\\Daten\\"},
                        Case{u"\\\\server\\share\\a.txt", u"", u"\\\\server\\share\\"},
                        // A bare name has no folder: the dialog starts where it likes.
                        Case{u"alt.txt", u"", u""}, Case{u"", u"", u""}}) {
    std::u16string name = c.filename;
    lib_.tklFileDialog(u"", u"", name, 0, 0, c.init_dir);
    EXPECT_EQ(ui_->requests.back().initial_folder, c.folder) << ToUtf8(c.filename);
    EXPECT_EQ(ui_->requests.back().filename, c.filename);
  }
}

TEST_F(FileDialogTest, TheRequestCarriesFilterTitleAndOwner) {
  std::u16string name;
  lib_.tklFileDialog(u"Resource Library (*.DLL)|*.DLL", u"Wo liegt sie?", name, 0, 0x3a00007);
  const FileDialogRequest& r = ui_->requests.back();
  EXPECT_EQ(r.filter, u"Resource Library (*.DLL)|*.DLL");
  EXPECT_EQ(r.title, u"Wo liegt sie?");
  EXPECT_EQ(r.owner_window, 0x3a00007);
  EXPECT_TRUE(r.open);
}

TEST_F(FileDialogTest, OnlyAChosenFileIsWrittenBack) {
  std::u16string name = u"C:\\Daten\\alt.txt";
  EXPECT_TRUE(lib_.tklFileDialog(u"", u"", name));
  EXPECT_EQ(name, u"C:\\Daten\\neu.txt");
  // Cancel leaves the name as it was.
  ui_->chosen.clear();
  name = u"C:\\Daten\\alt.txt";
  EXPECT_FALSE(lib_.tklFileDialog(u"", u"", name, 0, 0, u"", false));
  EXPECT_EQ(name, u"C:\\Daten\\alt.txt");
  // A dialog that fails is a cancelled one.
  ui_->throw_instead = true;
  EXPECT_FALSE(lib_.tklFileDialog(u"", u"", name));
  EXPECT_EQ(name, u"C:\\Daten\\alt.txt");
}

TEST_F(FileDialogTest, HeadlessNothingIsChosen) {
  SetUserInterface(nullptr);
  std::u16string name = u"a.txt";
  EXPECT_FALSE(lib_.tklFileDialog(u"", u"", name));
  EXPECT_EQ(name, u"a.txt");
}

TEST_F(FileDialogTest, ByNameTheFileNameIsWrittenBackOnlyWhenChosen) {
  const InvokeResult chosen =
      Invoke(lib_, "tklFileDialog", {Variant(u"f"), Variant(u"t"), Variant(u"alt.txt")});
  EXPECT_EQ(chosen.result->as_boolean(), kTrue);
  ASSERT_EQ(chosen.by_ref.count(2), 1u);
  EXPECT_EQ(chosen.by_ref.at(2).as_string(), u"C:\\Daten\\neu.txt");
  EXPECT_EQ(chosen.by_ref.count(6), 0u);  // bOpen is never changed
  EXPECT_EQ(ui_->requests.back().flags, 2626560);

  ui_->chosen.clear();
  const InvokeResult cancelled =
      Invoke(lib_, "tklFileDialog",
             {Variant(u"f"), Variant(u"t"), Variant(u"alt.txt"), Variant(int32_t{0}),
              Variant(int32_t{0}), Variant(u""), Variant(false)});
  EXPECT_EQ(cancelled.result->as_boolean(), kFalse);
  EXPECT_TRUE(cancelled.by_ref.empty());
  EXPECT_FALSE(ui_->requests.back().open);
  EXPECT_EQ(ui_->requests.back().flags, 2663430);
}

}  // namespace
}  // namespace norvik50
