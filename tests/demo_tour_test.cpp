// The tour as two users take it on one machine, and a tour that meets an
// answer it does not expect.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "demo_tour.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using norvik50::testing::CommandRun;
using norvik50::testing::RunCommand;

bool Empty(const std::string& folder) {
  return std::filesystem::is_empty(std::filesystem::path(folder));
}

// A shared temporary folder as /tmp is one: everybody may write, nobody may
// remove what others made. Runs the tour in it as root and then as user
// 65534 (an ordinary user who owns nothing there); as an ordinary user the
// tour runs twice as that user. Each tour must pass and leave nothing behind.
TEST(DemoTourTest, TwoUsersOneAfterTheOtherBothPassAndLeaveNothing) {
  norvik50::testing::TempFolder temp;
  ASSERT_EQ(::chmod(temp.path().c_str(), 01777), 0);
  const std::string env = "env -u NORVIK50_REGISTRY_DIR TMPDIR=" + temp.path() + " ";
  const std::string second_user =
      ::geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
  for (const std::string& who : {std::string(), second_user}) {
    const CommandRun run = RunCommand(who + env + NORVIK50_TOOL " demo");
    EXPECT_EQ(run.status, 0) << who << run.out;
    EXPECT_EQ(run.out.find("!!"), std::string::npos) << who << run.out;
    EXPECT_NE(run.out.find("tkrSetValue(-2147483647, \"SOFTWARE\\Demo\", \"Ratio\", 2.5) = True"),
              std::string::npos)
        << who << run.out;
    EXPECT_TRUE(Empty(temp.path())) << who;
  }
}

TEST(DemoTourTest, AnUnexpectedAnswerIsMarkedAndCounted) {
  LIB lib;
  Tour tour{lib, "", "en-US"};
  std::ostringstream out;
  auto* const old = std::cout.rdbuf(out.rdbuf());
  ShowCall(tour, "tklRound", {Variant(2.675), Variant(int32_t{2})}, "2.68");
  ShowCall(tour, "tklRound", {Variant(2.675), Variant(int32_t{2})}, "2.67");
  ShowCall(tour, "tklNoSuchMember", {}, "1");
  ShowCall(tour, "tklNoSuchMember", {}, "error 438");
  std::cout.rdbuf(old);
  EXPECT_EQ(tour.unexpected, 2) << out.str();
  EXPECT_NE(out.str().find("      !! tklRound: the tour expected 2.67, got 2.68\n"),
            std::string::npos)
      << out.str();
  EXPECT_NE(out.str().find("!! tklNoSuchMember: the tour expected 1, got error 438\n"),
            std::string::npos)
      << out.str();
}

}  // namespace
}  // namespace norvik50::cli
