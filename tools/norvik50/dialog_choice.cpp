#include "dialog_choice.h"

#include <cstdlib>
#include <iostream>

#include "dialogs_plugin_loader.h"

namespace norvik50::cli {

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
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  SetUserInterface(DeferredQtUserInterface());
  return true;
}

int RunDialogGallery(const std::string& folder) {
  const DialogsPlugin* plugin = DialogsPluginOrNull();
  if (plugin == nullptr) {
    std::cerr << "norvik50 demo --gallery: the Qt dialogs are not available\n";
    return 1;
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const int written = plugin->render_gallery(folder);
  std::cout << written << " pictures in " << folder << '\n';
  return written > 0 ? 0 : 1;
}

}  // namespace norvik50::cli
