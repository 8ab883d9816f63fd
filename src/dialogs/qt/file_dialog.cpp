#include "dialogs/qt/file_dialog.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSplitter>
#include <QTreeView>

#include "dialogs/qt/file_dialog_views.h"
#include "dialogs/qt/qt_application.h"
#include "dialogs/qt/system_box.h"

namespace norvik50::qt {
namespace {

namespace flag = file_dialog_flags;

QString ToQ(std::u16string_view text) {
  return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

QString WindowsPathOf(const QString& linux_path) {
  return ToQ(ToWindowsPath(QDir::cleanPath(linux_path).toStdString()).value_or(u""));
}

// The Linux path a Windows path names (found in any case); "" for a path
// no drive reaches.
QString LinuxPathOf(const QString& windows_path) {
  const auto linux_path = ToLinuxPath(windows_path.toStdU16String());
  return linux_path ? QString::fromStdString(*linux_path) : QString();
}

// Qt's own wording where Qt has one, so the texts come translated with
// Qt's catalogue; the two Qt lacks in German and English.
QString QtText(const char* source) { return QCoreApplication::translate("QFileDialog", source); }

// The two texts Qt lacks follow the dialog's language as Qt's own do.
bool SpeaksGerman(const QWidget& dialog) { return dialog.locale().language() == QLocale::German; }

QString FolderNotFound(const QString& name) {
  return QtText("%1\nDirectory not found.\nPlease verify the correct directory name was given.")
      .arg(name);
}

int YesAnswers(QMessageBox::StandardButton b) { return b == QMessageBox::Yes ? 6 : 7; }
int OkAnswers(QMessageBox::StandardButton) { return 1; }

}  // namespace

QStringList NameFilters(const QString& filter) {
  // What a description ends with in parentheses is only written for the
  // reader; Qt would take it for the patterns.
  static const QRegularExpression kTrailingPatterns(QStringLiteral("\\s*\\([^()]*\\)\\s*$"));
  QStringList filters;
  const QStringList parts = filter.split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QStringList patterns;
    for (const QString& given : parts[i + 1].split(QLatin1Char(';'))) {
      const QString pattern = given.trimmed();
      if (pattern.isEmpty()) continue;
      // Windows matches "*.*" against names without a dot too.
      patterns << (pattern == QStringLiteral("*.*") ? QStringLiteral("*") : pattern);
    }
    if (patterns.isEmpty()) continue;
    QString description = parts[i].trimmed();
    description.remove(kTrailingPatterns);
    if (!description.isEmpty()) description += QLatin1Char(' ');
    filters << description + QLatin1Char('(') + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
  }
  return filters;
}

void FileDialog::CommonSetup() {
  // Qt's own dialog everywhere: the platform's native one can freeze some
  // desktops, and only this one can be checked and scripted.
  setOption(QFileDialog::DontUseNativeDialog);
  // The replace question is asked in accept(), as a box the script reaches.
  setOption(QFileDialog::DontConfirmOverwrite);
  setWindowFlag(Qt::WindowStaysOnTopHint);
  // Names match their patterns in any case, as on Windows (*.DLL finds
  // res_de.dll).
  setFilter(filter() & ~QDir::CaseSensitive);
  // The font of the library's own forms, and sizes and dates in the
  // language the dialog speaks.
  setFont(DialogFont());
  setProxyModel(new LocalizedFileDetails(locale(), this));
  // The folder as the host receives it.
  if (auto* look_in = findChild<QComboBox*>(QStringLiteral("lookInCombo"))) {
    ShowWindowsPaths(*look_in);
  }
  // Room for the columns of the detail view and the side bar's names.
  resize(780, 460);
  if (auto* view = findChild<QTreeView*>(QStringLiteral("treeView"))) {
    // Size, type and date readable in full (Qt's defaults cut them short).
    const QFontMetrics metrics(view->font());
    view->header()->resizeSection(1, metrics.horizontalAdvance(QStringLiteral("9999.99 KiB")) + 16);
    view->header()->resizeSection(2, metrics.horizontalAdvance(QStringLiteral("PNG-Bilddatei")) + 24);
    view->header()->resizeSection(3,
                                  metrics.horizontalAdvance(QStringLiteral("23 Nov 2026 10:03:00")) + 24);
  }
  if (auto* splitter = findChild<QSplitter*>(QStringLiteral("splitter"))) {
    constexpr int kSideBarWidth = 130;
    const QList<int> sizes = splitter->sizes();
    if (sizes.size() == 2) splitter->setSizes({kSideBarWidth, sizes[0] + sizes[1] - kSideBarWidth});
  }
}

FileDialog::FileDialog(const FileDialogRequest& request, QWidget* owner)
    : QFileDialog(owner, ToQ(request.title)), open_(request.open), flags_(request.flags) {
  CommonSetup();
  setAcceptMode(open_ ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  setFileMode(open_ && (flags_ & flag::kAllowMultiSelect) != 0 ? QFileDialog::ExistingFiles
                                                                 : QFileDialog::AnyFile);
  const QStringList filters = NameFilters(ToQ(request.filter));
  if (!filters.isEmpty()) setNameFilters(filters);
  const QString start = LinuxPathOf(ToQ(request.initial_folder));
  setDirectory(!start.isEmpty() && QFileInfo(start).isDir() ? start : QDir::currentPath());
  // Only the name: the folder the dialog starts in is the initial one.
  const QString filename = ToQ(request.filename);
  const QString name = filename.mid(filename.lastIndexOf(QLatin1Char('\\')) + 1);
  if (!name.isEmpty()) selectFile(name);
}

FileDialog::FileDialog(const QString& title, QWidget* owner)
    : QFileDialog(owner, title), folders_only_(true) {
  CommonSetup();
  setFileMode(QFileDialog::Directory);
  setOption(QFileDialog::ShowDirsOnly);
  setDirectory(QDir::currentPath());
}

bool FileDialog::Ask(const QString& text) {
  QMessageBox box(QMessageBox::Warning, windowTitle(), text, QMessageBox::Yes | QMessageBox::No,
                  this);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return RunSystemBox(box, 48, &YesAnswers) == QMessageBox::Yes;
}

void FileDialog::Warn(const QString& text) {
  QMessageBox box(QMessageBox::Warning, windowTitle(), text, QMessageBox::Ok, this);
  box.setEscapeButton(QMessageBox::Ok);
  RunSystemBox(box, 48, &OkAnswers);
}

bool FileDialog::Check(const QString& file) {
  const QFileInfo info(file);
  const bool must_exist = (flags_ & flag::kFileMustExist) != 0;
  // Asking to create a file implies that its folder must be there.
  const bool folder_must_exist =
      must_exist || (flags_ & (flag::kPathMustExist | flag::kCreatePrompt)) != 0;
  if (folder_must_exist && !info.absoluteDir().exists()) {
    Warn(FolderNotFound(info.absolutePath()));
    return false;
  }
  if (!info.exists()) {
    if (must_exist) {
      Warn(QtText("%1\nFile not found.\nPlease verify the correct file name was given.")
               .arg(info.fileName()));
      return false;
    }
    if ((flags_ & flag::kCreatePrompt) != 0) {
      return Ask((SpeaksGerman(*this)
                      ? QStringLiteral("%1\nDiese Datei ist nicht vorhanden.\nSoll sie erstellt "
                                       "werden?")
                      : QStringLiteral("%1\nThis file does not exist.\nDo you want to create it?"))
                     .arg(info.fileName()));
    }
    return true;
  }
  if (!open_ && (flags_ & flag::kOverwritePrompt) != 0 &&
      !Ask(QtText("%1 already exists.\nDo you want to replace it?").arg(info.fileName()))) {
    return false;
  }
  // Write-protected: no write permission for anyone (the read-only
  // attribute, which holds for the administrator too) or none for us.
  const bool write_protected =
      (info.permissions() & (QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther)) == 0 ||
      !info.isWritable();
  if ((flags_ & flag::kNoReadOnlyReturn) != 0 && write_protected) {
    Warn((SpeaksGerman(*this)
              ? QStringLiteral("%1\nDiese Datei ist schreibgesch\u00fctzt.\nVersuchen "
                               "Sie es mit einem anderen Dateinamen.")
              : QStringLiteral("%1\nThis file is set to read-only.\nTry again with a "
                               "different file name."))
             .arg(info.fileName()));
    return false;
  }
  return true;
}

void FileDialog::accept() {
  // The host's users write Windows paths ("C:\Daten\a.txt"): one typed
  // into the name field goes through the drive map first.
  if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) {
    static const QRegularExpression kWindowsPath(QStringLiteral("^([A-Za-z]:)?\\\\"));
    const QString typed = name->text().trimmed();
    if (kWindowsPath.match(typed).hasMatch()) {
      const QString linux_path = LinuxPathOf(typed);
      if (!linux_path.isEmpty()) name->setText(linux_path);
    }
  }
  const QStringList files = selectedFiles();
  if (files.isEmpty()) return;
  if (folders_only_) {
    const QFileInfo info(files.first());
    const QString windows = info.isDir() ? WindowsPathOf(info.absoluteFilePath()) : QString();
    if (windows.isEmpty()) {
      Warn(FolderNotFound(info.fileName()));
      return;
    }
    result_ = windows;
    chosen_ = true;
    QDialog::accept();
    return;
  }
  // A folder typed or picked is opened, as in every file dialog.
  if (files.size() == 1 && QFileInfo(files.first()).isDir()) {
    setDirectory(files.first());
    if (auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) name->clear();
    return;
  }
  for (const QString& file : files) {
    if (!Check(file)) return;
  }
  const QFileInfo first(files.first());
  QString result = WindowsPathOf(first.absoluteFilePath());
  if (files.size() > 1) {
    // Several files: the folder, then each name.
    const QChar separator = (flags_ & flag::kExplorer) != 0 ? QChar(0) : QLatin1Char(' ');
    result = WindowsPathOf(first.absolutePath());
    for (const QString& file : files) result += separator + QFileInfo(file).fileName();
  }
  if (result.isEmpty()) {
    Warn(FolderNotFound(first.absolutePath()));
    return;
  }
  if ((flags_ & flag::kNoChangeDir) == 0) {
    // The folder a person went to becomes the current one, unless the
    // caller asked to keep it.
    QDir::setCurrent(first.absolutePath());
  }
  result_ = result;
  chosen_ = true;
  QDialog::accept();
}

void FileDialog::GoToPaths(const QStringList& windows_paths) {
  if (windows_paths.isEmpty()) return;
  const QString first = LinuxPathOf(windows_paths.first());
  if (first.isEmpty()) return;
  const QFileInfo info(first);
  if (windows_paths.size() == 1 && info.isDir()) {
    setDirectory(first);
    return;
  }
  auto* name = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (name == nullptr) return;
  if (!info.absoluteDir().exists()) {
    // A folder that is not there cannot be shown: the whole path is typed.
    name->setText(info.absoluteFilePath());
    return;
  }
  setDirectory(info.absolutePath());
  if (windows_paths.size() == 1) {
    name->setText(info.fileName());
    return;
  }
  // Several names in quotes, as a person types them.
  QStringList quoted;
  for (const QString& path : windows_paths) {
    quoted << QLatin1Char('"') + QFileInfo(LinuxPathOf(path)).fileName() + QLatin1Char('"');
  }
  name->setText(quoted.join(QLatin1Char(' ')));
}

DialogFacts FileDialog::Facts() const {
  DialogFacts f;
  f.form = folders_only_ ? QStringLiteral("folder")
                         : (open_ ? QStringLiteral("open") : QStringLiteral("save"));
  f.title = windowTitle();
  if (!folders_only_) f.prompt = nameFilters().join(QStringLiteral(";;"));
  f.buttons << labelText(QFileDialog::Accept) << labelText(QFileDialog::Reject);
  f.default_button = 1;
  f.cancel_button = 2;
  f.value = result_;
  f.has_value = true;
  return f;
}

}  // namespace norvik50::qt
