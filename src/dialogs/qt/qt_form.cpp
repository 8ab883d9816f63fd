// A host's Qt window behind the library's Form: its name, where it stands
// (in twips) and the texts that name their resources.
#include <QMainWindow>
#include <QMargins>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <algorithm>

#include "dialogs/qt/control_name.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_containers.h"
#include "dialogs/qt/qt_form_captions.h"
#include "dialogs/qt/stays_on_top.h"
#include "dialogs/qt/window_shape.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

// Sizes are the outer size with the classic frame (caption 18, border 4
// pixels), as the library's own forms count them, whatever frame the
// window system draws: the frame is not known before a window is shown,
// and a size read with one frame and set with another would grow or
// shrink the window at every save and load.
QSize OuterOf(QSize client) {
  return client.grownBy({qt::kSizingFrame, qt::kCaptionHeight + qt::kSizingFrame, qt::kSizingFrame,
                         qt::kSizingFrame});
}
QSize ClientOf(QSize outer) {
  return outer
      .shrunkBy({qt::kSizingFrame, qt::kCaptionHeight + qt::kSizingFrame, qt::kSizingFrame,
                 qt::kSizingFrame})
      .expandedTo(QSize(1, 1));
}

constexpr Qt::WindowStates kSizeStates =
    Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen;

class QtFormControl final : public Form {
 public:
  explicit QtFormControl(QWidget* window) : window_(window) {}

  std::u16string Name() const override { return qt::ControlName(window_.data()); }

  WindowPlacement Placement() const override {
    if (!window_) return {};
    WindowPlacement placement;
    const Qt::WindowStates states = window_->windowState();
    if (states & Qt::WindowMaximized) placement.state = WindowState::kMaximized;
    if (states & Qt::WindowMinimized) placement.state = WindowState::kMinimized;
    // The normal geometry is the one the window returns to when restored.
    QRect client = window_->geometry();
    if ((states & kSizeStates) && window_->normalGeometry().isValid()) {
      client = window_->normalGeometry();
    }
    // The position is the frame's, as move() takes it: where the window
    // system reports a frame, its offset from the client area.
    const QPoint offset = window_->isVisible()
                              ? window_->geometry().topLeft() - window_->frameGeometry().topLeft()
                              : QPoint();
    const QPoint frame = client.topLeft() - offset;
    const QSize outer = OuterOf(client.size());
    placement.bounds = {frame.x() * qt::kTwipsPerPixel, frame.y() * qt::kTwipsPerPixel,
                        outer.width() * qt::kTwipsPerPixel, outer.height() * qt::kTwipsPerPixel};
    return placement;
  }

  void SetPlacement(const WindowPlacement& placement) override {
    if (!window_) return;
    const TwipsRect& b = placement.bounds;
    // Restored first, so that the geometry set is the normal one and a
    // maximised window keeps it for when the user restores it.
    const Qt::WindowStates others = window_->windowState() & ~kSizeStates;
    window_->setWindowState(others);
    // Whole pixels, never larger than asked.
    window_->move(b.left / qt::kTwipsPerPixel, b.top / qt::kTwipsPerPixel);
    window_->resize(ClientOf({b.width / qt::kTwipsPerPixel, b.height / qt::kTwipsPerPixel}));
    if (placement.state == WindowState::kMaximized) {
      window_->setWindowState(others | Qt::WindowMaximized);
    } else if (placement.state == WindowState::kMinimized) {
      window_->setWindowState(others | Qt::WindowMinimized);
    }
  }

  int32_t FillCaptions(const CaptionLookup& lookup) override {
    return window_ ? qt::FillCaptions(*window_, lookup) : 0;
  }

  bool SetTopMost(bool top_most) override {
    if (!window_) return false;
    qt::SetStaysOnTop(*window_, top_most);
    return true;
  }

  bool Show() override {
    if (!window_) return false;
    window_->show();
    window_->raise();
    window_->activateWindow();
    return true;
  }

  bool SetCornerRadius(int32_t radius_twips) override {
    if (!window_) return false;
    qt::SetRoundCorners(*window_, radius_twips / qt::kTwipsPerPixel);
    return true;
  }

  bool SetShadow(bool shadow) override {
    if (!window_) return false;
    qt::SetDropShadow(*window_, shadow);
    return true;
  }

  bool IsOpen() const override { return window_ && qt::IsOpenForm(*window_); }

  TwipsSize InnerSize() const override {
    if (!window_) return {};
    QSize inner = window_->size();
    // A main window's menu bar lies inside its client area.
    if (const auto* main = qobject_cast<const QMainWindow*>(window_.data())) {
      const QWidget* menu = main->menuWidget();
      if (menu != nullptr && menu->isVisibleTo(main)) {
        inner.rheight() -= menu->sizeHint().height();
      }
    }
    return {std::max(inner.width(), 0) * qt::kTwipsPerPixel,
            std::max(inner.height(), 0) * qt::kTwipsPerPixel};
  }

 private:
  QPointer<QWidget> window_;
};

}  // namespace

std::shared_ptr<Form> QtForm(QWidget* window) { return std::make_shared<QtFormControl>(window); }

}  // namespace norvik50
