// What the file dialog shows in place of Qt's own details: sizes and dates
// in the dialog's language (Qt's file model writes them in the process's
// locale, whatever the dialog speaks), and folders as the host receives
// them, in their Windows form through the drive map ("Z:\tmp").
#ifndef NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_VIEWS_H_
#define NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_VIEWS_H_

#include <QComboBox>
#include <QIdentityProxyModel>
#include <QLocale>
#include <QString>

namespace norvik50::qt {

// Over Qt's file model: the size column as `locale` writes a data size
// ("6,93 KiB" in German, nothing for a folder) and the date column in the
// locale's short form ("25.11.26 14:03"). Everything else passes through.
class LocalizedFileDetails final : public QIdentityProxyModel {
 public:
  LocalizedFileDetails(const QLocale& locale, QObject* parent);
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  QLocale locale_;
};

// The Windows form of a Linux folder ("/tmp" -> "Z:\tmp"); the text as it
// was when no drive reaches it or it is no absolute path.
QString WindowsFormOf(const QString& linux_path);

// Makes `combo` (the dialog's "look in" list of folders) show each folder
// in its Windows form, in the box and in its list.
void ShowWindowsPaths(QComboBox& combo);

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_VIEWS_H_
