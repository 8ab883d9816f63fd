// The QApplication the dialogs run in: the host's, or one the library
// creates on the first dialog, and the dialog font.
#ifndef NORVIK50_SRC_DIALOGS_QT_QT_APPLICATION_H_
#define NORVIK50_SRC_DIALOGS_QT_QT_APPLICATION_H_

#include <QFont>
#include <QString>
#include <QWindow>
#include <cstdint>
#include <memory>

namespace norvik50::qt {

// Makes sure a QApplication exists; creates one on first use when the
// host has none. Also loads the dialog font once.
void EnsureApplication();

// The dialogs' font: Tahoma at `points` (the platform's fallback where it
// is missing).
QFont DialogFont(double points = 8.0, bool bold = false);

// Another program's window, named by the window id a host passes as an
// owner (an X11 window id), as a QWindow that can be a transient parent.
// Null for 0 and on platforms that cannot reach another program's windows
// (offscreen, Wayland): there the caller falls back to its own choice.
std::unique_ptr<QWindow> ForeignWindow(int64_t window_id);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_QT_APPLICATION_H_
