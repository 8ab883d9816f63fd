#include "dialogs/qt/key_state.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <set>
#include <utility>

#include "dialogs/qt/virtual_keys.h"

namespace norvik50::qt {
namespace {

// Keys by Qt key and keypad; the keypad's Enter is the Return key, as one
// virtual-key code names both.
using HeldKey = std::pair<int, bool>;

HeldKey Held(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Enter) return {Qt::Key_Return, false};
  if (event.key() == Qt::Key_Return) return {Qt::Key_Return, false};
  return {event.key(), event.modifiers().testFlag(Qt::KeypadModifier)};
}

class KeyFollower final : public QObject {
 public:
  using QObject::QObject;

  bool IsDown(const VirtualKey& key) const {
    if (key.button != Qt::NoButton) {
      return ((buttons_ | QGuiApplication::mouseButtons()) & key.button) != 0;
    }
    if (key.modifier != Qt::NoModifier) {
      return QGuiApplication::queryKeyboardModifiers().testFlag(key.modifier) ||
             held_.count({ModifierKey(key.modifier), false}) > 0;
    }
    return held_.count({key.key, key.keypad}) > 0;
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
        held_.insert(Held(*static_cast<QKeyEvent*>(event)));
        break;
      case QEvent::KeyRelease: {
        const auto* key = static_cast<QKeyEvent*>(event);
        // A held key repeats as release and press pairs: still down.
        if (!key->isAutoRepeat()) held_.erase(Held(*key));
        break;
      }
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
        buttons_ = static_cast<QMouseEvent*>(event)->buttons();
        break;
      case QEvent::ApplicationStateChange:
        // Releases while another application is active never arrive.
        if (static_cast<QApplicationStateChangeEvent*>(event)->applicationState() !=
            Qt::ApplicationActive) {
          held_.clear();
          buttons_ = Qt::NoButton;
        }
        break;
      default:
        break;
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  static int ModifierKey(Qt::KeyboardModifier modifier) {
    switch (modifier) {
      case Qt::ShiftModifier:
        return Qt::Key_Shift;
      case Qt::ControlModifier:
        return Qt::Key_Control;
      default:
        return Qt::Key_Alt;
    }
  }

  std::set<HeldKey> held_;
  Qt::MouseButtons buttons_;
};

QPointer<KeyFollower>& Follower() {
  static QPointer<KeyFollower> follower;
  return follower;
}

}  // namespace

void FollowKeys() {
  QCoreApplication* app = QCoreApplication::instance();
  if (app == nullptr || Follower()) return;
  // A child of the application: it goes with it, and a later application
  // gets a new one.
  Follower() = new KeyFollower(app);
  app->installEventFilter(Follower());
}

bool IsVirtualKeyDown(int32_t code) {
  const std::optional<VirtualKey> key = FromVirtualKeyCode(code);
  FollowKeys();
  return key && Follower() && Follower()->IsDown(*key);
}

}  // namespace norvik50::qt
