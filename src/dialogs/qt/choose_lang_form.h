// frmChooseLang: the language chooser shown once when no language is
// stored. Closing it any way hides it, so the selection is still read.
#ifndef NORVIK50_SRC_DIALOGS_QT_CHOOSE_LANG_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_CHOOSE_LANG_FORM_H_

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <string>
#include <vector>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"

namespace norvik50::qt {

class ChooseLangForm : public FormBase {
 public:
  explicit ChooseLangForm(QWidget* owner);

  // Fills the combo from "langid;name;extension" entries: the name shown,
  // the id as the row's data; row 0 selected.
  void FillLanguages(const std::vector<std::u16string>& entries);
  // The id of the selected row, -1 when none is selected.
  int SelectedLanguage() const;
  DialogFacts Facts() const;

 private:
  QLabel* label_ = nullptr;
  QComboBox* combo_ = nullptr;
  QPushButton* ok_ = nullptr;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_CHOOSE_LANG_FORM_H_
