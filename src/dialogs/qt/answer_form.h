// frmAnswer: a prompt, a detail text and one button per caption the
// caller gives; the answer is the chosen button's position.
#ifndef NORVIK50_SRC_DIALOGS_QT_ANSWER_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_ANSWER_FORM_H_

#include <QLabel>
#include <QPushButton>
#include <string>
#include <vector>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"

namespace norvik50::qt {

class AnswerForm : public FormBase {
 public:
  AnswerForm(const QString& prompt, const QString& detail, const QString& title,
             const std::vector<std::u16string>& captions, QWidget* owner);

  // 0 until a button is chosen, then its index + 1.
  int Result() const { return result_; }
  DialogFacts Facts() const;

  static constexpr int kMinButtonWidth = 100;
  static constexpr int kButtonHeight = 25;
  static constexpr int kGap = 5;
  static constexpr int kMargin = 12;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool HandleKey(QKeyEvent* event);
  void Layout();

  int result_ = 0;
  QLabel* symbol_ = nullptr;
  QLabel* message_ = nullptr;
  QLabel* detail_ = nullptr;
  std::vector<std::u16string> captions_;
  std::vector<QPushButton*> buttons_;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_ANSWER_FORM_H_
