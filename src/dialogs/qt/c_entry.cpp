// The entry the C interface looks up after loading libnorvik50_qt at run
// time: a plain C name, because the caller finds it with dlsym.
#include "norvik50/qt_dialogs.h"

extern "C" NORVIK50_EXPORT int norvik50_qt_install_dialogs() noexcept {
  try {
    norvik50::InstallQtDialogs();
    return 0;
  } catch (...) {
    return 1;
  }
}
