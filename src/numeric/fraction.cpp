#include "numeric/fraction.h"

#include <cmath>
#include <optional>

namespace norvik50 {
namespace {

// A Double rounded half to even to a Long; nullopt where the runtime
// would fault.
std::optional<int32_t> ToLong(double value) {
  const double r = std::nearbyint(value);
  if (!(r >= -2147483648.0 && r <= 2147483647.0)) return std::nullopt;
  return static_cast<int32_t>(r);
}

}  // namespace

void ApproximateFraction(float value, int32_t& numerator, int32_t& denominator) {
  numerator = 0;
  denominator = 0;
  if (value == 1.0f) return;
  float best = 100.0f;
  int32_t best_denominator = 0;
  for (int32_t i = 2; i <= 64; ++i) {
    // A Single times a small integer is exact in a Double.
    const double product = static_cast<double>(value) * i;
    const float product_single = static_cast<float>(product);  // ties to even
    const float floor_single = static_cast<float>(std::floor(product));
    // Compared as written, not with a tolerance: the Single-rounded product
    // against the floor of the exact one. Some negative values therefore
    // miss their exact fraction (the Single nearest -0.3 gives -19/63).
    if (product_single == floor_single) {
      const std::optional<int32_t> n = ToLong(product);
      if (!n) return;
      numerator = *n;
      denominator = i;
      return;
    }
    const float frac =
        static_cast<float>(static_cast<double>(product_single) - std::floor(product));
    if (frac < best) {
      best = frac;
      best_denominator = i;
    }
  }
  // The fallback picks the multiple lying closest above an integer, not the
  // nearest fraction, and rounds the numerator down; callers rely on it.
  const std::optional<int32_t> n =
      ToLong(std::floor(static_cast<double>(value) * best_denominator));
  if (!n) return;
  numerator = *n;
  denominator = best_denominator;
}

}  // namespace norvik50
