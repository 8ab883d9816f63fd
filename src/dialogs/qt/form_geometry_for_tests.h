// Test support: layout faults a person sees at once, found on the real
// widgets of a form: controls that overlap, controls that stick out of the
// window, and buttons of different heights.
#ifndef NORVIK50_SRC_DIALOGS_QT_FORM_GEOMETRY_FOR_TESTS_H_
#define NORVIK50_SRC_DIALOGS_QT_FORM_GEOMETRY_FOR_TESTS_H_

#include <QLayout>
#include <QPushButton>
#include <QSizeGrip>
#include <QWidget>
#include <set>
#include <string>
#include <vector>

namespace norvik50::qt::testing {

// A control's name for a failure message: its object name, else its
// class and text.
inline std::string ControlName(const QWidget& control) {
  if (!control.objectName().isEmpty()) return control.objectName().toStdString();
  std::string name = control.metaObject()->className();
  if (const auto* button = qobject_cast<const QPushButton*>(&control)) {
    name += " \"" + button->text().toStdString() + "\"";
  }
  return name;
}

// The controls a person sees: the form's direct children that are not
// hidden (before the form is shown too), without the size grip, which
// sits on the window's corner by design.
inline std::vector<const QWidget*> VisibleControls(QWidget& form) {
  if (form.layout() != nullptr) form.layout()->activate();
  std::vector<const QWidget*> controls;
  for (const QWidget* child : form.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (child->isWindow() || child->isHidden() || qobject_cast<const QSizeGrip*>(child)) continue;
    controls.push_back(child);
  }
  return controls;
}

// Every layout fault of `form`, one line each; empty when there is none.
inline std::vector<std::string> LayoutFaults(QWidget& form) {
  std::vector<std::string> faults;
  const std::vector<const QWidget*> controls = VisibleControls(form);
  for (std::size_t i = 0; i < controls.size(); ++i) {
    if (!form.rect().contains(controls[i]->geometry())) {
      faults.push_back(ControlName(*controls[i]) + " sticks out of the window");
    }
    for (std::size_t j = i + 1; j < controls.size(); ++j) {
      if (controls[i]->geometry().intersects(controls[j]->geometry())) {
        faults.push_back(ControlName(*controls[i]) + " overlaps " + ControlName(*controls[j]));
      }
    }
  }
  std::set<int> heights;
  for (const QWidget* control : controls) {
    if (qobject_cast<const QPushButton*>(control)) heights.insert(control->height());
  }
  if (heights.size() > 1) faults.push_back("the buttons differ in height");
  return faults;
}

}  // namespace norvik50::qt::testing

#endif  // NORVIK50_SRC_DIALOGS_QT_FORM_GEOMETRY_FOR_TESTS_H_
