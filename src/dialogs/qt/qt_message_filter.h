// Qt's own notes about the platform that say nothing a user of the
// library can act on ("XDG_RUNTIME_DIR not set", "This plugin does not
// support propagateSizeHints()") are kept off the terminal; everything
// else Qt reports goes where it went before.
#ifndef NORVIK50_SRC_DIALOGS_QT_QT_MESSAGE_FILTER_H_
#define NORVIK50_SRC_DIALOGS_QT_QT_MESSAGE_FILTER_H_

#include <QString>
#include <QtGlobal>

namespace norvik50::qt {

// True for a message Qt prints about its platform that is harmless to the
// library's users. Only debug, info and warning messages qualify; a
// critical or fatal message is never dropped.
bool IsBenignQtMessage(QtMsgType type, const QString& message);

// Installs a message handler that drops the benign messages and hands
// every other one to the handler that was installed before (Qt's own by
// default). Calling it again while it is installed changes nothing.
void FilterBenignQtMessages();

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_QT_MESSAGE_FILTER_H_
