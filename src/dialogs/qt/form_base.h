// What every form of the library shares: Tahoma, top-most above its
// owner, and a close by the window's close box that only hides the form,
// so the modal show ends with the result the form had (0 when nothing was
// chosen).
#ifndef NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_
#define NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_

#include <QCloseEvent>
#include <QDialog>
#include <QIcon>

namespace norvik50::qt {

class FormBase : public QDialog {
 public:
  explicit FormBase(QWidget* owner);

  // Hides the form and ends the modal show.
  void HideForm() { done(QDialog::Accepted); }

 protected:
  void closeEvent(QCloseEvent* event) override {
    // Refused: only the library unloads its forms. Hiding ends the show.
    event->ignore();
    HideForm();
  }
};

// The icon of a symbol (16 critical, 32 question, 48 exclamation,
// 64 information) as a 32x32 picture source; null for 0.
QIcon SymbolIcon(int symbol);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_
