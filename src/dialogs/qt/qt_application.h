// The QApplication the dialogs run in: the host's, or one the library
// creates on the first dialog, and the dialog font.
#ifndef NORVIK50_SRC_DIALOGS_QT_QT_APPLICATION_H_
#define NORVIK50_SRC_DIALOGS_QT_QT_APPLICATION_H_

#include <QFont>
#include <QString>
#include <QWidget>
#include <QWindow>
#include <cstdint>
#include <memory>

namespace norvik50::qt {

// Makes sure a QApplication exists; creates one on first use when the
// host has none. Also loads the dialog font once. An application the
// library creates keeps Qt's harmless platform notes off the terminal and
// lives until the process ends.
void EnsureApplication();

// Hands `window`, a window of the library that lives between calls (the
// progress window), to the application's lifetime: it is deleted while
// the application still exists, when the host's event loop ends
// (aboutToQuit), when the host destroys its application, or at exit
// before the library's own application goes. Null is ignored.
void UnloadAtApplicationEnd(QWidget* window);

// True while an application exists whose widgets may be touched: false
// before there is one, once it is being destroyed, and after.
bool ApplicationUsable();

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
