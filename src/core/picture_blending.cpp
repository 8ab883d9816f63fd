// The pixel arithmetic of semi-transparent pictures. Alphas and opacities
// are kept as exact integers (alpha x percent, out of 25500) until the one
// rounding at the end, so that 50 % of an opaque white over black is 128
// everywhere and never 127 on one path and 128 on another.
#include <array>
#include <string>

#include "norvik50/error.h"
#include "norvik50/picture.h"

namespace norvik50 {
namespace {

constexpr int64_t kFull = 255 * 100;  // alpha 255 at 100 %

uint32_t Alpha(uint32_t argb) { return argb >> 24; }
uint32_t Channel(uint32_t argb, int shift) { return (argb >> shift) & 0xFFu; }

// n / d rounded half up, for n >= 0 and d > 0.
uint32_t RoundedQuotient(int64_t n, int64_t d) {
  return static_cast<uint32_t>((2 * n + d) / (2 * d));
}

void CheckOpacity(int32_t opacity_percent) {
  if (opacity_percent < 0 || opacity_percent > 100) {
    throw Error(kErrInvalidCall, u"The opacity is a percentage from 0 to 100.",
                std::u16string(kErrorSource));
  }
}

}  // namespace

uint32_t BlendPixel(uint32_t dst, uint32_t src, int32_t opacity_percent) {
  CheckOpacity(opacity_percent);
  const int64_t s = int64_t{Alpha(src)} * opacity_percent;  // out of kFull
  // Nothing is drawn: the destination stays exactly as it was, colour of
  // a transparent pixel included.
  if (s == 0) return dst;
  const int64_t d = Alpha(dst);  // out of 255
  // Source over: a = s + d (1 - s), here scaled by kFull x 255.
  const int64_t weight_src = s * 255;
  const int64_t weight_dst = d * (kFull - s);
  const int64_t total = weight_src + weight_dst;
  uint32_t out = RoundedQuotient(total, kFull) << 24;
  for (int shift : {16, 8, 0}) {
    const int64_t mixed =
        int64_t{Channel(src, shift)} * weight_src + int64_t{Channel(dst, shift)} * weight_dst;
    out |= RoundedQuotient(mixed, total) << shift;
  }
  return out;
}

// The pixels of a semi-transparent copy depend on a pixel's alpha and
// colour only, so whatever can be is worked out once per alpha value: a
// full-size picture then costs a table look-up and, over a background, a
// multiply and a division by a constant per channel.
Picture SemiTransparentCopy(const Picture& source, const Translucency& how) {
  CheckOpacity(how.opacity_percent);
  // 0xFFFFFFFF matches no 24-bit colour: no pixel is keyed out.
  const uint32_t key = how.key_rgb ? (*how.key_rgb & 0xFFFFFFu) : 0xFFFFFFFFu;
  std::vector<uint32_t> pixels = source.Pixels();
  if (!how.back_rgb) {
    // Only the alpha changes: the colour stays, so that a later draw
    // mixes the picture's own colour.
    std::array<uint32_t, 256> alpha{};
    for (uint32_t a = 0; a < 256; ++a) {
      alpha[a] = RoundedQuotient(int64_t{a} * how.opacity_percent, 100) << 24;
    }
    for (uint32_t& pixel : pixels) {
      const uint32_t rgb = pixel & 0xFFFFFFu;
      pixel = rgb | (rgb == key ? 0u : alpha[Alpha(pixel)]);
    }
  } else {
    // Each channel is (c x w + back x (kFull - w)) / kFull, rounded half
    // up, with the weight w = alpha x opacity; a keyed pixel weighs 0,
    // which is the row of alpha 0. Sums stay below 2^23.
    constexpr auto kDivisor = static_cast<uint32_t>(kFull);
    std::array<uint32_t, 256> weight{};
    std::array<std::array<uint32_t, 256>, 3> back{};
    const int shifts[3] = {16, 8, 0};
    for (uint32_t a = 0; a < 256; ++a) {
      weight[a] = a * static_cast<uint32_t>(how.opacity_percent);
      for (int ch = 0; ch < 3; ++ch) {
        back[ch][a] = Channel(*how.back_rgb, shifts[ch]) * (kDivisor - weight[a]) + kDivisor / 2;
      }
    }
    for (uint32_t& pixel : pixels) {
      const uint32_t a = (pixel & 0xFFFFFFu) == key ? 0u : Alpha(pixel);
      const uint32_t w = weight[a];
      pixel = 0xFF000000u | ((Channel(pixel, 16) * w + back[0][a]) / kDivisor) << 16 |
              ((Channel(pixel, 8) * w + back[1][a]) / kDivisor) << 8 |
              (Channel(pixel, 0) * w + back[2][a]) / kDivisor;
    }
  }
  return Picture(source.Width(), source.Height(), std::move(pixels));
}

uint32_t RgbFromColorLong(int64_t color) {
  if (color < 0 || color > 0xFFFFFF) {
    throw Error(kErrInvalidCall,
                u"A colour is an RGB value from 0 to 16777215 (&HFFFFFF); system colours are "
                u"not taken.",
                std::u16string(kErrorSource));
  }
  const auto c = static_cast<uint32_t>(color);
  // 0x00BBGGRR -> 0xRRGGBB
  return ((c & 0xFFu) << 16) | (c & 0xFF00u) | ((c >> 16) & 0xFFu);
}

}  // namespace norvik50
