#include "dialogs/qt/stays_on_top.h"

#include <QWidget>

namespace norvik50::qt {

void SetStaysOnTop(QWidget& window, bool on) {
  // Unchanged flags would still hide and map the window again: a flicker
  // for nothing.
  if (window.windowFlags().testFlag(Qt::WindowStaysOnTopHint) == on) return;
  const bool shown = window.isVisible();
  window.setWindowFlag(Qt::WindowStaysOnTopHint, on);
  if (shown) window.show();
}

}  // namespace norvik50::qt
