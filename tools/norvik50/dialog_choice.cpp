#include "dialog_choice.h"

#include <cstdlib>
#include <iostream>

#ifdef NORVIK50_WITH_QT
#include "norvik50/qt_dialogs.h"
#endif

namespace norvik50::cli {

std::shared_ptr<bool> AddHeadlessFlag(CLI::App& command) {
  auto headless = std::make_shared<bool>(false);
  command.add_flag("--headless", *headless,
                   "Never show a dialog: every dialog answers as failed at once");
  return headless;
}

void ChooseDialogs(bool headless) {
#ifdef NORVIK50_WITH_QT
  if (!headless && DisplayAvailable()) InstallQtDialogs();
#else
  (void)headless;
#endif
}

bool InstallOffscreenDialogs() {
#ifdef NORVIK50_WITH_QT
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  InstallQtDialogs();
  return true;
#else
  return false;
#endif
}

int RunDialogGallery(const std::string& folder) {
#ifdef NORVIK50_WITH_QT
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  const int written = RenderDialogGallery(folder);
  std::cout << written << " pictures in " << folder << '\n';
  return written > 0 ? 0 : 1;
#else
  std::cerr << "norvik50 demo --gallery: this build has no Qt dialogs\n";
  (void)folder;
  return 1;
#endif
}

}  // namespace norvik50::cli
