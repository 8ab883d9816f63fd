#include "dialog_choice.h"

#include <cstdlib>
#include <iostream>

#include "dialogs_plugin_loader.h"

namespace norvik50::cli {

namespace {

// Set but empty counts as not set: Qt would pick its default platform.
void OffscreenUnlessNamed() {
  const char* named = std::getenv("QT_QPA_PLATFORM");
  if (named == nullptr || *named == '\0') setenv("QT_QPA_PLATFORM", "offscreen", 1);
}

}  // namespace

std::shared_ptr<bool> AddHeadlessFlag(CLI::App& command) {
  auto headless = std::make_shared<bool>(false);
  command.add_flag("--headless", *headless,
                   "Never show a dialog: every dialog answers as failed at once");
  return headless;
}

void ChooseDialogs(bool headless) {
  // Qt is opened at the first dialog, not here: most calls show none.
  if (!headless) SetUserInterface(DeferredQtUserInterface());
}

bool InstallOffscreenDialogs() {
  if (DialogsPluginOrNull() == nullptr) return false;
  OffscreenUnlessNamed();
  SetUserInterface(DeferredQtUserInterface());
  return true;
}

int RunDialogGallery(const std::string& folder) {
  const DialogsPlugin* plugin = DialogsPluginOrNull();
  if (plugin == nullptr) {
    std::cerr << "norvik50 demo --gallery: the Qt dialogs are not available\n";
    return 1;
  }
  OffscreenUnlessNamed();
  const int written = plugin->render_gallery(folder);
  std::cout << written << " pictures in " << folder << '\n';
  return written > 0 ? 0 : 1;
}

}  // namespace norvik50::cli
