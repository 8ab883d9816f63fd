// frmMsgBox (rich-text message) and frmStdMsg (prompt and detail labels):
// the message box forms with the library's button machinery.
#ifndef NORVIK50_SRC_DIALOGS_QT_MESSAGE_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_MESSAGE_FORM_H_

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <vector>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"
#include "norvik50/host.h"

namespace norvik50::qt {

class MessageForm : public FormBase {
 public:
  MessageForm(const MessageBoxRequest& request, QWidget* owner);

  // The answer code of the pressed button; 0 until one is pressed.
  int Result() const { return result_; }
  const std::vector<QPushButton*>& buttons() const { return buttons_; }
  DialogFacts Facts() const;

  // Designed sizes, in pixels.
  static constexpr int kButtonWidth = 100;
  static constexpr int kButtonHeight = 25;
  static constexpr int kButtonGap = 5;
  static constexpr int kMargin = 12;
  static constexpr int kSymbolSize = 32;
  static constexpr int kTextLeft = kMargin + kSymbolSize + kMargin;
  static constexpr int kDesignedWidthTwips = 6000;
  static constexpr int kDesignedHeightTwips = 2850;
  static constexpr int kStdDesignedWidthTwips = 5400;
  static constexpr int kStdDesignedHeightTwips = 1950;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void BuildButtons();
  void LayoutRichBox();
  void LayoutStandardBox();
  void PlaceButtonRow(int top, int centre);
  void Press(int index);  // 0-based
  // True when the key was handled by the form's own rules.
  bool HandleKey(QKeyEvent* event, QObject* target);

  MessageBoxRequest request_;
  int result_ = 0;
  QLabel* symbol_ = nullptr;
  QTextEdit* rich_ = nullptr;  // frmMsgBox: rtfMessage
  QLabel* message_ = nullptr;  // frmStdMsg: labMessage
  QLabel* detail_ = nullptr;   // frmStdMsg: labDetail
  std::vector<QPushButton*> buttons_;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_MESSAGE_FORM_H_
