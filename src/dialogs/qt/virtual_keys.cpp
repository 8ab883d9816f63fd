#include "dialogs/qt/virtual_keys.h"

#include <array>
#include <utility>

namespace norvik50::qt {
namespace {

VirtualKey Key(int key, bool keypad = false) { return {Qt::NoButton, Qt::NoModifier, key, keypad}; }
VirtualKey Button(Qt::MouseButton button) { return {button, Qt::NoModifier, 0, false}; }
VirtualKey Modifier(Qt::KeyboardModifier modifier) { return {Qt::NoButton, modifier, 0, false}; }

// The codes that are neither letters, digits nor function keys, whose
// Qt counterparts follow no pattern.
const std::array<std::pair<int32_t, VirtualKey>, 48>& Singles() {
  static const std::array<std::pair<int32_t, VirtualKey>, 48> table = {{
      {0x01, Button(Qt::LeftButton)},
      {0x02, Button(Qt::RightButton)},
      {0x04, Button(Qt::MiddleButton)},
      {0x05, Button(Qt::BackButton)},
      {0x06, Button(Qt::ForwardButton)},
      {0x08, Key(Qt::Key_Backspace)},
      {0x09, Key(Qt::Key_Tab)},
      {0x0C, Key(Qt::Key_Clear)},
      {0x0D, Key(Qt::Key_Return)},
      {0x10, Modifier(Qt::ShiftModifier)},
      {0x11, Modifier(Qt::ControlModifier)},
      {0x12, Modifier(Qt::AltModifier)},
      {0x13, Key(Qt::Key_Pause)},
      {0x14, Key(Qt::Key_CapsLock)},
      {0x1B, Key(Qt::Key_Escape)},
      {0x20, Key(Qt::Key_Space)},
      {0x21, Key(Qt::Key_PageUp)},
      {0x22, Key(Qt::Key_PageDown)},
      {0x23, Key(Qt::Key_End)},
      {0x24, Key(Qt::Key_Home)},
      {0x25, Key(Qt::Key_Left)},
      {0x26, Key(Qt::Key_Up)},
      {0x27, Key(Qt::Key_Right)},
      {0x28, Key(Qt::Key_Down)},
      {0x2C, Key(Qt::Key_Print)},
      {0x2D, Key(Qt::Key_Insert)},
      {0x2E, Key(Qt::Key_Delete)},
      {0x2F, Key(Qt::Key_Help)},
      {0x5B, Key(Qt::Key_Super_L)},
      {0x5C, Key(Qt::Key_Super_R)},
      {0x5D, Key(Qt::Key_Menu)},
      {0x6A, Key(Qt::Key_Asterisk, true)},
      {0x6B, Key(Qt::Key_Plus, true)},
      {0x6D, Key(Qt::Key_Minus, true)},
      {0x6E, Key(Qt::Key_Period, true)},
      {0x6F, Key(Qt::Key_Slash, true)},
      {0x90, Key(Qt::Key_NumLock)},
      {0x91, Key(Qt::Key_ScrollLock)},
      // Left and right: Qt reports one modifier for both sides.
      {0xA0, Modifier(Qt::ShiftModifier)},
      {0xA1, Modifier(Qt::ShiftModifier)},
      {0xA2, Modifier(Qt::ControlModifier)},
      {0xA3, Modifier(Qt::ControlModifier)},
      {0xA4, Modifier(Qt::AltModifier)},
      {0xA5, Modifier(Qt::AltModifier)},
      // The OEM keys that mean the same on every layout.
      {0xBB, Key(Qt::Key_Plus)},
      {0xBC, Key(Qt::Key_Comma)},
      {0xBD, Key(Qt::Key_Minus)},
      {0xBE, Key(Qt::Key_Period)},
  }};
  return table;
}

}  // namespace

std::optional<VirtualKey> FromVirtualKeyCode(int32_t code) {
  if (code >= '0' && code <= '9') return Key(Qt::Key_0 + (code - '0'));
  if (code >= 'A' && code <= 'Z') return Key(Qt::Key_A + (code - 'A'));
  if (code >= 0x60 && code <= 0x69) return Key(Qt::Key_0 + (code - 0x60), true);
  if (code >= 0x70 && code <= 0x87) return Key(Qt::Key_F1 + (code - 0x70));
  for (const auto& [vk, key] : Singles()) {
    if (vk == code) return key;
  }
  return std::nullopt;
}

int32_t VirtualKeyCodeOf(int key, bool keypad) {
  switch (key) {
    case Qt::Key_Shift:
      return 0x10;
    case Qt::Key_Control:
      return 0x11;
    case Qt::Key_Alt:
      return 0x12;
    case Qt::Key_Enter:
      return 0x0D;
    case Qt::Key_Backtab:  // Shift+Tab
      return 0x09;
    default:
      break;
  }
  // The table read backwards: 254 look-ups, once per key press.
  for (int32_t code = 1; code <= 254; ++code) {
    const std::optional<VirtualKey> named = FromVirtualKeyCode(code);
    if (named && named->key == key && named->key != 0 && named->keypad == keypad) return code;
  }
  return 0;
}

}  // namespace norvik50::qt
