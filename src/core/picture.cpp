// The picture held in memory: its size checks, its pixels and drawing on
// it.
#include <algorithm>
#include <string>
#include <utility>

#include "norvik50/error.h"
#include "norvik50/picture.h"

namespace norvik50 {
namespace {

[[noreturn]] void Refuse(std::u16string description) {
  throw Error(kErrInvalidCall, std::move(description), std::u16string(kErrorSource));
}

void CheckSize(int32_t width, int32_t height) {
  if (width < 0 || height < 0) Refuse(u"A picture's width and height are 0 or more pixels.");
  if (width > kMaxPictureSide || height > kMaxPictureSide ||
      int64_t{width} * height > kMaxPicturePixels) {
    Refuse(u"The picture is larger than the library takes.");
  }
}

// The source pixel that dest pixel `offset` of `target_size` shows when
// `source_size` pixels are stretched over it: the one under its centre.
int32_t NearestSource(int32_t offset, int32_t target_size, int32_t source_size) {
  return static_cast<int32_t>((2 * int64_t{offset} + 1) * source_size / (2 * int64_t{target_size}));
}

}  // namespace

PictureCanvas::~PictureCanvas() = default;

Picture::Picture(int32_t width, int32_t height, uint32_t argb) {
  CheckSize(width, height);
  width_ = width;
  height_ = height;
  pixels_.assign(static_cast<std::size_t>(int64_t{width} * height), argb);
}

Picture::Picture(int32_t width, int32_t height, std::vector<uint32_t> pixels) {
  CheckSize(width, height);
  if (static_cast<int64_t>(pixels.size()) != int64_t{width} * height) {
    Refuse(u"A picture needs exactly width x height pixel values.");
  }
  width_ = width;
  height_ = height;
  pixels_ = std::move(pixels);
}

uint32_t Picture::Pixel(int32_t x, int32_t y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) Raise(kErrSubscript);
  return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                 static_cast<std::size_t>(x)];
}

void Picture::SetPixel(int32_t x, int32_t y, uint32_t argb) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) Raise(kErrSubscript);
  pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
          static_cast<std::size_t>(x)] = argb;
}

bool Picture::DrawPicture(const Picture& picture, const PixelRect& target,
                          int32_t opacity_percent) {
  if (opacity_percent < 0 || opacity_percent > 100) {
    Refuse(u"The opacity is a percentage from 0 to 100.");
  }
  if (&picture == this) {
    const Picture before = picture;
    return DrawPicture(before, target, opacity_percent);
  }
  if (picture.Empty() || target.width <= 0 || target.height <= 0) return true;
  // Only the part of the target inside this picture is touched.
  const int64_t x0 = std::max<int64_t>(target.left, 0);
  const int64_t y0 = std::max<int64_t>(target.top, 0);
  const int64_t x1 = std::min<int64_t>(int64_t{target.left} + target.width, width_);
  const int64_t y1 = std::min<int64_t>(int64_t{target.top} + target.height, height_);
  for (int64_t y = y0; y < y1; ++y) {
    const int32_t sy =
        NearestSource(static_cast<int32_t>(y - target.top), target.height, picture.height_);
    const uint32_t* source_row =
        picture.pixels_.data() +
        static_cast<std::size_t>(sy) * static_cast<std::size_t>(picture.width_);
    uint32_t* row = pixels_.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    for (int64_t x = x0; x < x1; ++x) {
      const int32_t sx =
          NearestSource(static_cast<int32_t>(x - target.left), target.width, picture.width_);
      row[x] = BlendPixel(row[x], source_row[sx], opacity_percent);
    }
  }
  return true;
}

}  // namespace norvik50
