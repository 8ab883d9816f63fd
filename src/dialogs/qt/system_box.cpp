#include "dialogs/qt/system_box.h"

#include <QAbstractButton>
#include <QPushButton>
#include <algorithm>
#include <vector>

#include <QKeyEvent>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/qt_application.h"
#include "norvik50/host.h"

namespace norvik50::qt {
namespace {

// The letter a button's caption marks answers without Alt ("&Ja" to J in
// German, "&Yes" to Y in English), at once. Qt's own box only starts an
// animated click, which ends a tenth of a second later.
class AccessLetters final : public QObject {
 public:
  explicit AccessLetters(QMessageBox& box) : QObject(&box), box_(box) {
    box.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != &box_ || event->type() != QEvent::KeyPress) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() &
        (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) {
      return false;
    }
    if (key->key() <= 0 || key->key() > 0xFFFF) return false;
    const std::u16string pressed(1, static_cast<char16_t>(key->key()));
    for (QAbstractButton* button : box_.buttons()) {
      if (AcceleratorOf(button->text().toStdU16String()) == pressed) {
        button->click();
        return true;
      }
    }
    return false;
  }

 private:
  QMessageBox& box_;
};

}  // namespace

QMessageBox::StandardButton RunSystemBox(QMessageBox& box, int symbol,
                                         int (*answer)(QMessageBox::StandardButton)) {
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
  // The font of the library's own forms, so that all its dialogs look alike.
  box.setFont(DialogFont());
  new AccessLetters(box);
  QMessageBox::StandardButton clicked = QMessageBox::NoButton;
  RunModal(
      box,
      [&] {
        DialogFacts f;
        f.form = QStringLiteral("system");
        f.title = box.windowTitle();
        f.prompt = box.text();
        // The style decides the order: the log shows what a person sees.
        std::vector<QAbstractButton*> buttons;
        for (QAbstractButton* b : box.buttons()) buttons.push_back(b);
        std::sort(buttons.begin(), buttons.end(), [&](QAbstractButton* a, QAbstractButton* b) {
          return a->mapTo(&box, QPoint()).x() < b->mapTo(&box, QPoint()).x();
        });
        for (std::size_t i = 0; i < buttons.size(); ++i) {
          f.buttons << buttons[i]->text();
          if (buttons[i] == box.defaultButton()) f.default_button = static_cast<int>(i) + 1;
          if (buttons[i] == box.escapeButton()) f.cancel_button = static_cast<int>(i) + 1;
        }
        f.symbol = symbol;
        return f;
      },
      [&] {
        QAbstractButton* b = box.clickedButton();
        clicked = b ? box.standardButton(b) : QMessageBox::NoButton;
        return answer(clicked);
      });
  return clicked;
}

}  // namespace norvik50::qt
