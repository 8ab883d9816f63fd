// Which keys and mouse buttons are held down, as the application's
// windows saw them.
#ifndef NORVIK50_SRC_DIALOGS_QT_KEY_STATE_H_
#define NORVIK50_SRC_DIALOGS_QT_KEY_STATE_H_

#include <cstdint>

namespace norvik50::qt {

// Starts following the application's key events (once; nothing without
// an application). Keys pressed before are not known.
void FollowKeys();

// Whether the key or button of the Windows virtual-key code is down now:
// modifiers and mouse buttons as Qt knows them (on X11 the modifiers are
// asked of the server), other keys from the key events the application's
// windows received since FollowKeys. Keys held while the application is
// not active are not seen, and every key counts as released when it
// stops being active. False for a code with no key here.
bool IsVirtualKeyDown(int32_t code);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_KEY_STATE_H_
