#include "dialogs/window_classes.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "core/name_fold.h"
#include "norvik50/error.h"

namespace norvik50 {

bool WindowMatches(const TopLevelWindow& window, std::u16string_view class_name,
                   std::u16string_view title) {
  const bool class_matches = class_name.empty() ||
                             SameNameWithoutCase(window.class_name, class_name) ||
                             SameNameWithoutCase(window.instance, class_name);
  return class_matches && (title.empty() || SameNameWithoutCase(window.title, title));
}

const TopLevelWindow* FindMatchingWindow(const std::vector<TopLevelWindow>& windows,
                                         std::u16string_view class_name,
                                         std::u16string_view title) {
  const auto it = std::find_if(windows.begin(), windows.end(), [&](const TopLevelWindow& w) {
    return WindowMatches(w, class_name, title);
  });
  return it == windows.end() ? nullptr : &*it;
}

std::vector<TopLevelWindow> ListTopLevelWindows(UserInterface& ui) {
  std::optional<std::vector<TopLevelWindow>> windows = ui.TopLevelWindows();
  if (!windows) {
    throw Error(kErrNoSuchMember,
                u"not available on this platform: the windows of other programs can be seen "
                u"only on an X11 display (not on Wayland, not without a display)",
                std::u16string(kErrorSource));
  }
  return std::move(*windows);
}

bool WaitForClass(UserInterface& ui, std::u16string_view class_name, bool present,
                  int32_t limit_ms) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline =
      Clock::now() + std::chrono::milliseconds(std::clamp(limit_ms, 0, kMaxClassWaitMilliseconds));
  for (;;) {
    const bool found = FindMatchingWindow(ListTopLevelWindows(ui), class_name, u"") != nullptr;
    if (found == present) return true;
    const Clock::time_point now = Clock::now();
    if (now >= deadline) return false;
    ui.ProcessEvents();
    std::this_thread::sleep_for(std::min<Clock::duration>(
        std::chrono::milliseconds(kClassPollMilliseconds), deadline - now));
  }
}

}  // namespace norvik50
