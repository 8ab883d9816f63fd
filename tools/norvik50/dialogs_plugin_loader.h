// Opens the command line's dialogs plugin (see dialogs_plugin/) the first
// time a dialog is about to be shown, and stands in for the Qt user
// interface until then.
#ifndef NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_LOADER_H_
#define NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_LOADER_H_

#include <memory>

#include "dialogs_plugin/dialogs_plugin.h"
#include "norvik50/host.h"

namespace norvik50::cli {

// The plugin, opened once per process; null when this build has none or it
// cannot be opened (the reason then went to stderr, once). Looked for in
// NORVIK50_DIALOGS_PLUGIN when that names a file, else beside the command
// and in the installed library folder.
const DialogsPlugin* DialogsPluginOrNull();

// A user interface that opens the plugin at its first dialog and from then
// on forwards every call to the Qt forms, or answers headless when the
// plugin cannot be opened or Qt finds no display.
std::shared_ptr<UserInterface> DeferredQtUserInterface();

}  // namespace norvik50::cli

#endif  // NORVIK50_TOOLS_NORVIK50_DIALOGS_PLUGIN_LOADER_H_
