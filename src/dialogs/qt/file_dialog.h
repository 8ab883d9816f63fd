// The toolkit's file dialog (Qt's own widgets, never the platform's native
// dialog) for tklFileDialog and the folder browser of tklChoosePath. The
// checks the flags ask for are made here, and their questions and
// warnings are system boxes the dialog script can answer.
#ifndef NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_H_
#define NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_H_

#include <QFileDialog>
#include <QStringList>

#include "dialogs/qt/dialog_driver.h"
#include "norvik50/host.h"

namespace norvik50::qt {

// "Description|pattern|Description|pattern" as Qt's name filters: each
// description with its patterns in parentheses, the ones the description
// ends with (Windows writes them for the reader) replaced by the real ones.
// Patterns are separated by ";" and "*.*" is every file, as on Windows.
// A description without a pattern is dropped. "Text|*.txt;*.TXT" ->
// {"Text (*.txt *.TXT)"}.
QStringList NameFilters(const QString& filter);

class FileDialog : public QFileDialog, public PathTarget {
 public:
  // The open or save dialog for `request`.
  FileDialog(const FileDialogRequest& request, QWidget* owner);
  // The folder browser: folders only, starting in the current folder.
  FileDialog(const QString& title, QWidget* owner);

  // True after a confirmed choice.
  bool Chosen() const { return chosen_; }
  // The choice in the Windows form: one full path; several files as the
  // folder and the names, separated by NUL with the explorer flag, else
  // by blanks. "" unless chosen.
  QString WindowsResult() const { return result_; }
  DialogFacts Facts() const;

  void GoToPaths(const QStringList& windows_paths) override;

 protected:
  // Checks the choice against the flags before the dialog closes; a
  // failed check keeps it open.
  void accept() override;

 private:
  void CommonSetup();
  bool Check(const QString& file);
  bool Ask(const QString& text);
  void Warn(const QString& text);

  bool folders_only_ = false;
  bool open_ = true;
  int32_t flags_ = 0;
  bool chosen_ = false;
  QString result_;
};

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_FILE_DIALOG_H_
