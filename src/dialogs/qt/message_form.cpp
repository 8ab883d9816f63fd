#include "dialogs/qt/message_form.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/rich_text_reader.h"

namespace norvik50::qt {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

int AvailableScreenWidth() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen ? screen->availableGeometry().width() : 800;
}

// Client size of a form whose outer size is given in twips.
QSize ClientSizeOf(int width_twips, int height_twips) {
  return {std::max(1, width_twips / kTwipsPerPixel - 2 * kSizingFrame),
          std::max(1, height_twips / kTwipsPerPixel - kCaptionHeight - 2 * kSizingFrame)};
}

// A label that grows with its text, wrapping only where it would pass
// `max_width`.
void FitLabel(QLabel& label, int max_width) {
  label.setWordWrap(false);
  label.adjustSize();
  if (label.width() > max_width) {
    label.setWordWrap(true);
    label.resize(max_width, label.heightForWidth(max_width));
  }
}

}  // namespace

MessageForm::MessageForm(const MessageBoxRequest& request, QWidget* owner)
    : FormBase(owner, request.language), request_(request) {
  setWindowTitle(ToQ(request_.title));
  symbol_ = new QLabel(this);
  const QIcon icon = SymbolIcon(request_.symbol);
  if (!icon.isNull()) symbol_->setPixmap(icon.pixmap(kSymbolSize, kSymbolSize));
  symbol_->setGeometry(kMargin, kMargin, kSymbolSize, kSymbolSize);
  symbol_->setVisible(!icon.isNull());
  if (request_.form == u"frmMsgBox") {
    rich_ = new QTextEdit(this);
    rich_->setReadOnly(true);
    rich_->setFrameShape(QFrame::NoFrame);
    rich_->document()->setDefaultFont(DialogFont());
    ReadRichText(request_.prompt, *rich_->document());
    rich_->installEventFilter(this);
  } else {
    message_ = new QLabel(ToQ(request_.prompt), this);
    message_->setTextFormat(Qt::PlainText);
    message_->setFont(
        DialogFont(request_.font_size > 0 ? request_.font_size : 10, request_.font_bold));
    QPalette palette = message_->palette();
    palette.setColor(QPalette::WindowText, QColor::fromRgb(request_.prompt_rgb));
    message_->setPalette(palette);
    detail_ = new QLabel(ToQ(request_.detail), this);
    detail_->setTextFormat(Qt::PlainText);
  }
  BuildButtons();
  if (rich_) {
    LayoutRichBox();
  } else {
    LayoutStandardBox();
  }
}

void MessageForm::BuildButtons() {
  for (std::size_t i = 0; i < request_.buttons.size(); ++i) {
    auto* button = new QPushButton(ToQ(request_.buttons[i].caption), this);
    button->setAutoDefault(false);
    button->setDefault(static_cast<int>(i) + 1 == request_.default_button);
    button->resize(kButtonWidth, kButtonHeight);
    button->installEventFilter(this);
    const int answer = request_.buttons[i].answer;
    connect(button, &QPushButton::clicked, this, [this, answer] {
      result_ = answer;
      HideForm();
    });
    buttons_.push_back(button);
  }
}

void MessageForm::PlaceButtonRow(int top, int centre) {
  const int w = kButtonWidth;
  switch (buttons_.size()) {
    case 1:
      buttons_[0]->move(centre - w / 2, top);
      break;
    case 2:
      // Half a gap either side of the centre line.
      buttons_[0]->move(centre - w - kButtonGap / 2 - 1, top);
      buttons_[1]->move(centre + kButtonGap / 2 + 1, top);
      break;
    default: {
      const int middle = centre - w / 2;
      for (std::size_t i = 0; i < buttons_.size(); ++i) {
        buttons_[i]->move(middle + (static_cast<int>(i) - 1) * (w + kButtonGap), top);
      }
    }
  }
}

void MessageForm::LayoutRichBox() {
  const int width_twips = request_.width_twips > 0 ? request_.width_twips : kDesignedWidthTwips;
  const int height_twips = request_.height_twips > 0 ? request_.height_twips : kDesignedHeightTwips;
  setFixedSize(ClientSizeOf(width_twips, height_twips));
  // The row's top counts from the outer height less the sizing frame, the
  // menu bar and 15 pixels; the message fills what is above it.
  const int top =
      height_twips / kTwipsPerPixel - kButtonHeight - (kSizingFrame + kMenuBarHeight + 15);
  const int left = !symbol_->isHidden() ? kTextLeft : kMargin;
  rich_->setGeometry(left, kMargin, std::max(1, width() - left - kMargin), std::max(1, top - 20));
  PlaceButtonRow(top, width_twips / 30);
}

void MessageForm::LayoutStandardBox() {
  const int left = !symbol_->isHidden() ? kTextLeft : kMargin;
  const int screen_client = AvailableScreenWidth() - 2 * kSizingFrame;
  const int max_label = std::max(50, screen_client - left - kMargin);
  FitLabel(*message_, max_label);
  FitLabel(*detail_, max_label);
  message_->move(left, kMargin);
  detail_->move(left, message_->y() + message_->height() + 10);
  const int row = static_cast<int>(buttons_.size()) * (kButtonWidth + kButtonGap) - kButtonGap;
  const QSize designed = ClientSizeOf(kStdDesignedWidthTwips, kStdDesignedHeightTwips);
  // Never narrower than designed, never wider than the screen.
  const int wanted =
      std::max({designed.width(), left + std::max(message_->width(), detail_->width()) + kMargin,
                row + 2 * kMargin});
  const int client_width = std::min(wanted, screen_client);
  const int content_bottom =
      std::max(!symbol_->isHidden() ? kMargin + kSymbolSize : 0, detail_->y() + detail_->height());
  const int top = content_bottom + 16;
  setFixedSize(client_width, std::max(designed.height(), top + kButtonHeight + kMargin));
  PlaceButtonRow(top, client_width / 2);
}

void MessageForm::Press(int index) {
  if (index >= 0 && index < static_cast<int>(buttons_.size())) buttons_[index]->click();
}

bool MessageForm::HandleKey(QKeyEvent* event, QObject* target) {
  if (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) {
    return false;
  }
  const int key = event->key();
  if (key == Qt::Key_Space) {
    const auto it = std::find(buttons_.begin(), buttons_.end(), target);
    if (it != buttons_.end()) (*it)->click();
    return true;
  }
  if (key >= Qt::Key_A && key <= Qt::Key_Z) {
    // Every button is tested and the last match stands.
    const std::u16string letter(1, static_cast<char16_t>(key));
    bool matched = false;
    for (const DialogButton& button : request_.buttons) {
      if (AcceleratorOf(button.caption) == letter) {
        result_ = button.answer;
        matched = true;
      }
    }
    if (matched) HideForm();
    return true;
  }
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    Press(request_.default_button - 1);
    return true;
  }
  if (key == Qt::Key_Escape) {
    Press(request_.cancel_button - 1);
    return true;
  }
  return false;
}

void MessageForm::keyPressEvent(QKeyEvent* event) {
  if (!HandleKey(event, this)) FormBase::keyPressEvent(event);
}

bool MessageForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    return HandleKey(static_cast<QKeyEvent*>(event), watched);
  }
  // Space must not also click on its release through the button itself.
  if (event->type() == QEvent::KeyRelease &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
    return true;
  }
  return FormBase::eventFilter(watched, event);
}

void MessageForm::showEvent(QShowEvent* event) {
  FormBase::showEvent(event);
  const int index = request_.default_button - 1;
  if (index >= 0 && index < static_cast<int>(buttons_.size())) buttons_[index]->setFocus();
}

DialogFacts MessageForm::Facts() const {
  DialogFacts f;
  f.form = ToQ(request_.form);
  f.title = ToQ(request_.title);
  f.prompt = rich_ ? rich_->toPlainText() : message_->text();
  f.detail = detail_ ? detail_->text() : QString();
  for (const DialogButton& b : request_.buttons) f.buttons << ToQ(b.caption);
  f.default_button = request_.default_button;
  f.cancel_button = request_.cancel_button;
  f.symbol = request_.symbol;
  return f;
}

}  // namespace norvik50::qt
