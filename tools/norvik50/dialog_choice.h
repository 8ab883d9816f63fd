// Which dialogs the command line shows: the Qt forms when a display is
// there (DISPLAY, WAYLAND_DISPLAY or an explicit QT_QPA_PLATFORM) and the
// build has them, the headless answers otherwise or with --headless. The
// forms come from the dialogs plugin, opened at the first dialog.
#ifndef NORVIK50_TOOLS_NORVIK50_DIALOG_CHOICE_H_
#define NORVIK50_TOOLS_NORVIK50_DIALOG_CHOICE_H_

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace norvik50::cli {

// Adds --headless to `command`; the returned flag is set when given.
std::shared_ptr<bool> AddHeadlessFlag(CLI::App& command);

// Installs the Qt dialogs unless `headless`; whether a display is there is
// asked at the first dialog.
void ChooseDialogs(bool headless);

// Installs the Qt dialogs on the offscreen platform (unless QT_QPA_PLATFORM
// names another), so that scripted forms show nothing on a desktop. False
// in a build without Qt, which keeps the headless answers.
bool InstallOffscreenDialogs();

// Renders the dialog gallery into `folder` on the offscreen platform
// (unless QT_QPA_PLATFORM names another). Returns the exit code: 0 when
// pictures were written, 1 otherwise (also in a build without Qt).
int RunDialogGallery(const std::string& folder);

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_DIALOG_CHOICE_H_
