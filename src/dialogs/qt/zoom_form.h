// frmZoom: a large, resizable editor for the text of one host field, a
// hint on how to end a line, OK and Cancel.
#ifndef NORVIK50_SRC_DIALOGS_QT_ZOOM_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_ZOOM_FORM_H_

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"
#include "norvik50/host.h"

namespace norvik50::qt {

class ZoomForm : public FormBase {
 public:
  ZoomForm(const ZoomRequest& request, QWidget* owner);

  // True after OK.
  bool Confirmed() const { return confirmed_; }
  QString Text() const { return editor_->toPlainText(); }
  QPlainTextEdit* Editor() const { return editor_; }
  // The outer size in twips, with the classic frame.
  int WidthTwips() const;
  int HeightTwips() const;
  DialogFacts Facts() const;

  static constexpr int kMargin = 8;
  static constexpr int kButtonWidth = 75;
  static constexpr int kButtonHeight = 25;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  // The text box and the buttons follow the window's size.
  void LayoutControls();

  bool confirmed_ = false;
  QPlainTextEdit* editor_ = nullptr;
  QLabel* hint_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_ZOOM_FORM_H_
