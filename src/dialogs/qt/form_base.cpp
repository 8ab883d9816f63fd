#include "dialogs/qt/form_base.h"

#include <QApplication>
#include <QStyle>

#include "dialogs/qt/qt_application.h"

namespace norvik50::qt {

FormBase::FormBase(QWidget* owner) : QDialog(owner) {
  // An owner makes the form a transient of the host's window; top-most
  // keeps it above everything else, as the host's users expect.
  setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                 Qt::WindowStaysOnTopHint);
  setFont(DialogFont());
  setModal(true);
}

QIcon SymbolIcon(int symbol) {
  QStyle* style = QApplication::style();
  switch (symbol) {
    case 16:
      return style->standardIcon(QStyle::SP_MessageBoxCritical);
    case 32:
      return style->standardIcon(QStyle::SP_MessageBoxQuestion);
    case 48:
      return style->standardIcon(QStyle::SP_MessageBoxWarning);
    case 64:
      return style->standardIcon(QStyle::SP_MessageBoxInformation);
    default:
      return {};
  }
}

}  // namespace norvik50::qt
