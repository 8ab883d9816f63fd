#include "dialogs/qt/qt_application.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPointer>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "dialogs/qt/qt_message_filter.h"

namespace norvik50::qt {
namespace {

// Where no Tahoma is installed, a metric-compatible one shipped by
// Debian's fonts-wine keeps the twip layouts as designed. Only the regular
// face: that package's bold face draws thinner than the regular one, while
// Qt's emboldened regular face looks bold as it should.
constexpr const char* kTahomaFiles[] = {"/usr/share/wine/fonts/tahoma.ttf"};

void LoadDialogFont() {
  if (QFontDatabase::families().contains(QStringLiteral("Tahoma"))) return;
  for (const char* file : kTahomaFiles) {
    if (QFile::exists(QString::fromLatin1(file))) {
      QFontDatabase::addApplicationFont(QString::fromLatin1(file));
    }
  }
}

// The library's windows that outlive a call, and the application whose end
// they wait for. Never destroyed: it is used while the process exits, in
// whatever order the statics of the library and of Qt go.
struct Lifetime {
  std::vector<QPointer<QWidget>> windows;
  QPointer<QCoreApplication> watched;  // the application whose end is hooked
  bool ending = false;                 // the watched application is being destroyed
  bool exit_hooked = false;
};

Lifetime& Life() {
  static Lifetime* life = new Lifetime;
  return *life;
}

void UnloadWindows() {
  std::vector<QPointer<QWidget>> windows;
  windows.swap(Life().windows);
  for (const QPointer<QWidget>& window : windows) delete window.data();
}

// Qt calls this from the application's destructor, once QApplication's own
// part has torn down the native windows: the widgets go now, while the
// application object is still there, and are never touched again.
void ApplicationDestroyed() {
  UnloadWindows();
  Life().ending = true;
}

// At exit, for an application that lives on (the library's own, or one a
// host never destroys): the windows go before the statics they rely on.
// The application itself is left to the end of the process: destroying it
// here reaches Qt statics (the font cache) that went before.
void UnloadWindowsAtExit() {
  if (ApplicationUsable()) UnloadWindows();
}

// Hooks the end of the current application once per application object:
// the host's loop ending, and the object's destruction.
void WatchApplication() {
  Lifetime& life = Life();
  QCoreApplication* app = QCoreApplication::instance();
  if (app == nullptr || life.watched == app) return;
  life.watched = app;
  life.ending = false;
  QObject::connect(app, &QCoreApplication::aboutToQuit, app, &UnloadWindows);
  qAddPostRoutine(&ApplicationDestroyed);
}

}  // namespace

void EnsureApplication() {
  static bool prepared = false;
  if (!QApplication::instance()) {
    // The library has no loop of its own: the application object lives
    // until the process exits and each dialog runs its own modal loop.
    static int argc = 1;
    static char name[] = "norvik50";
    static char* argv[] = {name, nullptr};
    // Before the application exists: its platform speaks while it starts.
    FilterBenignQtMessages();
    new QApplication(argc, argv);
  }
  WatchApplication();
  if (prepared) return;
  prepared = true;
  LoadDialogFont();
}

void UnloadAtApplicationEnd(QWidget* window) {
  if (window == nullptr) return;
  WatchApplication();
  Lifetime& life = Life();
  life.windows.emplace_back(window);
  if (!life.exit_hooked) {
    life.exit_hooked = true;
    // Exit handlers and statics go in the reverse order of their
    // registration. Registered now, after the application, its platform
    // plugin and a first window were built, this runs before the statics
    // they set up are destroyed; left to the static user interface's own
    // destruction, the window would be deleted after them and crash the
    // process on its way out.
    std::atexit(&UnloadWindowsAtExit);
  }
}

bool ApplicationUsable() { return QCoreApplication::instance() != nullptr && !Life().ending; }

QFont DialogFont(double points, bool bold) {
  QFont font(QStringLiteral("Tahoma"));
  font.setPointSizeF(points);
  font.setBold(bold);
  return font;
}

std::unique_ptr<QWindow> ForeignWindow(int64_t window_id) {
  if (window_id == 0 || QGuiApplication::platformName() != QStringLiteral("xcb")) return nullptr;
  return std::unique_ptr<QWindow>(QWindow::fromWinId(static_cast<WId>(window_id)));
}

}  // namespace norvik50::qt
