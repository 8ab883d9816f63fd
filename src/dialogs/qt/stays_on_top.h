// A window kept above other windows, the same way for a host's forms and
// for every window of the application.
#ifndef NORVIK50_SRC_DIALOGS_QT_STAYS_ON_TOP_H_
#define NORVIK50_SRC_DIALOGS_QT_STAYS_ON_TOP_H_

class QWidget;

namespace norvik50::qt {

// Sets or clears the window's stays-on-top hint. A shown window stays
// shown: Qt hides a window whose flags change. On X11 the window manager
// keeps it above; Wayland compositors leave stacking to the user and
// ignore the hint.
void SetStaysOnTop(QWidget& window, bool on);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_STAYS_ON_TOP_H_
