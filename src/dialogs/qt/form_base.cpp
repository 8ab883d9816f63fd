#include "dialogs/qt/form_base.h"

#include <QApplication>
#include <QStyle>

#include "dialogs/qt/qt_application.h"

namespace norvik50::qt {

FormBase::FormBase(QWidget* owner, std::optional<int16_t> language) : QDialog(owner) {
  // Before the derived form builds its controls, so that they are made
  // with the form's language in force.
  if (language) language_ = std::make_unique<DialogLanguage>(*language);
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
