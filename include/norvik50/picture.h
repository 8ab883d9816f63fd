// Pictures as the library hands them to a host and takes them back: a
// block of pixels (width, height, 32-bit ARGB), and the things a picture
// can be drawn on (another picture, a host's picture box or a form's
// background). Picture itself knows no toolkit and no file format: a host
// with Qt turns a QImage into a Picture and back (norvik50/qt_dialogs.h:
// PictureFromQImage, ToQImage), and reads and writes image files there;
// a host without one fills the pixels itself.
//
// Pixels are 0xAARRGGBB, not premultiplied (a fully transparent pixel keeps
// its colour), row by row from the top left. Colours that members take as
// Long values are the host runtime's RGB values: 0x00BBGGRR, red in the
// low byte (RGB(255, 0, 0) is 255).
//
// Thread safety: none; a picture belongs to the thread that uses it.
#ifndef NORVIK50_PICTURE_H_
#define NORVIK50_PICTURE_H_

#include <cstdint>
#include <optional>
#include <vector>

#include "norvik50/export.h"
#include "norvik50/variant.h"

namespace norvik50 {

// The largest side and the most pixels a picture may have: a picture of
// 16384 x 16384 already takes a gigabyte, and a size read from a batch
// line must never exhaust the memory.
inline constexpr int32_t kMaxPictureSide = 32767;
inline constexpr int64_t kMaxPicturePixels = int64_t{1} << 26;

// A rectangle of a canvas in pixels.
struct PixelRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const PixelRect&) const = default;
};

class Picture;

// Something a picture can be drawn on and read back from.
class NORVIK50_EXPORT PictureCanvas : public HostObject {
 public:
  ~PictureCanvas() override;
  // A copy of what the canvas shows now; an empty picture when it shows
  // nothing (a picture box without a picture, a control that is gone).
  virtual Picture Snapshot() const = 0;
  // Draws `picture` scaled to `target` (in this canvas's pixels; parts
  // outside the canvas are cut off) over what the canvas shows, with
  // `opacity_percent` (0 leaves the canvas as it was, 100 draws the
  // picture as it is). False when the canvas can no longer be drawn on.
  virtual bool DrawPicture(const Picture& picture, const PixelRect& target,
                           int32_t opacity_percent) = 0;
};

// A picture held in memory. Drawing on it is exact: each pixel is the
// source-over mix of the two pixels, rounded once, half up; scaling takes
// the nearest source pixel.
class NORVIK50_EXPORT Picture final : public PictureCanvas {
 public:
  // The empty picture (0 x 0).
  Picture() = default;
  // A picture of `width` x `height` pixels, each `argb`. Raises invalid
  // call (5) for a negative size or one past kMaxPictureSide and
  // kMaxPicturePixels.
  Picture(int32_t width, int32_t height, uint32_t argb = 0);
  // A picture with the given pixels, row by row. Raises 5 as above and
  // when `pixels` does not hold width x height of them.
  Picture(int32_t width, int32_t height, std::vector<uint32_t> pixels);

  int32_t Width() const noexcept { return width_; }
  int32_t Height() const noexcept { return height_; }
  bool Empty() const noexcept { return pixels_.empty(); }
  // The pixel at column `x`, row `y`; subscript out of range (9) outside.
  uint32_t Pixel(int32_t x, int32_t y) const;
  void SetPixel(int32_t x, int32_t y, uint32_t argb);
  // Every pixel, row by row.
  const std::vector<uint32_t>& Pixels() const noexcept { return pixels_; }

  Picture Snapshot() const override { return *this; }
  // Always true: a picture in memory can always be drawn on. Drawing a
  // picture onto itself reads it as it was before.
  bool DrawPicture(const Picture& picture, const PixelRect& target,
                   int32_t opacity_percent) override;

  bool operator==(const Picture& other) const {
    return width_ == other.width_ && height_ == other.height_ && pixels_ == other.pixels_;
  }

 private:
  int32_t width_ = 0;
  int32_t height_ = 0;
  std::vector<uint32_t> pixels_;
};

// How a semi-transparent copy is made (tklGetSemiTransparentPicture).
struct Translucency {
  // 0 (invisible) ... 100 (as it is): each pixel's alpha is scaled by it.
  int32_t opacity_percent = 50;
  // Pixels of this colour (0xRRGGBB, any alpha) become fully transparent.
  std::optional<uint32_t> key_rgb;
  // The copy is the picture drawn over this colour (0xRRGGBB): every
  // pixel comes out opaque.
  std::optional<uint32_t> back_rgb;
};

// A copy of `source` made semi-transparent as `how` says. Without a
// background only the alpha changes: round(alpha x opacity / 100), half
// up; with one, each channel is the exact mix of the pixel and the
// background, rounded once. Raises 5 for an opacity outside 0 ... 100.
NORVIK50_EXPORT Picture SemiTransparentCopy(const Picture& source, const Translucency& how);

// One pixel `src` drawn over `dst` with `opacity_percent` (0 ... 100):
// source-over in non-premultiplied ARGB, each channel rounded once.
NORVIK50_EXPORT uint32_t BlendPixel(uint32_t dst, uint32_t src, int32_t opacity_percent);

// The 0xRRGGBB colour of a runtime RGB Long (0x00BBGGRR). Raises 5 for a
// value outside 0 ... 0xFFFFFF (the system colours, 0x80000000 and up,
// name no fixed colour).
NORVIK50_EXPORT uint32_t RgbFromColorLong(int64_t color);

}  // namespace norvik50

#endif  // NORVIK50_PICTURE_H_
