// What every form of the library shares: Tahoma, top-most above its
// owner, Qt's own texts (the menus of its text boxes) in the form's
// language, and a close by the window's close box that only hides the
// form, so the modal show ends with the result the form had (0 when
// nothing was chosen).
#ifndef NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_
#define NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_

#include <QCloseEvent>
#include <QDialog>
#include <QIcon>
#include <cstdint>
#include <memory>
#include <optional>

#include "dialogs/qt/dialog_language.h"

namespace norvik50::qt {

class FormBase : public QDialog {
 public:
  // `language`: the language id Qt's own texts speak while the form
  // exists; none leaves them as they are (a form without text boxes).
  explicit FormBase(QWidget* owner, std::optional<int16_t> language = std::nullopt);

  // Hides the form and ends the modal show.
  void HideForm() { done(QDialog::Accepted); }

 protected:
  void closeEvent(QCloseEvent* event) override {
    // Refused: only the library unloads its forms. Hiding ends the show.
    event->ignore();
    HideForm();
  }

 private:
  std::unique_ptr<DialogLanguage> language_;
};

// The icon of a symbol (16 critical, 32 question, 48 exclamation,
// 64 information) as a 32x32 picture source; null for 0.
QIcon SymbolIcon(int symbol);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_FORM_BASE_H_
