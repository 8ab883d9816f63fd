#include "dialogs/qt/zoom_form.h"

#include <QKeyEvent>
#include <algorithm>

#include "norvik50/qt_dialogs.h"

namespace norvik50::qt {
namespace {

QString ToQ(const std::u16string& text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// The editor's texts are German by design, and so are Qt's in it (the
// menu of the text box).
constexpr int16_t kDesignedLanguage = 1;

constexpr char16_t kHint[] =
    u"[ENTER] schlie\u00dft die Eingabe ab, f\u00fcr einen Zeilenumbruch dr\u00fccken Sie bitte "
    u"die Tastenkombination [Strg]+[J].";

// The multi-line box: Enter belongs to the default button, Ctrl+J types
// the line break, F2 toggles between the whole text selected and the caret
// at the end, and every focus-in selects the whole text.
class ZoomEditor final : public QPlainTextEdit {
 public:
  ZoomEditor(QWidget* parent, QPushButton* ok) : QPlainTextEdit(parent), ok_(ok) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool plain = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && plain) {
      ok_->click();
      return;
    }
    if (event->key() == Qt::Key_J && (event->modifiers() & Qt::ControlModifier)) {
      if (!isReadOnly()) insertPlainText(QStringLiteral("\n"));
      return;
    }
    if (event->key() == Qt::Key_F2 && plain) {
      // The rule tklSelectField applies to the host's fields.
      SelectField(*QtTextControl(this), true);
      return;
    }
    QPlainTextEdit::keyPressEvent(event);
  }
  void focusInEvent(QFocusEvent* event) override {
    QPlainTextEdit::focusInEvent(event);
    SelectField(*QtTextControl(this), false);
  }

 private:
  QPushButton* ok_;
};

}  // namespace

ZoomForm::ZoomForm(const ZoomRequest& request, QWidget* owner)
    : FormBase(owner, kDesignedLanguage) {
  setWindowFlags(windowFlags() | Qt::WindowMaximizeButtonHint);
  setSizeGripEnabled(true);
  setWindowTitle(ToQ(request.title));
  ok_ = new QPushButton(QStringLiteral("OK"), this);
  ok_->setObjectName(QStringLiteral("cmdOK"));
  ok_->setDefault(true);
  cancel_ = new QPushButton(QStringLiteral("Abbrechen"), this);
  cancel_->setObjectName(QStringLiteral("cmdCancel"));
  cancel_->setAutoDefault(false);
  editor_ = new ZoomEditor(this, ok_);
  editor_->setObjectName(QStringLiteral("txtZoom"));
  editor_->setPlainText(ToQ(request.text));
  editor_->setEnabled(request.enabled);
  editor_->setReadOnly(request.locked);
  editor_->setToolTip(ToQ(request.tooltip));
  hint_ = new QLabel(QString::fromUtf16(kHint), this);
  hint_->setWordWrap(true);
  setMinimumSize(3 * kButtonWidth + 4 * kMargin, 4 * kButtonHeight + 3 * kMargin);
  resize(std::max(minimumWidth(), request.width_twips / kTwipsPerPixel - 2 * kSizingFrame),
         std::max(minimumHeight(),
                  request.height_twips / kTwipsPerPixel - kCaptionHeight - 2 * kSizingFrame));
  // Laid out at once: a form not yet shown gets its resize event only when
  // it is shown.
  LayoutControls();
  editor_->setFocus();
  connect(ok_, &QPushButton::clicked, this, [this] {
    confirmed_ = true;
    HideForm();
  });
  connect(cancel_, &QPushButton::clicked, this, [this] { HideForm(); });
}

void ZoomForm::resizeEvent(QResizeEvent* event) {
  FormBase::resizeEvent(event);
  LayoutControls();
}

void ZoomForm::LayoutControls() {
  // The box fills the window above a bottom row of hint and buttons.
  const int row_top = height() - kMargin - kButtonHeight;
  const int buttons_left = width() - kMargin - 2 * kButtonWidth - kMargin / 2;
  editor_->setGeometry(kMargin, kMargin, width() - 2 * kMargin, row_top - 2 * kMargin);
  hint_->setGeometry(kMargin, row_top - 4, buttons_left - 2 * kMargin, kButtonHeight + 8);
  ok_->setGeometry(buttons_left, row_top, kButtonWidth, kButtonHeight);
  cancel_->setGeometry(buttons_left + kButtonWidth + kMargin / 2, row_top, kButtonWidth,
                       kButtonHeight);
}

int ZoomForm::WidthTwips() const { return (width() + 2 * kSizingFrame) * kTwipsPerPixel; }

int ZoomForm::HeightTwips() const {
  return (height() + kCaptionHeight + 2 * kSizingFrame) * kTwipsPerPixel;
}

DialogFacts ZoomForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmZoom");
  f.title = windowTitle();
  f.prompt = hint_->text();
  f.buttons << ok_->text() << cancel_->text();
  f.default_button = 1;
  f.cancel_button = 2;
  f.value = editor_->toPlainText();
  f.has_value = true;
  return f;
}

}  // namespace norvik50::qt
