// A host that ends its process the ways hosts do while the library's
// progress window is in each of its states. The exit tests run it as a
// child process and demand a clean exit.
//
//   exit_host APPLICATION WINDOW
//   APPLICATION  library     the first dialog creates the application
//                host        the host's application, destroyed when main
//                            returns, without an event loop
//                host-loop   the host's application, whose event loop ran
//                            and ended before main returns
//                host-leaked the host's application, never destroyed
//                host-again  the host's application destroyed early; a
//                            second one then shows the window again
//   WINDOW       shown       the progress window is visible at the end
//                hidden      hidden by tklHideMessage
//                cleared     unloaded by tklClearMessage
//                never       never shown (a modal box was)
#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"

namespace {

using norvik50::LIB;
using norvik50::Variant;

// Leaves the progress window as `window` says; false for an unknown word.
bool LeaveWindow(LIB& lib, const std::string& window) {
  if (window == "never") {
    // A modal box, closed at once by the used-up dialog script (or as it
    // would be by a person), so that Qt has shown windows.
    lib.tklMsgBox(u"Fertig", u"");
    return true;
  }
  Variant count(int32_t{3});
  lib.tklSendMessage(Variant(u"Kopiere Daten"), Variant(u"Sicherung"), Variant(true), &count);
  if (window == "shown") return true;
  if (window == "hidden") {
    lib.tklHideMessage();
    return true;
  }
  if (window == "cleared") {
    lib.tklClearMessage();
    return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr,
                 "usage: exit_host library|host|host-loop|host-leaked "
                 "shown|hidden|cleared|never\n");
    return 2;
  }
  const std::string application = argv[1];
  const std::string window = argv[2];
  std::optional<QApplication> host_app;
  if (application == "host" || application == "host-loop" || application == "host-again") {
    host_app.emplace(argc, argv);
  } else if (application == "host-leaked") {
    new QApplication(argc, argv);
  } else if (application != "library") {
    std::fprintf(stderr, "exit_host: unknown application '%s'\n", argv[1]);
    return 2;
  }
  norvik50::InstallQtDialogs();
  LIB lib;
  if (!LeaveWindow(lib, window)) {
    std::fprintf(stderr, "exit_host: unknown window state '%s'\n", argv[2]);
    return 2;
  }
  if (application == "host-loop") {
    QTimer::singleShot(0, &*host_app, &QCoreApplication::quit);
    host_app->exec();
  }
  if (application == "host-again") {
    host_app.reset();
    host_app.emplace(argc, argv);
    lib.tklSendMessage(Variant(u"Wieder da"));
  }
  return 0;
}
