// Test support for the resource members: a temporary machine with drive C:,
// its own settings store and log, the fixture libraries in C:\App, and a
// user interface that records what it was asked.
#ifndef NORVIK50_SRC_RESOURCES_RESOURCE_TEST_SUPPORT_H_
#define NORVIK50_SRC_RESOURCES_RESOURCE_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/library_state.h"
#include "norvik50/encoding.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"
#include "resources/resource_fixtures_for_tests.h"
#include "testing/temp_folder.h"

namespace norvik50::testing {

class RecordingUi : public UserInterface {
 public:
  int32_t ShowStandardMessage(std::u16string_view prompt, std::u16string_view detail, int32_t,
                              std::u16string_view title) override {
    messages.push_back(std::u16string(prompt) + u"|" + std::u16string(detail) + u"|" +
                       std::u16string(title));
    return 1;
  }
  int16_t ChooseLanguage(const std::vector<std::u16string>& languages) override {
    ++chooser_calls;
    offered = languages;
    return choice;
  }
  bool ShowFileDialog(const FileDialogRequest& request, std::u16string& filename) override {
    dialog = request.filter + u"|" + request.title + u"|" + FromUtf8(std::to_string(request.flags)) +
             u"|" + request.initial_folder + (request.open ? u"|open" : u"|save");
    if (file_choice.empty()) return false;
    filename = file_choice;
    return true;
  }

  std::vector<std::u16string> messages;
  int chooser_calls = 0;
  std::vector<std::u16string> offered;
  int16_t choice = -1;
  std::u16string dialog;
  std::u16string file_choice;  // "" cancels
};

class ResourceMachineTest : public ::testing::Test {
 protected:
  ResourceMachineTest() {
    std::filesystem::create_directories(temp_.File("c/App"));
    for (const char* name : {"Res_DE.dll", "Res_EN.dll"}) {
      std::filesystem::copy_file(FixturePath(name), temp_.File(std::string("c/App/") + name));
    }
    SetDriveRoot(u'C', temp_.File("c"));
    SetUserInterface(ui_);
  }
  ~ResourceMachineTest() override {
    SetUserInterface(nullptr);
    ClearDriveRoot(u'C');
    SetBaseKey(u"");
  }

  void SetLanguage(int32_t id) {
    lib_.tkrSetValue(HKEY_CURRENT_USER, lib_.tklRegKey(), u"Language", Variant(id));
  }
  void SetMachineValue(std::u16string_view name, std::u16string_view value,
                       std::u16string_view key = u"SOFTWARE\\VANTEX\\Global") {
    lib_.tkrSetValue(HKEY_LOCAL_MACHINE, key, name, Variant(value));
  }
  void WriteFile(const std::string& relative, const std::string& bytes) {
    std::filesystem::create_directories(std::filesystem::path(temp_.File(relative)).parent_path());
    std::ofstream(temp_.File(relative), std::ios::binary) << bytes;
  }
  // The messages of the log lines written since the LIB was created.
  std::vector<std::string> LoggedErrors() {
    std::vector<std::string> errors;
    std::string content = temp_.Read("nvk50err.LOG");
    for (std::size_t at = content.find("ERR="); at != std::string::npos;
         at = content.find("ERR=", at + 1)) {
      errors.push_back(content.substr(at, content.find("\r\n", at) - at));
    }
    return errors;
  }

  TempFolder temp_;
  ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  ScopedLocale locale_{"en-US"};
  std::shared_ptr<RecordingUi> ui_ = std::make_shared<RecordingUi>();
  LIB lib_;
};

}  // namespace norvik50::testing

#endif  // NORVIK50_SRC_RESOURCES_RESOURCE_TEST_SUPPORT_H_
