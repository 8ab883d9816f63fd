// `norvik50 batch` asks the Qt dialogs, loaded when first needed, for the
// screens of the desktop: a form stored off them comes back on them, and
// without a display it comes back as stored.
#include <gtest/gtest.h>

#include <fstream>

#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::qt {
namespace {

using namespace norvik50::testing;

std::string Placed(const std::string& platform_env) {
  TempFolder temp;
  std::ofstream(temp.File("in.jsonl"))
      << R"({"member":"tklSaveWindowPos","args":[{"vt":"Object","type":"Form","v":{"name":"frmA","left":90000,"top":1200,"width":9000,"height":6000}}]}
{"member":"tklLoadWindowPos","args":[{"vt":"Object","type":"Form","v":{"name":"frmA"}}]}
)";
  const std::string env =
      platform_env + " TMPDIR=" + temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.File("reg");
  const CommandRun run =
      RunCommand(env + " " NORVIK50_TOOL " batch < " + temp.File("in.jsonl") + " 2>/dev/null");
  EXPECT_EQ(run.status, 0) << run.out;
  return run.out;
}

TEST(FormsBatchScreensTest, AFormOffTheScreenComesBackOnIt) {
  // The offscreen platform's one screen is 800 pixels wide: 12000 twips.
  EXPECT_NE(Placed("QT_QPA_PLATFORM=offscreen").find(R"("left":3000,"top":1200,"width":9000)"),
            std::string::npos);
  // No display at all: the screens are unknown, the position as stored.
  EXPECT_NE(Placed("env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM")
                .find(R"("left":90000,"top":1200,"width":9000)"),
            std::string::npos);
}

}  // namespace
}  // namespace norvik50::qt
