// The host's Qt windows as open forms, and the frames and pages that hold
// its widgets.
#include "dialogs/qt/qt_containers.h"

#include <QApplication>
#include <QFrame>
#include <QGroupBox>
#include <QPointer>
#include <QStackedWidget>
#include <QTabWidget>
#include <QWidget>

#include "dialogs/qt/control_name.h"
#include "norvik50/container.h"
#include "norvik50/focusable.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50::qt {
namespace {

// A frame, page or group box of a host's form.
class WidgetContainer final : public HostObject, public ControlContainer, public Focusable {
 public:
  WidgetContainer(QWidget* widget, std::u16string kind) : widget_(widget), kind_(std::move(kind)) {}
  std::u16string ContainerName() const override { return ControlName(widget_.data()); }
  std::u16string ContainerType() const override { return kind_; }
  std::shared_ptr<HostObject> Parent() const override { return ContainerOf(widget_.data()); }
  void SetFocus() override {
    if (widget_) widget_->setFocus();
  }

 private:
  QPointer<QWidget> widget_;
  std::u16string kind_;
};

}  // namespace

bool IsOpenForm(const QWidget& window) {
  if (!window.isWindow() || !window.isVisible()) return false;
  const Qt::WindowType type = window.windowType();
  return type == Qt::Window || type == Qt::Dialog || type == Qt::Tool;
}

std::vector<std::u16string> OpenFormNames() {
  std::vector<std::u16string> names;
  if (QApplication::instance() == nullptr) return names;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (IsOpenForm(*window)) names.push_back(ControlName(window));
  }
  return names;
}

std::optional<std::u16string> ContainerKind(const QWidget& widget) {
  if (qobject_cast<const QGroupBox*>(&widget) != nullptr) return u"Frame";
  if (const auto* stack = qobject_cast<const QStackedWidget*>(widget.parentWidget())) {
    // A tab widget keeps its pages in a stack of its own.
    if (qobject_cast<const QTabWidget*>(stack->parentWidget()) != nullptr) return u"TabPage";
    return u"Page";
  }
  // Only a frame as such: labels, views and scroll areas are frames to Qt
  // too, but they are controls, not something a form designer puts
  // controls into.
  if (widget.metaObject() == &QFrame::staticMetaObject) return u"Frame";
  return std::nullopt;
}

std::shared_ptr<HostObject> ContainerOf(const QWidget* widget) {
  if (widget == nullptr || widget->isWindow()) return nullptr;
  for (QWidget* up = widget->parentWidget(); up != nullptr; up = up->parentWidget()) {
    if (up->isWindow()) return QtForm(up);
    if (std::optional<std::u16string> kind = ContainerKind(*up)) {
      return std::make_shared<WidgetContainer>(up, std::move(*kind));
    }
  }
  return nullptr;
}

}  // namespace norvik50::qt
