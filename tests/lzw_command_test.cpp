// norvik50 lzw as a script runs it: round trip, exit codes, and a stream
// made to exhaust memory under a limit on the address space.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "codecs/lzw_bomb.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

struct ToolRun {
  int status;
  std::string out;
};

class LzwCommandTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;

  // Runs `prefix` + the tool + " lzw " + args (shell words), stdout and
  // stderr together.
  ToolRun Lzw(const std::string& args, const std::string& prefix = "") {
    const std::string command = prefix + NORVIK50_TOOL + " lzw " + args + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string out;
    char buffer[512];
    while (fgets(buffer, sizeof buffer, pipe) != nullptr) out += buffer;
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), out};
  }
  void Write(const std::string& name, const std::string& bytes) {
    std::ofstream(temp_.File(name), std::ios::binary) << bytes;
  }
};

TEST_F(LzwCommandTest, RoundTripAndExitCodes) {
  Write("plain.txt", "Rechnung 4711, Rechnung 4712, Rechnung 4713\r\n");
  EXPECT_EQ(Lzw("deflate " + temp_.File("plain.txt") + " " + temp_.File("z")).status, 0);
  EXPECT_EQ(Lzw("INFLATE " + temp_.File("z") + " " + temp_.File("back.txt")).status, 0);
  EXPECT_EQ(temp_.Read("back.txt"), temp_.Read("plain.txt"));

  Write("empty", "");
  EXPECT_EQ(Lzw("deflate " + temp_.File("empty") + " -").status, 1);  // no compressed form
  EXPECT_EQ(Lzw("inflate " + temp_.File("missing")).status, 2);
  // A mode the command does not know, none at all, or one file too many
  // are usage errors, within the documented codes.
  for (const std::string args : {"compress", "", "deflate a b c"}) {
    const ToolRun run = Lzw(args);
    EXPECT_EQ(run.status, 2) << args << ": " << run.out;
    EXPECT_NE(run.out.find("usage: norvik50 lzw deflate|inflate"), std::string::npos) << run.out;
  }
}

TEST_F(LzwCommandTest, ABombUnderAMemoryLimitEndsWithAMessage) {
  // 36,000 cycles: a 10 MB stream that stands for 1.15 GB, more than a
  // 1 GiB address space can hold.
  Write("bomb.lzw", lzw::testing::BombStream(36000));
  ASSERT_GT(std::filesystem::file_size(temp_.File("bomb.lzw")), 10'000'000u);
  const ToolRun run = Lzw("inflate " + temp_.File("bomb.lzw") + " " + temp_.File("out"),
                          "prlimit --as=1073741824 ");
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_NE(run.out.find("error 7: Out of memory"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find(std::to_string(lzw::testing::BombOutputSize(36000))), std::string::npos)
      << run.out;
  EXPECT_FALSE(std::filesystem::exists(temp_.File("out")));
}

}  // namespace
}  // namespace norvik50
