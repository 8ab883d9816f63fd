// A host's Qt widget behind the library's MousePointerControl and
// MouseHolder, placed in its container.
#include <QPointer>
#include <QWidget>
#include <array>
#include <optional>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_containers.h"
#include "norvik50/container.h"
#include "norvik50/error.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

// The standard pointers by number and the Qt shapes that look like them;
// 0 is "the widget has no cursor of its own".
constexpr std::array<Qt::CursorShape, 16> kShapes = {
    Qt::ArrowCursor,       // 0  default (not set)
    Qt::ArrowCursor,       // 1  arrow
    Qt::CrossCursor,       // 2  cross
    Qt::IBeamCursor,       // 3  I-beam
    Qt::ArrowCursor,       // 4  icon (an arrow where no icon pointer exists)
    Qt::SizeAllCursor,     // 5  size
    Qt::SizeBDiagCursor,   // 6  size NE-SW
    Qt::SizeVerCursor,     // 7  size N-S
    Qt::SizeFDiagCursor,   // 8  size NW-SE
    Qt::SizeHorCursor,     // 9  size W-E
    Qt::UpArrowCursor,     // 10 up arrow
    Qt::WaitCursor,        // 11 hourglass
    Qt::ForbiddenCursor,   // 12 no drop
    Qt::BusyCursor,        // 13 arrow and hourglass
    Qt::WhatsThisCursor,   // 14 arrow and question mark
    Qt::SizeAllCursor,     // 15 size all
};

class WidgetPointer final : public MousePointerControl, public MouseHolder, public Contained {
 public:
  explicit WidgetPointer(QWidget* widget) : widget_(widget) {}
  std::shared_ptr<HostObject> Parent() const override { return qt::ContainerOf(widget_.data()); }

  int32_t WidthTwips() const override {
    return widget_ ? widget_->width() * qt::kTwipsPerPixel : 0;
  }
  int32_t HeightTwips() const override {
    return widget_ ? widget_->height() * qt::kTwipsPerPixel : 0;
  }
  bool HoldsMouse() const override { return widget_ && QWidget::mouseGrabber() == widget_; }
  void HoldMouse(bool hold) override {
    if (!widget_ || hold == HoldsMouse()) return;
    if (hold) {
      widget_->grabMouse();
    } else {
      widget_->releaseMouse();
    }
  }

  int16_t MousePointer() const override {
    if (!widget_ || !widget_->testAttribute(Qt::WA_SetCursor)) return kPointerDefault;
    const Qt::CursorShape shape = widget_->cursor().shape();
    // A window keeps an arrow of its own when its cursor is unset.
    if (last_ == kPointerDefault && shape == Qt::ArrowCursor) return kPointerDefault;
    // Several numbers share a shape: the one set last is the answer.
    if (last_ && kShapes[static_cast<std::size_t>(*last_)] == shape) return *last_;
    for (std::size_t i = 1; i < kShapes.size(); ++i) {
      if (kShapes[i] == shape) return static_cast<int16_t>(i);
    }
    return kPointerDefault;
  }

  void SetMousePointer(int16_t pointer) override {
    if (pointer < 0 || pointer >= static_cast<int16_t>(kShapes.size())) Raise(kErrInvalidCall);
    if (!widget_) return;
    last_ = pointer;
    if (pointer == kPointerDefault) {
      widget_->unsetCursor();
    } else {
      widget_->setCursor(kShapes[static_cast<std::size_t>(pointer)]);
    }
  }

 private:
  QPointer<QWidget> widget_;
  std::optional<int16_t> last_;
};

}  // namespace

std::shared_ptr<MousePointerControl> QtMousePointer(QWidget* widget) {
  return std::make_shared<WidgetPointer>(widget);
}

}  // namespace norvik50
