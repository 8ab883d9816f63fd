// Qt's harmless platform notes stay off the terminal, everything else Qt
// says gets through: the rule per message, the handler chain, and the
// gallery's output in a child process without XDG_RUNTIME_DIR (a batch's
// is checked with the process endings).
#include "dialogs/qt/qt_message_filter.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <string>

#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;

TEST(QtMessageFilterTest, OnlyTheKnownNotesAreBenign) {
  struct Case {
    QtMsgType type;
    const char* message;
    bool benign;
  };
  const Case cases[] = {
      {QtWarningMsg, "QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to '/tmp/runtime-ann'",
       true},
      {QtWarningMsg, "This plugin does not support propagateSizeHints()", true},
      // Qt ends some of its notes with a line break.
      {QtWarningMsg, "This plugin does not support propagateSizeHints()\n", true},
      {QtDebugMsg, "This plugin does not support propagateSizeHints()", true},
      // The same words at a graver level are never dropped.
      {QtCriticalMsg, "This plugin does not support propagateSizeHints()", false},
      {QtFatalMsg, "QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to '/tmp/x'", false},
      // A real problem with the runtime folder is worth reading.
      {QtWarningMsg,
       "QStandardPaths: wrong permissions on runtime directory /tmp/x, 0755 "
       "instead of 0700",
       false},
      // Other things a plugin cannot do, and anything else, get through.
      {QtWarningMsg, "This plugin does not support raise()", false},
      {QtWarningMsg, "QFont::setPointSizeF: Point size <= 0 (0.000000), must be greater than 0",
       false},
      {QtWarningMsg, "", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsBenignQtMessage(c.type, QString::fromLatin1(c.message)), c.benign) << c.message;
  }
}

QStringList& Received() {
  static QStringList received;
  return received;
}

void Receive(QtMsgType, const QMessageLogContext&, const QString& message) {
  Received() << message;
}

TEST(QtMessageFilterTest, EverythingElseReachesTheHandlerBefore) {
  qInstallMessageHandler(&Receive);
  FilterBenignQtMessages();
  FilterBenignQtMessages();  // once more: still one filter, still chained
  qWarning("This plugin does not support propagateSizeHints()");
  qWarning("QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to '/tmp/runtime-ann'");
  qWarning("QXcbConnection: Could not connect to display");
  qCritical("This plugin does not support propagateSizeHints()");
  qInstallMessageHandler(nullptr);
  EXPECT_EQ(Received(), (QStringList{"QXcbConnection: Could not connect to display",
                                     "This plugin does not support propagateSizeHints()"}));
}

// The command line on offscreen without a runtime folder, stdout and
// stderr together, as a user's terminal or redirected output shows them.
CommandRun RunQuietly(const TempFolder& temp, const std::string& arguments) {
  return RunCommand("env -u XDG_RUNTIME_DIR QT_QPA_PLATFORM=offscreen TMPDIR=" + temp.path() +
                    " NORVIK50_REGISTRY_DIR=" + temp.File("reg") + " " NORVIK50_TOOL " " +
                    arguments);
}

TEST(QtMessageFilterTest, TheGalleryPrintsOnlyWhatItMade) {
  TempFolder temp;
  const std::string folder = temp.File("gallery");
  const CommandRun run = RunQuietly(temp, "demo --gallery " + folder);
  EXPECT_EQ(run.status, 0);
  // No "propagateSizeHints()" per picture, no runtime folder note.
  EXPECT_EQ(run.out, "20 pictures in " + folder + "\n");
}

}  // namespace
}  // namespace norvik50::qt
