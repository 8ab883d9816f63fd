// Leaving the process while the library's progress window is loaded: a
// host whose application the library created, one that destroys its own
// application (with or without having run its event loop, or early, to
// make a second one), and one that never destroys it, each with the
// window shown, hidden, unloaded and never shown, must exit 0 on the
// offscreen platform and on a real X server; so must the command line
// with the window still up.
#include <gtest/gtest.h>

#include <QJsonObject>
#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "dialogs/qt/dialog_log_for_tests.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;
using norvik50::qt::testing::ReadDialogLog;

constexpr const char* kApplications[] = {"library", "host", "host-loop", "host-leaked",
                                         "host-again"};
constexpr const char* kWindows[] = {"shown", "hidden", "cleared", "never"};

// The README's progress example, with the window still up at the end.
constexpr const char* kProgressExample =
    R"({"member":"tklSendMessage","args":["Posting",{"missing":true},true,"150"]}
{"member":"tklShowWait","let":true,"args":[{"vt":"Object","type":"MousePointer","v":{}},true]}
)";

// A host that cannot end (its event loop refuses to quit) fails with 124
// instead of hanging the test.
constexpr const char* kTimeout = "timeout -k 5 60";

struct Ending {
  std::string name;  // "APPLICATION-WINDOW", or "batch"
  int status = -1;
  std::string out;  // stdout and stderr together
  std::vector<QJsonObject> log;
};

// Runs every host ending and the command line's progress example in one
// shell (so that one X server serves them all), each with a dialog log of
// its own and an empty dialog script (a modal box closes at once), and
// without XDG_RUNTIME_DIR, as under `su` or in a service.
std::vector<Ending> EndEverything(const TempFolder& temp, const std::string& platform,
                                  const std::string& wrapper) {
  std::vector<std::string> names;
  std::ofstream script(temp.File("endings.sh"));
  for (const char* application : kApplications) {
    for (const char* window : kWindows) {
      const std::string name = std::string(application) + "-" + window;
      names.push_back(name);
      script << "NORVIK50_DIALOG_LOG=" << temp.File(name + ".jsonl") << " " << kTimeout
             << " " NORVIK50_EXIT_HOST " " << application << " " << window << " > "
             << temp.File(name + ".out") << " 2>&1\n"
             << "echo $? > " << temp.File(name + ".rc") << "\n";
    }
  }
  std::ofstream(temp.File("progress.jsonl")) << kProgressExample;
  names.push_back("batch");
  script << "NORVIK50_DIALOG_LOG=" << temp.File("batch.jsonl") << " " << kTimeout
         << " " NORVIK50_TOOL " batch < " << temp.File("progress.jsonl") << " > "
         << temp.File("batch.out") << " 2>&1\n"
         << "echo $? > " << temp.File("batch.rc") << "\n";
  script.close();
  std::ofstream(temp.File("script.jsonl")).close();

  const std::string env = "env -u XDG_RUNTIME_DIR QT_QPA_PLATFORM=" + platform +
                          " TMPDIR=" + temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.File("reg") +
                          " NORVIK50_DIALOG_SCRIPT=" + temp.File("script.jsonl");
  const CommandRun run = RunCommand(env + " " + wrapper + " sh " + temp.File("endings.sh"));
  EXPECT_EQ(run.status, 0) << run.out;

  std::vector<Ending> endings;
  for (const std::string& name : names) {
    Ending e;
    e.name = name;
    const std::string rc = temp.Read(name + ".rc");
    if (!rc.empty()) e.status = std::stoi(rc);
    e.out = temp.Read(name + ".out");
    e.log = ReadDialogLog(temp.File(name + ".jsonl"));
    endings.push_back(std::move(e));
  }
  return endings;
}

// The progress window's events in the log, in order.
std::vector<std::string> WindowEvents(const Ending& e) {
  std::vector<std::string> events;
  for (const QJsonObject& line : e.log) {
    if (line.value("form").toString() == "frmMessage") {
      events.push_back(line.value("event").toString().toStdString());
    }
  }
  return events;
}

void ExpectCleanEndings(const std::vector<Ending>& endings) {
  ASSERT_EQ(endings.size(), std::size(kApplications) * std::size(kWindows) + 1);
  for (const Ending& e : endings) {
    SCOPED_TRACE(e.name);
    // 139 was a crash in the window's destructor after Qt had gone; 124 a
    // host's event loop that the window kept from quitting.
    EXPECT_EQ(e.status, 0) << e.out;
    // Each case really left the window as it says.
    const std::string window = e.name.substr(e.name.rfind('-') + 1);
    std::vector<std::string> events = WindowEvents(e);
    // A second application shows the window anew: the first one's went
    // with it.
    if (e.name.rfind("host-again-", 0) == 0) {
      ASSERT_FALSE(events.empty());
      EXPECT_EQ(events.back(), "shown");
      events.pop_back();
    }
    if (window == "shown" || e.name == "batch") {
      EXPECT_EQ(events, (std::vector<std::string>{"shown"}));
    } else if (window == "hidden") {
      EXPECT_EQ(events, (std::vector<std::string>{"shown", "hidden"}));
    } else if (window == "cleared") {
      EXPECT_EQ(events, (std::vector<std::string>{"shown", "unloaded"}));
    } else {
      EXPECT_TRUE(events.empty());
      EXPECT_TRUE(std::any_of(e.log.begin(), e.log.end(), [](const QJsonObject& line) {
        return line.value("form").toString() == "frmStdMsg";
      }));
    }
  }
}

// Where the library made the application, Qt's harmless notes stay off
// the terminal: the host prints nothing, the batch only its answers.
void ExpectQuietLibraryApplication(const std::vector<Ending>& endings) {
  for (const Ending& e : endings) {
    if (e.name.rfind("library-", 0) == 0) {
      EXPECT_EQ(e.out, "") << e.name;
    }
  }
  EXPECT_EQ(endings.back().out,
            R"({"id":null,"ok":true,"byref":{"3":{"vt":"Long","v":150}}}
{"id":null,"ok":true,"byref":{"0":{"vt":"Object","type":"MousePointer","v":{"MousePointer":11}}}}
)");
}

TEST(ProcessExitTest, EveryEndingIsCleanOnOffscreen) {
  TempFolder temp;
  const std::vector<Ending> endings = EndEverything(temp, "offscreen", "");
  ExpectCleanEndings(endings);
  ExpectQuietLibraryApplication(endings);
}

TEST(ProcessExitTest, EveryEndingIsCleanOnAnXServer) {
  if (RunCommand("command -v xvfb-run").status != 0) {
    GTEST_SKIP() << "xvfb-run is not installed (scripts/install-deps installs it)";
  }
  TempFolder temp;
  // Server numbers from 120 up: x11_tests, which ctest may run at the same
  // time, looks for a free one from 99, and two searches could pick the
  // same number. -noreset: by default the server resets whenever its last
  // client leaves, and a host connecting meanwhile is refused.
  const std::vector<Ending> endings =
      EndEverything(temp, "xcb", "xvfb-run -a -n 120 -s '-screen 0 1280x1024x24 -noreset'");
  ExpectCleanEndings(endings);
  ExpectQuietLibraryApplication(endings);
}

}  // namespace
}  // namespace norvik50::qt
