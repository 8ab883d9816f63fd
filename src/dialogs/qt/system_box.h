// The window system's own message boxes (Qt's QMessageBox with Qt's
// translated captions), run through the dialog driver so that the dialog
// script answers them and the dialog log records them as "system".
#ifndef NORVIK50_SRC_DIALOGS_QT_SYSTEM_BOX_H_
#define NORVIK50_SRC_DIALOGS_QT_SYSTEM_BOX_H_

#include <QMessageBox>

namespace norvik50::qt {

// Shows `box` top-most and modally; returns the standard button clicked
// (the escape button's when it was closed). `symbol` is what the log
// records (16, 32, 48, 64). `answer` maps the button to the log's answer.
QMessageBox::StandardButton RunSystemBox(QMessageBox& box, int symbol,
                                         int (*answer)(QMessageBox::StandardButton));

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_SYSTEM_BOX_H_
