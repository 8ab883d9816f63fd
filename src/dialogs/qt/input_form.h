// frmInput: a prompt, a one-line box and OK/Cancel. The answer starts as
// Cancel (2); only OK makes it 1, so the close box and Escape answer 2.
#ifndef NORVIK50_SRC_DIALOGS_QT_INPUT_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_INPUT_FORM_H_

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"
#include "norvik50/host.h"

namespace norvik50::qt {

class InputForm : public FormBase {
 public:
  InputForm(const InputRequest& request, QWidget* owner);

  // 1 after OK, else 2.
  int Result() const { return result_; }
  // The box's text in the clear (also when it shows asterisks).
  QString Text() const { return value_->text(); }
  QLineEdit* ValueBox() const { return value_; }
  // The log shows what the box showed: a masked code stays masked.
  DialogFacts Facts() const;

  static constexpr int kClientWidth = 370;
  static constexpr int kMargin = 8;
  static constexpr int kButtonWidth = 75;
  static constexpr int kButtonHeight = 25;
  static constexpr int kButtonGap = 6;  // between OK and Cancel
  static constexpr int kBoxHeight = 21;
  // Below the box, inside the window's frame.
  static constexpr int kBottomGap = 9;

 private:
  int result_ = 2;
  QLabel* description_ = nullptr;
  QLineEdit* value_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_INPUT_FORM_H_
