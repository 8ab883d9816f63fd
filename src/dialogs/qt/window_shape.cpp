#include "dialogs/qt/window_shape.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QRegion>
#include <QWidget>
#include <algorithm>

namespace norvik50::qt {
namespace {

constexpr const char* kCornersName = "norvik50RoundCorners";
constexpr const char* kShadowName = "norvik50DropShadow";

QRegion RoundedRegion(const QRect& rect, int radius) {
  QPainterPath path;
  path.addRoundedRect(QRectF(rect), radius, radius);
  return QRegion(path.toFillPolygon().toPolygon());
}

// Re-cuts the mask whenever the window's size changes: a mask is fixed
// pixels, not a shape.
class RoundCorners final : public QObject {
 public:
  RoundCorners(QWidget& window, int radius) : QObject(&window), window_(window), radius_(radius) {
    setObjectName(kCornersName);
    window.installEventFilter(this);
    Apply();
  }
  int radius() const { return radius_; }
  void set_radius(int radius) {
    radius_ = radius;
    Apply();
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    // A hidden window is resized without the event until it shows.
    if (watched == &window_ && (event->type() == QEvent::Resize || event->type() == QEvent::Show)) {
      Apply();
    }
    return false;
  }

 private:
  void Apply() { window_.setMask(RoundedRegion(window_.rect(), radius_)); }
  QWidget& window_;
  int radius_;
};

RoundCorners* CornersOf(const QWidget& window) {
  return window.findChild<RoundCorners*>(kCornersName, Qt::FindDirectChildrenOnly);
}

// The shadow: a see-through window behind the form, as large as the form
// plus the blur, painted as rounded rectangles that fade outwards.
class ShadowWindow final : public QWidget {
 public:
  explicit ShadowWindow(QWidget& form)
      : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                             Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint),
        form_(&form) {
    setObjectName(kShadowName);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
  }

  void Follow() {
    if (!form_) return;
    const QRect frame = form_->frameGeometry();
    setGeometry(frame.adjusted(-kShadowBlur + kShadowOffset, -kShadowBlur + kShadowOffset,
                               kShadowBlur + kShadowOffset, kShadowBlur + kShadowOffset));
    if (form_->isVisible() && !isVisible()) {
      show();
      // Behind its form: shown first, then the form raised over it.
      form_->raise();
    } else if (!form_->isVisible() && isVisible()) {
      hide();
    }
    update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const RoundCorners* corners = form_ ? CornersOf(*form_) : nullptr;
    const int radius = corners != nullptr ? corners->radius() : 0;
    // Rings from the outside in, each adding a little darkness: a cheap
    // blur that reads as a soft edge.
    const QRect inner = rect().adjusted(kShadowBlur, kShadowBlur, -kShadowBlur, -kShadowBlur);
    for (int step = kShadowBlur; step >= 0; --step) {
      const int alpha = 90 / (kShadowBlur + 1);
      painter.setBrush(QColor(0, 0, 0, alpha));
      painter.drawRoundedRect(QRectF(inner.adjusted(-step, -step, step, step)), radius + step,
                              radius + step);
    }
  }

 private:
  QPointer<QWidget> form_;
};

// Moves the shadow with its form and removes it with it.
class ShadowFollower final : public QObject {
 public:
  ShadowFollower(QWidget& form, ShadowWindow* shadow) : QObject(&form), shadow_(shadow) {
    setObjectName(QStringLiteral("norvik50ShadowFollower"));
    form.installEventFilter(this);
    shadow_->Follow();
  }
  ~ShadowFollower() override { delete shadow_.data(); }
  ShadowWindow* shadow() const { return shadow_.data(); }

  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::Move:
      case QEvent::Resize:
      case QEvent::Show:
      case QEvent::Hide:
        if (shadow_) shadow_->Follow();
        break;
      default:
        break;
    }
    return false;
  }

 private:
  QPointer<ShadowWindow> shadow_;
};

ShadowFollower* FollowerOf(const QWidget& window) {
  return window.findChild<ShadowFollower*>(QStringLiteral("norvik50ShadowFollower"),
                                           Qt::FindDirectChildrenOnly);
}

}  // namespace

void SetRoundCorners(QWidget& window, int radius) {
  RoundCorners* corners = CornersOf(window);
  if (radius <= 0) {
    // A mask the host cut itself is the host's to keep.
    if (corners != nullptr) window.clearMask();
    delete corners;
  } else if (corners != nullptr) {
    corners->set_radius(radius);
  } else {
    new RoundCorners(window, radius);
  }
  if (ShadowFollower* follower = FollowerOf(window); follower && follower->shadow()) {
    follower->shadow()->update();
  }
}

int RoundCornerRadius(const QWidget& window) {
  const RoundCorners* corners = CornersOf(window);
  return corners != nullptr ? corners->radius() : 0;
}

void SetDropShadow(QWidget& window, bool on) {
  ShadowFollower* follower = FollowerOf(window);
  if (!on) {
    delete follower;
    return;
  }
  if (follower == nullptr) new ShadowFollower(window, new ShadowWindow(window));
}

QWidget* DropShadowOf(const QWidget& window) {
  const ShadowFollower* follower = FollowerOf(window);
  return follower != nullptr ? follower->shadow() : nullptr;
}

}  // namespace norvik50::qt
