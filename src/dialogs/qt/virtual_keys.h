// Windows virtual-key codes, which ported hosts ask key states with, as
// the Qt keys and mouse buttons they name.
#ifndef NORVIK50_SRC_DIALOGS_QT_VIRTUAL_KEYS_H_
#define NORVIK50_SRC_DIALOGS_QT_VIRTUAL_KEYS_H_

#include <Qt>
#include <cstdint>
#include <optional>

namespace norvik50::qt {

// What a virtual-key code names: a mouse button, a modifier (Shift,
// Control, Alt: either side, since Qt does not tell them apart), or a key,
// on the keypad or not.
struct VirtualKey {
  Qt::MouseButton button = Qt::NoButton;
  Qt::KeyboardModifier modifier = Qt::NoModifier;
  int key = 0;  // a Qt::Key; 0 for a button or a modifier
  bool keypad = false;
};

// The key or button of `code`; nullopt for a code with no fixed key on
// Linux (the OEM punctuation keys other than + , - ., IME and media keys).
std::optional<VirtualKey> FromVirtualKeyCode(int32_t code);

// The virtual-key code of the Qt key `key` (on the keypad or not): the
// first code that names it (Shift is 0x10, not 0xA0); Enter on the keypad
// is Return (0x0D). 0 for a key without a code.
int32_t VirtualKeyCodeOf(int key, bool keypad);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_VIRTUAL_KEYS_H_
