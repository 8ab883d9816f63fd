// What the command line finds in its dialogs plugin: the Qt forms built as a
// module of their own, opened only when a dialog is about to be shown, so
// that every command that shows none (a call, a reg query, --version)
// starts without loading Qt and the fifty libraries it brings.
//
// The plugin is built from the same sources as libnorvik50_qt but links no
// part of the library: its references into the library are resolved
// against the command line itself, which exports them. So there is one
// library state in the process, whichever side calls.
#ifndef NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_DIALOGS_PLUGIN_H_
#define NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_DIALOGS_PLUGIN_H_

#include <memory>
#include <string>

#include "norvik50/host.h"

namespace norvik50::cli {

// Raised whenever the table, or the UserInterface it hands out, changes
// shape: a command line never calls through a table it does not know.
// 2: UserInterface::ScreenRects.
// 3: PrimaryScreen, MenuBarHeight, SetApplicationTopMost, IsKeyDown,
//    FontFamilies.
// 4: TopLevelWindows, ConfinePointer, OpenForms.
inline constexpr int kDialogsPluginVersion = 4;

struct DialogsPlugin {
  int version;
  // True when Qt can show windows in this process.
  bool (*display_available)();
  // The Qt user interface (never null).
  std::shared_ptr<UserInterface> (*user_interface)();
  // Renders every form in German and English to PNG files in `folder`;
  // the number of files written.
  int (*render_gallery)(const std::string& folder);
};

}  // namespace norvik50::cli

// The one symbol the command line looks up in the plugin.
#define NORVIK50_DIALOGS_PLUGIN_ENTRY "norvik50_dialogs_plugin"
extern "C" const norvik50::cli::DialogsPlugin* norvik50_dialogs_plugin();

#endif  // NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_DIALOGS_PLUGIN_H_
