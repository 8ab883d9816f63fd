// A window system that cannot be reached: every way the environment can
// name one that is not there. The command answers headless, says why once,
// and every later line is answered; before, Qt ended the process at the
// first dialog (exit 134) and the rest of the batch went unanswered.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using norvik50::testing::CommandRun;
using norvik50::testing::RunCommand;
using norvik50::testing::TempFolder;

TEST(PlatformProbeTest, AnUnreachableDisplayAnswersHeadless) {
  struct Case {
    const char* environment;
    const char* reason;
  } cases[] = {
      // A stale remote session: nothing listens there.
      {"DISPLAY=:97", "the X server of DISPLAY=:97 cannot be reached"},
      {"DISPLAY=localhost:79.0", "the X server of DISPLAY=localhost:79.0 cannot be reached"},
      {"QT_QPA_PLATFORM=xcb", "DISPLAY is not set"},
      {"QT_QPA_PLATFORM=xcb DISPLAY=:97", "cannot be reached"},
      {"QT_QPA_PLATFORM=no-such-platform", "Qt has no platform plugin \"no-such-platform\""},
      {"QT_QPA_PLATFORM='no-such-platform;xcb'", "DISPLAY is not set"},
      {"WAYLAND_DISPLAY=wayland-97", "DISPLAY is not set"},
      {"XDG_SESSION_TYPE=wayland", "DISPLAY is not set"},
  };
  TempFolder temp;
  const std::string requests =
      R"({"id":1,"member":"tklMsgBox","args":["Saved","",0,"Probe"]}
{"id":2,"member":"tklInputValue","args":["Name:","Probe",""]}
{"id":3,"member":"tklGetFullPath","args":["C:\\Temp","x.LOG"]}
)";
  {
    std::ofstream(temp.File("in.jsonl")) << requests;
  }
  for (const Case& c : cases) {
    const CommandRun run = RunCommand(
        "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM -u XDG_SESSION_TYPE "
        "NORVIK50_REGISTRY_DIR=" +
        temp.File("reg") + " TMPDIR=" + temp.path() + " " + c.environment +
        " timeout 30 " NORVIK50_TOOL " batch < " + temp.File("in.jsonl"));
    EXPECT_EQ(run.status, 0) << c.environment << "\n" << run.out;
    EXPECT_NE(run.out.find(R"({"id":1,"ok":true,"result":{"vt":"Long","v":10}})"),
              std::string::npos)
        << c.environment << "\n" << run.out;
    EXPECT_NE(run.out.find(R"({"id":2,"ok":true,"result":{"vt":"Long","v":2})"),
              std::string::npos)
        << c.environment << "\n" << run.out;
    EXPECT_NE(run.out.find(R"({"id":3,"ok":true)"), std::string::npos) << c.environment;
    // Said once, whatever the number of dialogs.
    const std::size_t said = run.out.find("norvik50: no dialogs can be shown: ");
    EXPECT_NE(said, std::string::npos) << c.environment << "\n" << run.out;
    EXPECT_EQ(run.out.find("no dialogs can be shown", said + 20), std::string::npos);
    EXPECT_NE(run.out.find(c.reason), std::string::npos) << c.environment << "\n" << run.out;
  }
}

}  // namespace
}  // namespace norvik50
