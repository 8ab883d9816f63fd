#include "dialogs/qt/choose_lang_form.h"

namespace norvik50::qt {

ChooseLangForm::ChooseLangForm(QWidget* owner) : FormBase(owner) {
  setWindowTitle(QStringLiteral("Choose language"));
  label_ = new QLabel(QStringLiteral("Please choose application language:"), this);
  label_->setGeometry(12, 12, 236, 18);
  combo_ = new QComboBox(this);
  combo_->setGeometry(12, 34, 236, 24);
  ok_ = new QPushButton(QStringLiteral("OK"), this);
  ok_->setGeometry(148, 70, 100, 25);
  ok_->setDefault(true);
  connect(ok_, &QPushButton::clicked, this, [this] { HideForm(); });
  setFixedSize(260, 107);
  // A person picks with the arrow keys or a name's first letter and
  // confirms with Enter, which the list passes on to the default button.
  combo_->setFocus();
}

void ChooseLangForm::FillLanguages(const std::vector<std::u16string>& entries) {
  for (const std::u16string& entry : entries) {
    const QStringList parts =
        QString::fromUtf16(entry.data(), static_cast<qsizetype>(entry.size())).split(u';');
    if (parts.size() < 2) continue;
    combo_->addItem(parts[1], parts[0].toInt());
  }
  if (combo_->count() > 0) combo_->setCurrentIndex(0);
}

int ChooseLangForm::SelectedLanguage() const {
  return combo_->currentIndex() < 0 ? -1 : combo_->currentData().toInt();
}

DialogFacts ChooseLangForm::Facts() const {
  DialogFacts f;
  f.form = QStringLiteral("frmChooseLang");
  f.title = windowTitle();
  f.prompt = label_->text();
  f.detail = combo_->currentText();
  f.buttons << ok_->text();
  f.default_button = 1;
  return f;
}

}  // namespace norvik50::qt
