// frmMessage: the non-modal progress window. It shows the state the
// library worked out (the message as centred rich text, the counter bar,
// the size) and lays itself out on every resize: the bar 60 twips above
// the bottom of the client area across its width less the margins, the
// message area above it with the bar's left edge and width.
#ifndef NORVIK50_SRC_DIALOGS_QT_PROGRESS_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_PROGRESS_FORM_H_

#include <QProgressBar>
#include <QTextEdit>
#include <QWidget>
#include <QWindow>
#include <memory>

#include "dialogs/qt/dialog_driver.h"
#include "norvik50/host.h"

namespace norvik50::qt {

class ProgressForm : public QWidget {
 public:
  ProgressForm();
  ~ProgressForm() override;

  // Shows `state`: caption, message (read again only when it changed),
  // bar, size and message top when the state says they changed; shows a
  // hidden form (placed, owned and top-most as the state asks the first
  // time only) or hides a shown one.
  void Apply(const MessageWindowState& state);

  // The outer size in twips, with the classic frame.
  int WidthTwips() const;
  int HeightTwips() const;
  QTextEdit* Message() const { return message_; }
  QProgressBar* Bar() const { return bar_; }
  // The owner the form was shown with; null for none.
  QWindow* Owner() const;
  DialogFacts Facts() const;

  static constexpr int kMargin = 8;
  static constexpr int kBarHeight = 17;
  static constexpr int kBarBottomTwips = 60;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  // Only the library and the program close this window, never the user.
  void closeEvent(QCloseEvent* event) override;

 private:
  void Layout();
  void TakeOwner(const MessageWindowState& state);

  QTextEdit* message_ = nullptr;
  QProgressBar* bar_ = nullptr;
  std::u16string prompt_;
  int message_top_ = 0;  // pixels
  bool placed_ = false;
  // A host window known only by its id, as the window system's handle.
  std::unique_ptr<QWindow> foreign_owner_;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_PROGRESS_FORM_H_
