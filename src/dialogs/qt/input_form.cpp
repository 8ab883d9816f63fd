#include "dialogs/qt/input_form.h"

#include <QFocusEvent>
#include <QProxyStyle>
#include <algorithm>

namespace norvik50::qt {
namespace {

QString ToQ(const std::u16string& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// Codes are masked with "*" as the host's users know it, not with the
// bullet that Qt's styles draw.
class AsteriskStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == QStyle::SH_LineEdit_PasswordCharacter) return u'*';
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

// Whatever way the box gets the focus, its whole text is selected, so
// typing replaces the default.
class SelectingLineEdit final : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    selectAll();
  }
};

}  // namespace

InputForm::InputForm(const InputRequest& request, QWidget* owner)
    : FormBase(owner, request.language) {
  setWindowTitle(ToQ(request.title));
  constexpr int kLabelWidth = kClientWidth - 3 * kMargin - kButtonWidth;
  constexpr int kMinLabelHeight = 45;
  description_ = new QLabel(ToQ(request.prompt), this);
  description_->setTextFormat(Qt::PlainText);
  description_->setWordWrap(true);
  description_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  const int label_height = std::max(kMinLabelHeight, description_->heightForWidth(kLabelWidth));
  description_->setGeometry(kMargin, kMargin, kLabelWidth, label_height);

  const int button_left = kClientWidth - kMargin - kButtonWidth;
  ok_ = new QPushButton(ToQ(request.ok_caption), this);
  ok_->setObjectName(QStringLiteral("cmdOK"));
  ok_->setGeometry(button_left, kMargin, kButtonWidth, kButtonHeight);
  ok_->setDefault(true);
  cancel_ = new QPushButton(ToQ(request.cancel_caption), this);
  cancel_->setObjectName(QStringLiteral("cmdCancel"));
  cancel_->setGeometry(button_left, kMargin + kButtonHeight + kButtonGap, kButtonWidth,
                       kButtonHeight);
  cancel_->setAutoDefault(false);

  value_ = new SelectingLineEdit(this);
  value_->setObjectName(QStringLiteral("txtValue"));
  if (request.max_length > 0) value_->setMaxLength(request.max_length);
  value_->setText(ToQ(request.initial_text));
  if (request.masked) {
    auto* style = new AsteriskStyle;
    style->setParent(value_);
    value_->setStyle(style);
    value_->setEchoMode(QLineEdit::Password);
  }
  // The box stands below the prompt and below both buttons, however short
  // the prompt is.
  const int box_top = std::max(description_->geometry().bottom(), cancel_->geometry().bottom()) +
                      1 + kMargin;
  value_->setGeometry(kMargin, box_top, kClientWidth - 2 * kMargin, kBoxHeight);
  setFixedSize(kClientWidth, box_top + kBoxHeight + kBottomGap);
  value_->setFocus();

  connect(ok_, &QPushButton::clicked, this, [this] {
    result_ = 1;
    HideForm();
  });
  connect(cancel_, &QPushButton::clicked, this, [this] {
    result_ = 2;
    HideForm();
  });
}

DialogFacts InputForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmInput");
  f.title = windowTitle();
  f.prompt = description_->text();
  f.buttons << ok_->text() << cancel_->text();
  f.default_button = 1;
  // Escape closes the form, which answers as Cancel does.
  f.cancel_button = 2;
  f.value = value_->displayText();
  f.has_value = true;
  return f;
}

}  // namespace norvik50::qt
