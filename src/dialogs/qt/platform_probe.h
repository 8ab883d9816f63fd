// Whether Qt can start a window-system platform in this process, asked
// before the application object exists. Qt ends the whole process when its
// platform fails to start (a DISPLAY naming no X server, as a stale remote
// session leaves it; a Wayland socket that is gone; an unknown
// QT_QPA_PLATFORM), so the library asks first and answers headless instead.
#ifndef NORVIK50_SRC_DIALOGS_QT_PLATFORM_PROBE_H_
#define NORVIK50_SRC_DIALOGS_QT_PLATFORM_PROBE_H_

#include <string>

namespace norvik50::qt {

// "" when an application object exists already or one of the platforms Qt
// would try can start; otherwise why none can, for a person to read.
std::string PlatformProblem();

// PlatformProblem(), asked once per process; the first non-empty answer
// goes to stderr once, as the reason every dialog answers as failed.
const std::string& PlatformProblemOnce();

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_PLATFORM_PROBE_H_
