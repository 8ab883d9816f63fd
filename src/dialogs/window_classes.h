// Top-level windows of any program found by their class and title, and
// waiting for a window of a class to come or to go, over what the user
// interface lists (UserInterface::TopLevelWindows).
#ifndef NORVIK50_SRC_DIALOGS_WINDOW_CLASSES_H_
#define NORVIK50_SRC_DIALOGS_WINDOW_CLASSES_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "norvik50/host.h"

namespace norvik50 {

// The longest wait for a class: an hour. A longer limit is refused, so a
// typing slip never leaves a host waiting for days.
inline constexpr int32_t kMaxClassWaitMilliseconds = 3'600'000;
// How long a wait sleeps between two looks at the desktop; the events of
// the host's windows are processed before each sleep.
inline constexpr int32_t kClassPollMilliseconds = 20;

// Whether `window` is of `class_name` and carries `title`, both compared
// without regard to case. The class matches either part of the window's
// class (the instance "xterm" or the class "XTerm"); an empty class or
// title matches every window.
bool WindowMatches(const TopLevelWindow& window, std::u16string_view class_name,
                   std::u16string_view title);

// The first of `windows` (the top-most, as the user interface lists them)
// that matches; nullptr when none does.
const TopLevelWindow* FindMatchingWindow(const std::vector<TopLevelWindow>& windows,
                                         std::u16string_view class_name, std::u16string_view title);

// The top-level windows `ui` lists; raises 438 ("not available on this
// platform") when it cannot see other programs' windows.
std::vector<TopLevelWindow> ListTopLevelWindows(UserInterface& ui);

// Looks at the desktop until a window of `class_name` is there (`present`)
// or none is (!`present`), for at most `limit_ms` milliseconds; true when
// that came about. The user interface's events are processed between the
// looks, so the host's windows stay responsive. A limit of 0 or less looks
// once. Raises as ListTopLevelWindows.
bool WaitForClass(UserInterface& ui, std::u16string_view class_name, bool present,
                  int32_t limit_ms);

}  // namespace norvik50

#endif  // NORVIK50_SRC_DIALOGS_WINDOW_CLASSES_H_
