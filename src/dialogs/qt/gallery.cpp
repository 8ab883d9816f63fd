// The dialog gallery: every form in German and English as PNG pictures.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPixmap>
#include <QTimer>
#include <QTreeView>

#include "dialogs/input_request.h"
#include "dialogs/message_buttons.h"
#include "dialogs/qt/dialog_driver.h"
#include "dialogs/qt/progress_form.h"
#include "dialogs/qt/qt_application.h"
#include "norvik50/qt_dialogs.h"

namespace norvik50 {
namespace {

struct Language {
  int16_t id;
  const char* code;
};

MessageBoxRequest Request(std::u16string form, std::u16string title, std::u16string prompt,
                          std::u16string detail, int32_t style, int16_t language) {
  MessageBoxRequest r;
  r.form = std::move(form);
  r.title = std::move(title);
  r.prompt = std::move(prompt);
  r.detail = std::move(detail);
  FillButtons(r, style, language);
  return r;
}

// The progress window is not modal: it is shown, drawn and taken at once.
bool SaveProgressWindow(const QString& file, bool german) {
  qt::ProgressForm form;
  MessageWindowState state;
  state.title = u"norvik50";
  state.prompt = german ? u"{\\qc Rechnungen werden gebucht \\'85\\par Beleg {\\b 37} von 120}"
                        : u"{\\qc Posting invoices \\'85\\par Document {\\b 37} of 120}";
  state.counter_visible = true;
  state.counter_max = 120;
  state.counter_value = 37;
  state.visible = true;
  state.showing = true;
  form.Apply(state);
  QCoreApplication::processEvents();
  return form.grab().save(file);
}

// True when every folder view of `dialog` that has a current folder shows
// it inside its viewport.
bool CurrentFoldersInView(QDialog& dialog) {
  for (const QTreeView* view : dialog.findChildren<QTreeView*>()) {
    const QModelIndex current = view->currentIndex();
    if (!current.isValid() || !view->isVisible()) continue;
    if (!view->viewport()->rect().contains(view->visualRect(current))) return false;
  }
  return true;
}

// Folders are read in the background and sorted as they arrive, and the
// view scrolls to the current folder once the folders on its way are
// there: the picture waits at least 400 ms and then until the current
// folder is in view (at most 5 s), however busy the machine is.
void WaitForFolders(QDialog& dialog) {
  QElapsedTimer waited;
  waited.start();
  while (waited.elapsed() < 5000 && (waited.elapsed() < 400 || !CurrentFoldersInView(dialog))) {
    QEventLoop pause;
    QTimer::singleShot(50, &pause, &QEventLoop::quit);
    pause.exec();
  }
}

}  // namespace

int RenderDialogGallery(const std::string& folder) {
  qt::EnsureApplication();
  const QString dir = QString::fromStdString(folder);
  QDir().mkpath(dir);
  int written = 0;
  QString name;
  qt::SetShownHook([&](QDialog& dialog) {
    if (dynamic_cast<qt::PathTarget*>(&dialog) != nullptr) WaitForFolders(dialog);
    if (dialog.grab().save(dir + QStringLiteral("/") + name + QStringLiteral(".png"))) ++written;
    dialog.close();
  });
  const auto ui = QtUserInterface();
  for (const Language& lang : {Language{1, "de"}, Language{2, "en"}}) {
    const bool german = lang.id == 1;
    const QString suffix = QStringLiteral("_") + QString::fromLatin1(lang.code);
    name = QStringLiteral("frmMsgBox") + suffix;
    ui->ShowMessageBox(
        Request(u"frmMsgBox", u"norvik50",
                german ? u"{{\\colortbl;\\red0\\green0\\blue192;}{\\b\\fs20 Speichern?}\\par Die "
                         u"\\cf1 Rechnung 2024-117\\cf0  wurde ge\\'e4ndert.}"
                       : u"{{\\colortbl;\\red0\\green0\\blue192;}{\\b\\fs20 Save?}\\par The "
                         u"\\cf1 invoice 2024-117\\cf0  was changed.}",
                u"", 3 + 32 + 256, lang.id));
    name = QStringLiteral("frmStdMsg") + suffix;
    ui->ShowMessageBox(Request(u"frmStdMsg", u"LIB:tkrGetValue()",
                               german ? u"Laufzeitfehler '5':" : u"Runtime error '5':",
                               german ? u"Ung\u00fcltiger Prozeduraufruf oder ung\u00fcltiges "
                                        u"Argument"
                                      : u"Invalid procedure call or argument",
                               48, lang.id));
    name = QStringLiteral("frmStdMsg_retry") + suffix;
    ui->ShowMessageBox(Request(u"frmStdMsg", u"norvik50",
                               german ? u"Die Datei ist gesperrt." : u"The file is locked.",
                               u"C:\\Daten\\Kunden.dat", 2 + 16 + 512, lang.id));
    name = QStringLiteral("frmAnswer") + suffix;
    ui->GetAnswer(german ? u"Beleg schon gebucht" : u"Document already posted",
                  german ? u"Wie soll es weitergehen?" : u"How do you want to go on?", u"",
                  german ? std::vector<std::u16string>{u"&Stornieren", u"&Verwerfen", u"Nichts tun"}
                         : std::vector<std::u16string>{u"&Storno", u"&Void", u"Do nothing"});
    name = QStringLiteral("frmInput") + suffix;
    std::u16string typed;
    ui->ShowInput(MakeInputRequest(german ? u"Bitte geben Sie die Kundennummer ein:"
                                          : u"Please enter the customer number:",
                                   german ? u"08|Kunde" : u"08|Customer", Variant(u"1"), u"K-1017",
                                   false, lang.id),
                  typed);
    if (SaveProgressWindow(dir + QStringLiteral("/frmMessage") + suffix + QStringLiteral(".png"),
                           german)) {
      ++written;
    }
    name = QStringLiteral("system") + suffix;
    // The system box and the file dialog speak the library's language.
    ui->AskYesNo(german ? u"Programm beenden?" : u"Quit the program?", u"norvik50", true, lang.id);
    // The folder chooser shows the gallery's own folder, so every picture
    // looks alike wherever it is taken.
    const std::u16string here = ToWindowsPath(dir.toStdString()).value_or(u"Z:\\");
    name = QStringLiteral("frmChoosePath") + suffix;
    ui->ChoosePath(MakeChoosePathRequest(here, u"", lang.id));
    name = QStringLiteral("fileOpen") + suffix;
    FileDialogRequest open;
    // The pictures taken so far are offered: "*.PNG" finds them in any case.
    open.filter = german ? u"Bilder (*.PNG)|*.PNG|Alle Dateien (*.*)|*.*"
                         : u"Pictures (*.PNG)|*.PNG|All files (*.*)|*.*";
    open.title = german ? u"Bild \u00f6ffnen" : u"Open picture";
    open.flags = 4096;
    open.initial_folder = here;
    open.language = lang.id;
    std::u16string chosen;
    ui->ShowFileDialog(open, chosen);
    // The folder browser starts in the current folder: the gallery's, for
    // as long as it is shown.
    name = QStringLiteral("folderBrowse") + suffix;
    const QString current = QDir::currentPath();
    QDir::setCurrent(dir);
    ui->BrowseForFolder(german ? u"Ablage w\u00e4hlen" : u"Choose the filing folder", lang.id);
    QDir::setCurrent(current);
    if (german) {
      // The zoom editor has one designed language.
      name = QStringLiteral("frmZoom");
      ZoomRequest zoom;
      zoom.title = u"Bemerkung";
      zoom.text = u"Lieferung nur vormittags.\nBitte beim Pf\u00f6rtner melden.";
      zoom.width_twips = 7500;
      zoom.height_twips = 4200;
      ui->ShowZoom(zoom, typed);
    }
    if (german) {
      name = QStringLiteral("frmChooseLang");
      ui->ChooseLanguage({u"1;Deutsch;DE", u"2;English;EN", u"3;Fran\u00e7ais;FR"});
    }
  }
  qt::SetShownHook(nullptr);
  return written;
}

}  // namespace norvik50
