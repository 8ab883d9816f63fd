// norvik50 reg as a script runs it: switches, messages and exit codes, and
// a key that survives export, delete and import.
#include <gtest/gtest.h>

#include <string>

#include "commands.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

using ToolRun = testing::CommandRun;

class RegCommandTest : public ::testing::Test {
 protected:
  testing::TempFolder temp_;
  testing::ScopedEnv registry_{"NORVIK50_REGISTRY_DIR", temp_.path()};
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};

  // Runs the tool with `args` (shell words), stdout and stderr together.
  ToolRun Reg(const std::string& args) {
    return testing::RunCommand(std::string(NORVIK50_TOOL) + " reg " + args);
  }
};

TEST_F(RegCommandTest, AddQueryExportDeleteImport) {
  const std::string key = "'HKCU\\Software\\Demo'";
  EXPECT_EQ(Reg("add " + key + " /v Count /t REG_DWORD /d 5 /f").status, 0);
  EXPECT_EQ(Reg("add " + key + " /v Name /d 'Meier & Co' /f").status, 0);
  ToolRun query = Reg("query " + key);
  EXPECT_EQ(query.status, 0);
  EXPECT_NE(query.out.find("Count    REG_DWORD    0x5"), std::string::npos) << query.out;
  EXPECT_NE(query.out.find("Name    REG_SZ    Meier & Co"), std::string::npos) << query.out;

  // An absolute Linux path is a file name, not a switch.
  const std::string file = temp_.File("demo.reg");
  EXPECT_EQ(Reg("export " + key + " " + file + " /y").status, 0);
  EXPECT_EQ(Reg("delete " + key + " /f").status, 0);
  query = Reg("query " + key);
  EXPECT_EQ(query.status, 1);
  EXPECT_NE(query.out.find("ERROR:"), std::string::npos);
  EXPECT_EQ(Reg("import " + file).status, 0);
  // Switches and value names ignore case.
  query = Reg("query " + key + " /V count");
  EXPECT_EQ(query.status, 0);
  EXPECT_NE(query.out.find("0x5"), std::string::npos) << query.out;
}

TEST_F(RegCommandTest, FailuresExitWithOne) {
  EXPECT_EQ(Reg("query 'HKCU\\Software\\Nothing'").status, 1);
  EXPECT_EQ(Reg("add 'HKCU\\Software\\Demo' /v X /t REG_DWORD /d notanumber /f").status, 1);
  EXPECT_EQ(Reg("import " + temp_.File("missing.reg")).status, 1);
  EXPECT_NE(Reg("frobnicate").status, 0);
}

TEST_F(RegCommandTest, NumbersShowAsTheirValueInHexadecimal) {
  // The stored bytes differ in order; the query shows the number each holds.
  const std::string key = "'HKCU\\Software\\Numbers'";
  struct Case {
    const char* type;
    const char* data;
    const char* shown;
  } cases[] = {
      {"REG_QWORD", "16", "Q    REG_QWORD    0x10\n"},
      {"REG_QWORD", "0x123456789abcdef0", "Q    REG_QWORD    0x123456789abcdef0\n"},
      {"REG_DWORD_BIG_ENDIAN", "1", "Q    REG_DWORD_BIG_ENDIAN    0x1\n"},
      {"REG_DWORD_BIG_ENDIAN", "0x12345678", "Q    REG_DWORD_BIG_ENDIAN    0x12345678\n"},
      {"REG_DWORD", "0x12345678", "Q    REG_DWORD    0x12345678\n"},
  };
  for (const Case& c : cases) {
    ASSERT_EQ(Reg("add " + key + " /v Q /t " + c.type + " /d " + c.data + " /f").status, 0);
    const ToolRun query = Reg("query " + key + " /v Q");
    EXPECT_NE(query.out.find(c.shown), std::string::npos) << c.type << " " << c.data << ":\n"
                                                          << query.out;
  }
}

TEST_F(RegCommandTest, HelpShowsSwitchesAsUsersTypeThem) {
  const ToolRun help = Reg("export '/?'");
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("/reg4"), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("/y"), std::string::npos) << help.out;
  EXPECT_EQ(help.out.find("--reg4"), std::string::npos) << help.out;
  const ToolRun query_help = Reg("query '/?'");
  EXPECT_NE(query_help.out.find("/ve"), std::string::npos) << query_help.out;
  EXPECT_EQ(query_help.out.find("--ve"), std::string::npos) << query_help.out;
}

TEST(RegSwitchesTest, OnlySwitchWordsAreTranslated) {
  const std::vector<std::string> in = {"norvik50", "reg", "export", "HKCU\\X", "/tmp/x.reg",
                                       "/Y",       "/ve", "/d",     "/data"};
  const std::vector<std::string> out = {"norvik50", "reg",  "export", "HKCU\\X", "/tmp/x.reg",
                                        "-y",       "--ve", "-d",     "/data"};
  EXPECT_EQ(cli::TranslateRegSwitches(in), out);
  // Other commands keep their arguments as they are.
  const std::vector<std::string> call = {"norvik50", "call", "tklMid", "/v"};
  EXPECT_EQ(cli::TranslateRegSwitches(call), call);
}

}  // namespace
}  // namespace norvik50
