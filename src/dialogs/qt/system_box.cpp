#include "dialogs/qt/system_box.h"

#include <QAbstractButton>
#include <QPushButton>
#include <algorithm>
#include <vector>

#include "dialogs/qt/dialog_driver.h"

namespace norvik50::qt {

QMessageBox::StandardButton RunSystemBox(QMessageBox& box, int symbol,
                                         int (*answer)(QMessageBox::StandardButton)) {
  box.setWindowFlag(Qt::WindowStaysOnTopHint);
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
