// The host's Qt text fields behind the library's TextControl.
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>
#include <algorithm>

#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// What every adapter shares; `Field` is the widget type.
template <typename Field>
class FieldControl : public TextControl {
 public:
  explicit FieldControl(Field* field) : field_(field) {}
  std::u16string TypeName() const override { return u"TextBox"; }
  bool Enabled() const override { return field_ && field_->isEnabled(); }
  bool Locked() const override { return field_ && field_->isReadOnly(); }
  std::u16string ToolTipText() const override {
    return field_ ? field_->toolTip().toStdU16String() : std::u16string();
  }
  void SetFocus() override {
    if (field_) field_->setFocus();
  }

 protected:
  QPointer<Field> field_;
};

class LineEditControl final : public FieldControl<QLineEdit> {
 public:
  using FieldControl::FieldControl;
  std::u16string Text() const override {
    return field_ ? field_->text().toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (field_) field_->setText(ToQ(text));
  }
  void Select(int32_t start, int32_t length) override {
    if (!field_) return;
    if (length > 0) {
      field_->setSelection(start, length);
    } else {
      field_->setCursorPosition(start);
    }
  }
};

// QPlainTextEdit and QTextEdit select through their text cursor.
template <typename Field>
class DocumentControl final : public FieldControl<Field> {
 public:
  using FieldControl<Field>::FieldControl;
  std::u16string Text() const override {
    return this->field_ ? this->field_->toPlainText().toStdU16String() : std::u16string();
  }
  void SetText(std::u16string_view text) override {
    if (this->field_) this->field_->setPlainText(ToQ(text));
  }
  void Select(int32_t start, int32_t length) override {
    if (!this->field_) return;
    QTextCursor cursor = this->field_->textCursor();
    // Positions past the end would only warn; they mean the end.
    const int end = this->field_->document()->characterCount() - 1;
    cursor.setPosition(std::clamp(start, 0, end));
    cursor.setPosition(std::clamp(start + std::max(length, 0), 0, end), QTextCursor::KeepAnchor);
    this->field_->setTextCursor(cursor);
  }
};

}  // namespace

std::shared_ptr<TextControl> QtTextControl(QLineEdit* field) {
  return std::make_shared<LineEditControl>(field);
}
std::shared_ptr<TextControl> QtTextControl(QPlainTextEdit* field) {
  return std::make_shared<DocumentControl<QPlainTextEdit>>(field);
}
std::shared_ptr<TextControl> QtTextControl(QTextEdit* field) {
  return std::make_shared<DocumentControl<QTextEdit>>(field);
}

}  // namespace norvik50
