// The Qt 6 dialogs: the one public header that knows Qt. A Qt host calls
// InstallQtDialogs(mainWindow) once after creating its QApplication; from
// then on every dialog member shows a real, modal Qt form owned by that
// window. A host without a Qt event loop calls InstallQtDialogs() too: the
// first dialog creates the application object, and each dialog runs
// modally inside the member's call.
//
// Two environment variables make the dialogs drivable by tests (see the
// README): NORVIK50_DIALOG_SCRIPT names a file of JSON lines, one acted
// out on each dialog that opens; NORVIK50_DIALOG_LOG names a file that
// gets one JSON line per dialog shown.
//
// Thread safety: dialogs run on the thread of the QApplication (the first
// caller's thread when the library creates it).
#ifndef NORVIK50_QT_DIALOGS_H_
#define NORVIK50_QT_DIALOGS_H_

#include <memory>
#include <string>

#include "norvik50/export.h"
#include "norvik50/host.h"
#include "norvik50/text_control.h"

class QWidget;
class QLineEdit;
class QPlainTextEdit;
class QTextEdit;

namespace norvik50 {

// The Qt user interface; `owner` (may be null) becomes the dialogs'
// transient parent. Never null.
NORVIK50_EXPORT std::shared_ptr<UserInterface> QtUserInterface(QWidget* owner = nullptr);

// Installs QtUserInterface(owner) for the process (SetUserInterface).
NORVIK50_EXPORT void InstallQtDialogs(QWidget* owner = nullptr);

// True when Qt can show windows: DISPLAY or WAYLAND_DISPLAY is set, or
// QT_QPA_PLATFORM names a platform explicitly (offscreen included).
NORVIK50_EXPORT bool DisplayAvailable();

// A host's own text field as a TextControl of type "TextBox", for
// tklZoomTextBox. "Locked" is the field's read-only state. The field is
// not owned; once it is destroyed, the control reads as empty and ignores
// changes.
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QLineEdit* field);
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QPlainTextEdit* field);
NORVIK50_EXPORT std::shared_ptr<TextControl> QtTextControl(QTextEdit* field);

// Renders every dialog form in German and English to PNG files in
// `folder` (created when missing). Returns the number of files written.
NORVIK50_EXPORT int RenderDialogGallery(const std::string& folder);

}  // namespace norvik50

#endif  // NORVIK50_QT_DIALOGS_H_
