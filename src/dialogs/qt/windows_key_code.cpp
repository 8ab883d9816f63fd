// A Qt key press as the key code and shift state a ported host's KeyDown
// handler works with.
#include <QKeyEvent>

#include "dialogs/qt/virtual_keys.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {

int16_t WindowsKeyCode(const QKeyEvent& event, int16_t* shift) {
  if (shift != nullptr) {
    const Qt::KeyboardModifiers held = event.modifiers();
    *shift = static_cast<int16_t>((held & Qt::ShiftModifier ? 1 : 0) |
                                  (held & Qt::ControlModifier ? 2 : 0) |
                                  (held & Qt::AltModifier ? 4 : 0));
  }
  const bool keypad = (event.modifiers() & Qt::KeypadModifier) != 0;
  return static_cast<int16_t>(qt::VirtualKeyCodeOf(event.key(), keypad));
}

}  // namespace norvik50
