// Which of the application's Qt windows are open forms, and what holds a
// host's widget on its form: what tklIsFormOpen and tklGetContainer read.
#ifndef NORVIK50_SRC_DIALOGS_QT_QT_CONTAINERS_H_
#define NORVIK50_SRC_DIALOGS_QT_QT_CONTAINERS_H_

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "norvik50/variant.h"

class QWidget;

namespace norvik50::qt {

// True for a window or dialog (a tool window too) that is shown, minimised
// or not; popups, tooltips and splash screens are no forms.
bool IsOpenForm(const QWidget& window);

// The names (ControlName) of the application's open forms, in the
// toolkit's order; none before the application object exists.
std::vector<std::u16string> OpenFormNames();

// The kind of container `widget` is ("Frame" for a group box or a plain
// frame, "TabPage" for a tab widget's page, "Page" for another stack's
// page); nullopt for a widget that only lays others out (a plain widget,
// a scroll area's inside, a tab widget's own stack) or is a control.
std::optional<std::u16string> ContainerKind(const QWidget& widget);

// What holds `widget`: the nearest ancestor that is a container, adapted
// as a ControlContainer, or its window as a Form (QtForm). nullptr for a
// null widget and for a window, which nothing holds.
std::shared_ptr<HostObject> ContainerOf(const QWidget* widget);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_QT_CONTAINERS_H_
