#include "dialogs/qt/qt_application.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>

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

}  // namespace

void EnsureApplication() {
  static bool prepared = false;
  if (!QApplication::instance()) {
    // The library has no loop of its own: the application object lives for
    // the rest of the process and each dialog runs its own modal loop.
    static int argc = 1;
    static char name[] = "norvik50";
    static char* argv[] = {name, nullptr};
    new QApplication(argc, argv);
  }
  if (prepared) return;
  prepared = true;
  LoadDialogFont();
}

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
