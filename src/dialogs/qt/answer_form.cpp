#include "dialogs/qt/answer_form.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

#include "dialogs/qt/qt_application.h"
#include "norvik50/host.h"

namespace norvik50::qt {
namespace {

constexpr int kSymbolSize = 32;
constexpr int kDesignedClientWidth = 340;
constexpr char16_t kDesignedCaption[] = u"Benutzereingabe notwendig";

// Letters and digits of the first plane, whose key codes are their
// upper-case characters (Qt::Key_A is 'A', Qt::Key_Adiaeresis is 'Ä').
bool IsAccessKey(int key) {
  return key > 0 && key <= 0xFFFF && QChar(static_cast<char16_t>(key)).isLetterOrNumber();
}

}  // namespace

AnswerForm::AnswerForm(const QString& prompt, const QString& detail, const QString& title,
                       const std::vector<std::u16string>& captions, QWidget* owner)
    : FormBase(owner), captions_(captions) {
  setWindowTitle(title.isEmpty() ? QString::fromUtf16(kDesignedCaption) : title);
  symbol_ = new QLabel(this);
  symbol_->setPixmap(SymbolIcon(32).pixmap(kSymbolSize, kSymbolSize));
  symbol_->setGeometry(kMargin, kMargin, kSymbolSize, kSymbolSize);
  message_ = new QLabel(prompt, this);
  message_->setTextFormat(Qt::PlainText);
  message_->setFont(DialogFont(10, true));
  detail_ = new QLabel(detail, this);
  detail_->setTextFormat(Qt::PlainText);
  for (std::size_t i = 0; i < captions_.size(); ++i) {
    const QString caption =
        QString::fromUtf16(captions_[i].data(), static_cast<qsizetype>(captions_[i].size()));
    auto* button = new QPushButton(caption, this);
    button->setAutoDefault(false);
    button->installEventFilter(this);
    const int position = static_cast<int>(i) + 1;
    connect(button, &QPushButton::clicked, this, [this, position] {
      result_ = position;
      HideForm();
    });
    buttons_.push_back(button);
  }
  Layout();
}

void AnswerForm::Layout() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const int max_client = (screen ? screen->availableGeometry().width() : 800) - 2 * kSizingFrame;
  const int left = kMargin + kSymbolSize + kMargin;
  for (QLabel* label : {message_, detail_}) {
    label->adjustSize();
    if (label->width() > max_client - left - kMargin) {
      label->setWordWrap(true);
      label->resize(max_client - left - kMargin,
                    label->heightForWidth(max_client - left - kMargin));
    }
  }
  message_->move(left, kMargin);
  detail_->move(left, message_->y() + message_->height() + 10);
  // Each button fits its caption; the row widens with the number of
  // buttons and wraps into a further row where it would leave the screen.
  std::vector<int> widths;
  for (QPushButton* b : buttons_) {
    widths.push_back(std::max(kMinButtonWidth, b->sizeHint().width() + 8));
  }
  const int row_limit = max_client - 2 * kMargin;
  std::vector<std::vector<std::size_t>> rows(1);
  int row_width = 0;
  int widest_row = 0;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    const int w = std::min(widths[i], row_limit);
    if (!rows.back().empty() && row_width + kGap + w > row_limit) {
      rows.emplace_back();
      row_width = 0;
    }
    row_width += (rows.back().empty() ? 0 : kGap) + w;
    widest_row = std::max(widest_row, row_width);
    rows.back().push_back(i);
  }
  const int text_right = left + std::max(message_->width(), detail_->width()) + kMargin;
  const int client_width =
      std::min(max_client, std::max({kDesignedClientWidth, text_right, widest_row + 2 * kMargin}));
  int top = std::max(kMargin + kSymbolSize, detail_->y() + detail_->height()) + 16;
  for (const auto& row : rows) {
    int width = 0;
    for (std::size_t i : row) width += std::min(widths[i], row_limit) + kGap;
    width -= kGap;
    // Centred on half the outer width.
    int x = (client_width + 2 * kSizingFrame) / 2 - kSizingFrame - width / 2;
    for (std::size_t i : row) {
      const int w = std::min(widths[i], row_limit);
      buttons_[i]->setGeometry(x, top, w, kButtonHeight);
      x += w + kGap;
    }
    top += kButtonHeight + kGap;
  }
  setFixedSize(client_width, top - kGap + kMargin);
}

bool AnswerForm::HandleKey(QKeyEvent* event) {
  if (event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) {
    return false;
  }
  const int key = event->key();
  // The access character may be a letter or a digit ("&2 Two" answers to
  // 2); Qt's key code of either is the upper-case character itself.
  const bool access_key = IsAccessKey(key);
  if (access_key) {
    const std::u16string pressed(1, static_cast<char16_t>(key));
    for (std::size_t i = 0; i < captions_.size(); ++i) {
      if (captions_[i].find(u'&') != std::u16string::npos &&
          AcceleratorOf(captions_[i]) == pressed) {
        result_ = static_cast<int>(i) + 1;
      }
    }
  }
  if (result_ > 0) {
    HideForm();
    return true;
  }
  if (key == Qt::Key_Escape) {
    HideForm();
    return true;
  }
  return access_key;
}

void AnswerForm::keyPressEvent(QKeyEvent* event) {
  if (!HandleKey(event)) FormBase::keyPressEvent(event);
}

bool AnswerForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && HandleKey(static_cast<QKeyEvent*>(event))) return true;
  return FormBase::eventFilter(watched, event);
}

DialogFacts AnswerForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmAnswer");
  f.title = windowTitle();
  f.prompt = message_->text();
  f.detail = detail_->text();
  for (const QPushButton* b : buttons_) f.buttons << b->text();
  f.symbol = 32;
  return f;
}

}  // namespace norvik50::qt
