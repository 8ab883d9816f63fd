#include "dialogs_plugin_loader.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace norvik50::cli {
namespace {

// The folder of the running command, from the kernel: argv[0] may be a
// bare name found on the PATH.
std::filesystem::path CommandFolder() {
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  return ec ? std::filesystem::path() : exe.parent_path();
}

std::vector<std::string> Candidates() {
  std::vector<std::string> paths;
  if (const char* named = std::getenv("NORVIK50_DIALOGS_PLUGIN"); named != nullptr && *named) {
    paths.emplace_back(named);
    return paths;
  }
#ifdef NORVIK50_DIALOGS_PLUGIN_FILE
  const std::filesystem::path folder = CommandFolder();
  if (!folder.empty()) {
    // The build tree keeps the plugin beside the command; an installation
    // keeps it in the library folder.
    paths.push_back((folder / NORVIK50_DIALOGS_PLUGIN_FILE).string());
    paths.push_back(
        (folder / NORVIK50_BIN_TO_PLUGIN_DIR / NORVIK50_DIALOGS_PLUGIN_FILE).lexically_normal());
  }
#endif
  return paths;
}

const DialogsPlugin* OpenPlugin() {
  std::string why = "this build has no Qt dialogs";
  for (const std::string& path : Candidates()) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
      why = path + " is not there";
      continue;
    }
    // Never closed: the forms and the application object it creates live
    // until the process ends.
    void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
      const char* error = ::dlerror();
      why = error != nullptr ? error : path + " cannot be opened";
      continue;
    }
    using Entry = const DialogsPlugin* (*)();
    auto entry = reinterpret_cast<Entry>(::dlsym(handle, NORVIK50_DIALOGS_PLUGIN_ENTRY));
    const DialogsPlugin* plugin = entry != nullptr ? entry() : nullptr;
    if (plugin != nullptr && plugin->version == kDialogsPluginVersion) return plugin;
    why = path + " is not a dialogs plugin of this version";
  }
  std::cerr << "norvik50: no Qt dialogs (" << why << "); dialogs answer as failed\n";
  return nullptr;
}

class Deferred final : public UserInterface {
 public:
  int32_t ShowStandardMessage(std::u16string_view prompt, std::u16string_view detail,
                              int32_t style, std::u16string_view title) override {
    return Real().ShowStandardMessage(prompt, detail, style, title);
  }
  int32_t ShowMessageBox(const MessageBoxRequest& request) override {
    return Real().ShowMessageBox(request);
  }
  int32_t AskYesNo(std::u16string_view question, std::u16string_view title, bool default_no,
                   int16_t language) override {
    return Real().AskYesNo(question, title, default_no, language);
  }
  int16_t GetAnswer(std::u16string_view prompt, std::u16string_view detail,
                    std::u16string_view title,
                    const std::vector<std::u16string>& captions) override {
    return Real().GetAnswer(prompt, detail, title, captions);
  }
  int32_t ShowInput(const InputRequest& request, std::u16string& text) override {
    return Real().ShowInput(request, text);
  }
  bool ShowZoom(ZoomRequest& request, std::u16string& text) override {
    return Real().ShowZoom(request, text);
  }
  int16_t ChooseLanguage(const std::vector<std::u16string>& languages) override {
    return Real().ChooseLanguage(languages);
  }
  std::u16string ChoosePath(const ChoosePathRequest& request) override {
    return Real().ChoosePath(request);
  }
  std::u16string BrowseForFolder(std::u16string_view title, int16_t language) override {
    return Real().BrowseForFolder(title, language);
  }
  bool ShowFileDialog(const FileDialogRequest& request, std::u16string& filename) override {
    return Real().ShowFileDialog(request, filename);
  }
  void UpdateMessageWindow(const MessageWindowState& state) override {
    // Hiding a window that was never shown needs no toolkit.
    if (real_ || state.visible) Real().UpdateMessageWindow(state);
  }
  // What only concerns a window already shown stays without Qt until then.
  void UnloadMessageWindow() override {
    if (real_) real_->UnloadMessageWindow();
  }
  bool MessageWindowSize(int32_t& width_twips, int32_t& height_twips) override {
    return real_ && real_->MessageWindowSize(width_twips, height_twips);
  }
  void ProcessEvents() override {
    if (real_) real_->ProcessEvents();
  }
  // A stored window position is checked against the real desktop, so the
  // screens are worth starting the toolkit for.
  std::vector<TwipsRect> ScreenRects() override { return Real().ScreenRects(); }
  TwipsRect PrimaryScreen() override { return Real().PrimaryScreen(); }
  int32_t MenuBarHeight() override { return Real().MenuBarHeight(); }
  // Before the toolkit started, the application has no window to keep on top.
  int32_t SetApplicationTopMost(bool top_most) override {
    return real_ ? real_->SetApplicationTopMost(top_most) : 0;
  }
  // Keys pressed before the toolkit started were seen by no window.
  bool IsKeyDown(int32_t virtual_key) override { return real_ && real_->IsKeyDown(virtual_key); }
  std::vector<std::u16string> FontFamilies() override { return Real().FontFamilies(); }
  std::optional<std::vector<TopLevelWindow>> TopLevelWindows() override {
    return Real().TopLevelWindows();
  }
  // Nothing was confined before the toolkit started, so releasing needs none.
  bool ConfinePointer(const std::optional<TwipsRect>& area) override {
    if (!area) return real_ ? real_->ConfinePointer(area) : true;
    return Real().ConfinePointer(area);
  }
  // Before the toolkit started, no form of it was open.
  std::vector<std::u16string> OpenForms() override {
    return real_ ? real_->OpenForms() : std::vector<std::u16string>{};
  }

 private:
  UserInterface& Real() {
    if (!real_) {
      const DialogsPlugin* plugin = DialogsPluginOrNull();
      real_ = plugin != nullptr && plugin->display_available() ? plugin->user_interface()
                                                               : HeadlessUserInterface();
    }
    return *real_;
  }

  std::shared_ptr<UserInterface> real_;
};

}  // namespace

const DialogsPlugin* DialogsPluginOrNull() {
  static const DialogsPlugin* const plugin = OpenPlugin();
  return plugin;
}

std::shared_ptr<UserInterface> DeferredQtUserInterface() { return std::make_shared<Deferred>(); }

}  // namespace norvik50::cli
