// Pictures on Qt: a Picture and a QImage turned into each other, and the
// canvases a host hands in: a QLabel's pixmap (a picture box) and a
// window's background. Both draw with QPainter, so what a host sees is
// what Qt's own compositing makes of the picture.
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <cstring>

#include "norvik50/error.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

// `image` with `picture` drawn on it as the library draws: scaled to
// `target`, over what is there, with the opacity.
void PaintOnto(QImage& image, const Picture& picture, const PixelRect& target,
               int32_t opacity_percent) {
  if (opacity_percent < 0 || opacity_percent > 100) {
    throw Error(kErrInvalidCall, u"The opacity is a percentage from 0 to 100.",
                std::u16string(kErrorSource));
  }
  if (picture.Empty() || target.width <= 0 || target.height <= 0) return;
  QPainter painter(&image);
  painter.setOpacity(opacity_percent / 100.0);
  painter.drawImage(QRect(target.left, target.top, target.width, target.height), ToQImage(picture));
}

class LabelCanvas final : public PictureCanvas {
 public:
  explicit LabelCanvas(QLabel* label) : label_(label) {}

  Picture Snapshot() const override {
    if (!label_) return {};
    const QPixmap pixmap = label_->pixmap();
    return pixmap.isNull() ? Picture() : PictureFromQImage(pixmap.toImage());
  }
  // A label without a picture gets a transparent one of its own size
  // first, so that what is drawn shows where it was put.
  bool DrawPicture(const Picture& picture, const PixelRect& target,
                   int32_t opacity_percent) override {
    if (!label_) return false;
    const QPixmap pixmap = label_->pixmap();
    QImage image;
    if (pixmap.isNull()) {
      image = QImage(label_->size(), QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::transparent);
    } else {
      image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    PaintOnto(image, picture, target, opacity_percent);
    label_->setPixmap(QPixmap::fromImage(image));
    return true;
  }

 private:
  QPointer<QLabel> label_;
};

class BackgroundCanvas final : public PictureCanvas {
 public:
  explicit BackgroundCanvas(QWidget* window) : window_(window) {}

  Picture Snapshot() const override {
    return window_ ? PictureFromQImage(Background()) : Picture();
  }
  bool DrawPicture(const Picture& picture, const PixelRect& target,
                   int32_t opacity_percent) override {
    if (!window_) return false;
    QImage image = Background();
    PaintOnto(image, picture, target, opacity_percent);
    QPalette palette = window_->palette();
    // The brush keeps the window's colour too, for the next background.
    const QColor colour = palette.brush(window_->backgroundRole()).color();
    palette.setBrush(window_->backgroundRole(), QBrush(colour, QPixmap::fromImage(image)));
    window_->setPalette(palette);
    window_->setAutoFillBackground(true);
    return true;
  }

 private:
  // The window's background at its size now: its colour, with the picture
  // drawn on it before (when the window has one) at the top left.
  QImage Background() const {
    QImage image(window_->size(), QImage::Format_ARGB32_Premultiplied);
    const QBrush brush = window_->palette().brush(window_->backgroundRole());
    image.fill(brush.color());
    const QPixmap earlier = brush.texture();
    if (!earlier.isNull()) {
      QPainter painter(&image);
      painter.setCompositionMode(QPainter::CompositionMode_Source);
      painter.drawPixmap(0, 0, earlier);
    }
    return image;
  }

  QPointer<QWidget> window_;
};

}  // namespace

QImage ToQImage(const Picture& picture) {
  QImage image(picture.Width(), picture.Height(), QImage::Format_ARGB32);
  // Format_ARGB32 keeps each pixel as the number 0xAARRGGBB, as Picture
  // does, so rows are copied as they are.
  const std::size_t row_bytes = static_cast<std::size_t>(picture.Width()) * sizeof(uint32_t);
  for (int32_t y = 0; y < picture.Height(); ++y) {
    std::memcpy(image.scanLine(y),
                picture.Pixels().data() + static_cast<std::size_t>(y) * picture.Width(), row_bytes);
  }
  return image;
}

Picture PictureFromQImage(const QImage& image) {
  if (image.isNull()) return {};
  const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
  std::vector<uint32_t> pixels(static_cast<std::size_t>(argb.width()) *
                               static_cast<std::size_t>(argb.height()));
  const std::size_t row_bytes = static_cast<std::size_t>(argb.width()) * sizeof(uint32_t);
  for (int y = 0; y < argb.height(); ++y) {
    std::memcpy(pixels.data() + static_cast<std::size_t>(y) * argb.width(), argb.constScanLine(y),
                row_bytes);
  }
  return Picture(argb.width(), argb.height(), std::move(pixels));
}

std::shared_ptr<PictureCanvas> QtPictureBox(QLabel* label) {
  return std::make_shared<LabelCanvas>(label);
}

std::shared_ptr<PictureCanvas> QtFormBackground(QWidget* window) {
  return std::make_shared<BackgroundCanvas>(window);
}

}  // namespace norvik50
