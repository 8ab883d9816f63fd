// LIB: other programs' windows found by their class and waited for, and
// the pointer kept inside a rectangle.
#include <cstdint>
#include <limits>

#include "core/pointer_clip.h"
#include "dialogs/window_classes.h"
#include "norvik50/error.h"
#include "norvik50/host.h"
#include "norvik50/lib.h"

namespace norvik50 {
namespace {

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

void RequireWaitable(std::u16string_view class_name, int32_t limit_ms) {
  if (class_name.empty()) Refuse(u"Name the window class to wait for.");
  if (limit_ms > kMaxClassWaitMilliseconds) {
    Refuse(u"A wait for a window class lasts at most 3600000 milliseconds (an hour).");
  }
}

}  // namespace

int32_t LIB::tklFindWindow(std::u16string_view sClass, std::u16string_view sTitle) {
  // Both empty would pick any window at all: a slip, not a question.
  if (sClass.empty() && sTitle.empty()) Refuse(u"Name a window class, a title or both.");
  const std::vector<TopLevelWindow> windows = ListTopLevelWindows(CurrentUserInterface());
  const TopLevelWindow* found = FindMatchingWindow(windows, sClass, sTitle);
  if (found == nullptr) return 0;
  // X11 ids have 29 bits; a window system with wider ones cannot answer in a Long.
  if (found->id <= 0 || found->id > std::numeric_limits<int32_t>::max()) {
    throw Error(kErrOverflow, u"The window's id does not fit in a Long.",
                std::u16string(kErrorSource));
  }
  return static_cast<int32_t>(found->id);
}

bool LIB::tklWaitForClassStarted(std::u16string_view sClass, int32_t lMilliSeconds) {
  RequireWaitable(sClass, lMilliSeconds);
  return WaitForClass(CurrentUserInterface(), sClass, true, lMilliSeconds);
}

bool LIB::tklWaitForClassFinished(std::u16string_view sClass, int32_t lMilliSeconds) {
  RequireWaitable(sClass, lMilliSeconds);
  return WaitForClass(CurrentUserInterface(), sClass, false, lMilliSeconds);
}

bool LIB::tklClipCursor(int32_t lLeft, int32_t lTop, int32_t lWidth, int32_t lHeight) {
  if (lWidth < 0 || lHeight < 0) Refuse(u"The width and height of a rectangle are 0 or more.");
  if (lWidth == 0 || lHeight == 0) return ClipPointerFor(*this, std::nullopt);
  const int64_t right = int64_t{lLeft} + lWidth;
  const int64_t bottom = int64_t{lTop} + lHeight;
  if (right > std::numeric_limits<int32_t>::max() || bottom > std::numeric_limits<int32_t>::max()) {
    Refuse(u"The rectangle reaches past the largest screen coordinate.");
  }
  return ClipPointerFor(*this, TwipsRect{lLeft, lTop, lWidth, lHeight});
}

}  // namespace norvik50
