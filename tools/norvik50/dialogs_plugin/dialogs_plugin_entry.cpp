// The dialogs plugin's entry: the Qt forms' public functions as a table.
#include "dialogs_plugin.h"

#include "norvik50/qt_dialogs.h"

namespace {

std::shared_ptr<norvik50::UserInterface> MakeUserInterface() {
  return norvik50::QtUserInterface();
}

constexpr norvik50::cli::DialogsPlugin kPlugin{
    norvik50::cli::kDialogsPluginVersion,
    &norvik50::DisplayAvailable,
    &MakeUserInterface,
    &norvik50::RenderDialogGallery,
};

}  // namespace

extern "C" __attribute__((visibility("default"))) const norvik50::cli::DialogsPlugin*
norvik50_dialogs_plugin() {
  return &kPlugin;
}
