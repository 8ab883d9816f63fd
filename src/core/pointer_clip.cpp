#include "core/pointer_clip.h"

#include <mutex>

namespace norvik50 {
namespace {

// The pointer is one per desktop, so one holder per process.
struct Holder {
  std::mutex mutex;
  const LIB* lib = nullptr;
};

Holder& TheHolder() {
  static Holder holder;
  return holder;
}

}  // namespace

bool ClipPointerFor(const LIB& owner, const std::optional<TwipsRect>& area) {
  Holder& holder = TheHolder();
  const std::lock_guard lock(holder.mutex);
  const bool done = CurrentUserInterface().ConfinePointer(area);
  // A confinement that failed leaves none behind (the old one is gone too).
  holder.lib = (area.has_value() && done) ? &owner : nullptr;
  return done;
}

void ReleasePointerClipOf(const LIB& owner) noexcept {
  Holder& holder = TheHolder();
  const std::lock_guard lock(holder.mutex);
  if (holder.lib != &owner) return;
  holder.lib = nullptr;
  try {
    CurrentUserInterface().ConfinePointer(std::nullopt);
  } catch (...) {
    // A destructor must not throw; the window system drops the barriers
    // with the process's connection at the latest.
  }
}

}  // namespace norvik50
