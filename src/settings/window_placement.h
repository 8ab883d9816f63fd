// Where a window that was stored on another desktop may stand today.
#ifndef NORVIK50_SRC_SETTINGS_WINDOW_PLACEMENT_H_
#define NORVIK50_SRC_SETTINGS_WINDOW_PLACEMENT_H_

#include <vector>

#include "norvik50/host.h"

namespace norvik50::settings {

// How much of a window a screen must show for the window to count as on
// it: 40 pixels each way (all of it where it is smaller), so that there is
// something to see and to grab.
inline constexpr int32_t kMinVisibleTwips = 600;

// True when one of `screens` shows enough of `window` and its top edge,
// where the caption is, lies within that screen's height.
[[nodiscard]] bool IsOnAScreen(const TwipsRect& window, const std::vector<TwipsRect>& screens);

// `window` as it may stand on `screens`: unchanged when it is on a screen
// or no screen is known; otherwise moved onto the nearest screen (the
// first of equally near ones), and made no larger than that screen, so a
// window kept for a monitor that is gone comes back whole.
[[nodiscard]] TwipsRect KeepOnScreens(const TwipsRect& window,
                                      const std::vector<TwipsRect>& screens);

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_WINDOW_PLACEMENT_H_
