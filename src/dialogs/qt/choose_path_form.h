// frmChoosePath: a drive list, a folder tree and the path field kept in
// step, OK, Cancel and "new folder". The result starts as Cancel (2); only
// OK makes it 1, so the close box and Escape choose nothing.
#ifndef NORVIK50_SRC_DIALOGS_QT_CHOOSE_PATH_FORM_H_
#define NORVIK50_SRC_DIALOGS_QT_CHOOSE_PATH_FORM_H_

#include <QComboBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/form_base.h"
#include "norvik50/host.h"

namespace norvik50::qt {

class ChoosePathForm : public FormBase, public PathTarget {
 public:
  ChoosePathForm(ChoosePathRequest request, QWidget* owner);

  // 1 after OK, else 2.
  int Result() const { return result_; }
  // The chosen folder, Windows-style; "" unless confirmed.
  QString ChosenPath() const { return chosen_; }
  // The folder the tree shows, as a Linux path.
  QString Folder() const { return folder_; }
  DialogFacts Facts() const;

  QComboBox* DriveList() const { return drives_; }
  QTreeView* FolderTree() const { return tree_; }
  QLineEdit* PathField() const { return path_; }

  // The script moves the tree (and so the drive and the field) to the
  // first path when it is an existing folder.
  void GoToPaths(const QStringList& windows_paths) override;

 private:
  // Moves the tree to `linux_folder`; the drive list and the path field
  // follow. False (nothing moved) when it is not an existing folder.
  bool SetFolder(const QString& linux_folder);
  void DriveChosen(int index);
  void Confirm();
  void NewFolder();

  ChoosePathRequest request_;
  int result_ = 2;
  QString chosen_;
  QString folder_;
  QFileSystemModel* model_ = nullptr;
  QComboBox* drives_ = nullptr;
  QTreeView* tree_ = nullptr;
  QLabel* label_ = nullptr;
  QLineEdit* path_ = nullptr;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* new_folder_ = nullptr;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_CHOOSE_PATH_FORM_H_
