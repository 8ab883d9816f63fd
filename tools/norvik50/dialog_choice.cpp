#include "dialog_choice.h"

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

}  // namespace norvik50::cli
