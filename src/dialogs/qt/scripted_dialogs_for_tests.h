// Test support for the Qt forms: a form shown and acted on once it is up,
// and a test's own dialog script and dialog log (with the store and the
// temporary files in the same folder) for forms shown through the members.
#ifndef NORVIK50_SRC_DIALOGS_QT_SCRIPTED_DIALOGS_FOR_TESTS_H_
#define NORVIK50_SRC_DIALOGS_QT_SCRIPTED_DIALOGS_FOR_TESTS_H_

#include <gtest/gtest.h>

#include <QJsonObject>
#include <QTimer>
#include <fstream>
#include <string>
#include <vector>

#include "core/library_state.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/dialog_log_for_tests.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"
#include "testing/temp_folder.h"

namespace norvik50::qt::testing {

// Shows `form` modally, runs `act` once it is up, closes it by its close
// box if it is still open, and returns the form's answer.
template <typename Form, typename Act>
int ShowAndAct(Form& form, Act act) {
  QTimer::singleShot(0, &form, [&] {
    act();
    if (form.isVisible()) form.close();
  });
  form.exec();
  return form.Result();
}

// Points the library at `folder` for the store ("reg"), the temporary
// files, the dialog script ("script.jsonl") and the dialog log
// ("dialogs.jsonl"), in `locale`, for the object's lifetime. Declare it
// before the LIB object, so the library starts with these settings.
class ScriptedDialogs {
 public:
  ScriptedDialogs(const norvik50::testing::TempFolder& folder, const std::string& locale)
      : folder_(folder), locale_(locale) {}

  // Replaces the script; the next dialog takes its first line.
  void Script(const std::string& lines) {
    std::ofstream(folder_.File("script.jsonl")) << lines;
    RestartDialogScript();
  }
  std::vector<QJsonObject> Log() const { return ReadDialogLog(LogPath()); }
  std::string LogPath() const { return folder_.File("dialogs.jsonl"); }

 private:
  const norvik50::testing::TempFolder& folder_;
  norvik50::testing::ScopedEnv tmpdir_{"TMPDIR", folder_.path()};
  norvik50::testing::ScopedEnv store_{"NORVIK50_REGISTRY_DIR", folder_.File("reg")};
  norvik50::testing::ScopedEnv script_{"NORVIK50_DIALOG_SCRIPT", folder_.File("script.jsonl")};
  norvik50::testing::ScopedEnv log_{"NORVIK50_DIALOG_LOG", folder_.File("dialogs.jsonl")};
  norvik50::testing::ScopedLocale locale_;
};

// The members show the Qt dialogs for the object's lifetime; afterwards
// the headless interface, no shown hook and the default base key are back.
class QtDialogsInstalled {
 public:
  QtDialogsInstalled() { InstallQtDialogs(); }
  ~QtDialogsInstalled() {
    SetShownHook(nullptr);
    SetUserInterface(nullptr);
    SetBaseKey(u"");
  }
  QtDialogsInstalled(const QtDialogsInstalled&) = delete;
  QtDialogsInstalled& operator=(const QtDialogsInstalled&) = delete;
};

// Stores `id` as the user's current language under the base key.
inline void StoreLanguage(LIB& lib, int32_t id) {
  lib.tkrSetValue(HKEY_CURRENT_USER, lib.tklRegKey(), u"Language", Variant(id));
}

// A test of the members through the Qt dialogs: the dialogs installed, the
// test's own folder, script and log in `locale`, and a library object.
class QtMembersTest : public ::testing::Test {
 protected:
  explicit QtMembersTest(const std::string& locale) : dialogs_(temp_, locale) {}
  void SetLanguage(int32_t id) { StoreLanguage(lib_, id); }

  QtDialogsInstalled qt_;
  norvik50::testing::TempFolder temp_;
  ScriptedDialogs dialogs_;
  LIB lib_;
};

}  // namespace norvik50::qt::testing

#endif  // NORVIK50_SRC_DIALOGS_QT_SCRIPTED_DIALOGS_FOR_TESTS_H_
