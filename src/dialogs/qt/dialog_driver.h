// Runs a form modally and makes it drivable: the dialog script acts on the
// real widgets (NORVIK50_DIALOG_SCRIPT), the dialog log records what was
// shown and answered (NORVIK50_DIALOG_LOG), and a hook lets the gallery
// take a picture of each form once it is on screen.
#ifndef NORVIK50_SRC_DIALOGS_QT_DIALOG_DRIVER_H_
#define NORVIK50_SRC_DIALOGS_QT_DIALOG_DRIVER_H_

#include <QDialog>
#include <QString>
#include <QStringList>
#include <functional>

namespace norvik50::qt {

// What the dialog log records about one dialog.
struct DialogFacts {
  QString form;
  QString title;
  QString prompt;  // plain text
  QString detail;
  QStringList buttons;     // captions left to right, with their "&"
  int default_button = 0;  // 1-based, 0 for none
  int cancel_button = 0;
  int symbol = 0;
  // Forms with a text box: the text it shows when the form closes.
  QString value;
  bool has_value = false;
  // The progress window: what happened to it and its counter bar.
  QString event;  // "shown", "hidden", "unloaded"
  bool has_counter = false;
  bool counter_visible = false;
  int counter_value = 0;
  int counter_max = 0;
  // What the dialog script could not act out on this dialog.
  QStringList warnings;
};

// A form the dialog script can point at paths (the "path" of a script
// line, a text or a list of texts, Windows-style): the folder chooser
// moves to the folder, a file dialog goes to the file's folder and puts
// the names into its name field. Nothing is confirmed by that alone.
class PathTarget {
 public:
  virtual ~PathTarget() = default;
  virtual void GoToPaths(const QStringList& windows_paths) = 0;
};

// The classic window frame used where the window system reports none
// (offscreen): caption 18, sizing frame 4 pixels.
inline constexpr int kCaptionHeight = 18;
inline constexpr int kSizingFrame = 4;
inline constexpr int kMenuBarHeight = 19;
inline constexpr int kTwipsPerPixel = 15;

// Shows `dialog` modally and returns when it has hidden itself. With a
// dialog script, the next line is acted out first: one step (an object)
// or a list of steps in order, each with its "path", then its "keys",
// "text", "click" (a caption, a position or a list of them) and "close".
// A dialog still open afterwards is closed by its close box; with the
// script used up, the dialog is closed at once. `facts` is asked after
// the dialog closed, `answer` is what the member returns; both go to the
// dialog log, with a warning for each part of the line left undone
// because the dialog had closed, and for a line that is not steps.
void RunModal(QDialog& dialog, const std::function<DialogFacts()>& facts,
              const std::function<int()>& answer);

// Appends one line for a window that is not run modally (the progress
// window) to the dialog log; `answer` is what the log records as such.
void LogWindow(const DialogFacts& facts, const QWidget& window, int answer);

// Called with each dialog once it is shown, before any scripted action.
using ShownHook = std::function<void(QDialog&)>;
void SetShownHook(ShownHook hook);

// Forgets the lines already taken, so that the next dialog reads the
// script file afresh from its first line (tests change the file).
void RestartDialogScript();

}  // namespace norvik50::qt

#endif  // NORVIK50_SRC_DIALOGS_QT_DIALOG_DRIVER_H_
