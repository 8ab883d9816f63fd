#include "settings/window_placement.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace norvik50::settings {
namespace {

// Rectangles in 64 bits: a stored left near the Long's limit plus a width
// must not wrap.
struct Span {
  int64_t from;
  int64_t to;  // one past the end
};

Span Horizontal(const TwipsRect& r) { return {r.left, int64_t{r.left} + r.width}; }
Span Vertical(const TwipsRect& r) { return {r.top, int64_t{r.top} + r.height}; }

int64_t Overlap(Span a, Span b) { return std::min(a.to, b.to) - std::max(a.from, b.from); }

// How far apart two spans are; 0 when they touch or overlap.
int64_t Gap(Span a, Span b) { return std::max<int64_t>({0, a.from - b.to, b.from - a.to}); }

bool Shows(const TwipsRect& screen, const TwipsRect& window) {
  if (screen.width <= 0 || screen.height <= 0) return false;
  const Span sv = Vertical(screen);
  if (window.top < sv.from || window.top >= sv.to) return false;
  return Overlap(Horizontal(window), Horizontal(screen)) >=
             std::min<int64_t>(window.width, kMinVisibleTwips) &&
         Overlap(Vertical(window), sv) >= std::min<int64_t>(window.height, kMinVisibleTwips);
}

int32_t Clamp(int64_t value, int64_t low, int64_t high) {
  return static_cast<int32_t>(std::clamp(value, low, std::max(low, high)));
}

}  // namespace

bool IsOnAScreen(const TwipsRect& window, const std::vector<TwipsRect>& screens) {
  return std::any_of(screens.begin(), screens.end(),
                     [&](const TwipsRect& screen) { return Shows(screen, window); });
}

TwipsRect KeepOnScreens(const TwipsRect& window, const std::vector<TwipsRect>& screens) {
  if (screens.empty() || IsOnAScreen(window, screens)) return window;
  const TwipsRect* nearest = nullptr;
  // In double: gaps of up to 2^33 twips would overflow squared in 64 bits.
  double best = std::numeric_limits<double>::infinity();
  for (const TwipsRect& screen : screens) {
    if (screen.width <= 0 || screen.height <= 0) continue;  // no room on it
    const auto dx = static_cast<double>(Gap(Horizontal(window), Horizontal(screen)));
    const auto dy = static_cast<double>(Gap(Vertical(window), Vertical(screen)));
    const double distance = dx * dx + dy * dy;
    if (distance < best) {
      best = distance;
      nearest = &screen;
    }
  }
  if (nearest == nullptr) return window;
  const TwipsRect& screen = *nearest;
  TwipsRect moved;
  moved.width = std::min(window.width, screen.width);
  moved.height = std::min(window.height, screen.height);
  moved.left = Clamp(window.left, screen.left, int64_t{screen.left} + screen.width - moved.width);
  moved.top = Clamp(window.top, screen.top, int64_t{screen.top} + screen.height - moved.height);
  return moved;
}

}  // namespace norvik50::settings
