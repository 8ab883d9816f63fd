// The command line explains itself: version, usage, the members with their
// arguments from the dispatch table, one member's help, and the tour.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "member_description.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {
namespace {

using norvik50::testing::CommandRun;

CommandRun Tool(const std::string& args) {
  return norvik50::testing::RunCommand(std::string(NORVIK50_TOOL) + " " + args);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(CliHelpTest, VersionAndUsageNameTheProgram) {
  const CommandRun version = Tool("--version");
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, std::string("norvik50 ") + NORVIK50_VERSION + "\n");
  const CommandRun help = Tool("--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.out.rfind("norvik50: ", 0), 0u) << help.out;
  EXPECT_NE(help.out.find("Usage: norvik50 "), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("members"), std::string::npos) << help.out;
}

TEST(CliHelpTest, WrongCommandLinesExitWithTwo) {
  EXPECT_EQ(Tool("").status, 2);
  EXPECT_EQ(Tool("frobnicate").status, 2);
  EXPECT_EQ(Tool("call").status, 2);
  EXPECT_EQ(Tool("lzw shrink").status, 2);
}

TEST(CliHelpTest, AnUnknownCommandIsNamedWithTheCommandsThereAre) {
  struct Case {
    const char* args;
    const char* message;
  } cases[] = {
      {"frobnicate", "norvik50: unknown command 'frobnicate' (commands: demo, batch, call, "
                     "members, lzw, reg, res, store; norvik50 --help)\n"},
      {"reg quary HKCU", "norvik50 reg: unknown command 'quary' (commands: query, add, delete, "
                         "export, import; norvik50 reg --help)\n"},
      {"res lst x.dll", "norvik50 res: unknown command 'lst' (commands: list, string, get; "
                        "norvik50 res --help)\n"},
  };
  for (const Case& c : cases) {
    const CommandRun run = Tool(c.args);
    EXPECT_EQ(run.status, 2) << c.args;
    EXPECT_EQ(run.out, c.message) << c.args;
  }
  // Known commands and options pass on to their own parser.
  EXPECT_EQ(Tool("reg --help").status, 0);
  EXPECT_EQ(Tool("members tkrGetLong").status, 0);
}

// Qt and the libraries it brings cost a one-shot command more than its
// work; the forms come from a plugin opened at the first dialog.
TEST(CliHelpTest, TheCommandStartsWithoutQt) {
  const CommandRun libraries = norvik50::testing::RunCommand("ldd " NORVIK50_TOOL);
  ASSERT_EQ(libraries.status, 0) << libraries.out;
  EXPECT_NE(libraries.out.find("libc.so"), std::string::npos) << libraries.out;
  EXPECT_EQ(libraries.out.find("libQt6"), std::string::npos) << libraries.out;
  // Nor does a headless call open it: the loader names every library it opens.
  const CommandRun call = norvik50::testing::RunCommand(
      "(LD_DEBUG=libs " NORVIK50_TOOL " call tklVal 12 >/dev/null)");
  EXPECT_NE(call.out.find("calling init"), std::string::npos) << call.out;
  EXPECT_EQ(call.out.find("libQt6"), std::string::npos) << call.out;
}

// The eight documented registry members, and tkrFlushKey, which is
// marked as designed here.
TEST(CliHelpTest, MembersTkrListsTheRegistryMembers) {
  const CommandRun run = Tool("members tkr");
  EXPECT_EQ(run.status, 0);
  std::vector<std::string> signatures;
  for (const std::string& line : Lines(run.out)) {
    if (line.rfind("tkr", 0) == 0) signatures.push_back(line.substr(0, line.find('(')));
  }
  const std::vector<std::string> expected = {"tkrDeleteKey",  "tkrFindRegKeys", "tkrFlushKey",
                                             "tkrGetInteger", "tkrGetLong",     "tkrGetString",
                                             "tkrGetValue",   "tkrSetValue",    "tkrSubKeyCount"};
  EXPECT_EQ(signatures, expected) << run.out;
  EXPECT_NE(run.out.find("tkrGetLong(lRegKey: Long, sRegSubKey: String"), std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("tkrFlushKey(lRegKey: Long): Long  (designed here)\n"), std::string::npos)
      << run.out;
  EXPECT_EQ(run.out.find("(designed here)"), run.out.rfind("(designed here)"))
      << "only tkrFlushKey is marked\n"
      << run.out;
  EXPECT_NE(run.out.find("9 member forms"), std::string::npos) << run.out;
  EXPECT_EQ(Tool("members NoSuchName").status, 1);
}

TEST(CliHelpTest, SignaturesComeFromTheDispatchTable) {
  struct Case {
    const char* member;
    MemberKind kind;
    const char* signature;
  } cases[] = {
      // By reference, and an optional with its default.
      {"tklMid", MemberKind::kPropertyGet,
       "tklMid(ref Source: String, Start: Long, [ref length: Long = -1]): String"},
      // The let form carries the new value last and has no result.
      {"tklRegKey", MemberKind::kPropertyLet, "tklRegKey let(ref sNewValue: String)"},
      // A record parameter names its record type.
      {"tklSeparateFile", MemberKind::kMethod,
       "tklSeparateFile(sFullName: String, ref tFileInfo: typFileInfo): Boolean"},
      {"tklTempDir", MemberKind::kMethod, "tklTempDir(): String"},
  };
  for (const Case& c : cases) {
    const MemberInfo* info = Members().Find(c.member, c.kind);
    ASSERT_NE(info, nullptr) << c.member;
    EXPECT_EQ(MemberSignature(*info), c.signature);
  }
  // Every member form is listed once, none invented.
  EXPECT_EQ(MatchingMembers("").size(), Members().members().size());
}

TEST(CliHelpTest, CallHelpShowsOneMember) {
  const CommandRun run = Tool("call tkrGetLong --help");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.rfind("tkrGetLong(", 0), 0u) << run.out;
  EXPECT_NE(run.out.find("by value, optional, default False"), std::string::npos) << run.out;
  // A property shows both forms.
  const CommandRun mid = Tool("call tklmid --help");
  EXPECT_NE(mid.out.find("tklMid let("), std::string::npos) << mid.out;
  EXPECT_NE(mid.out.find("by reference, optional, default -1"), std::string::npos) << mid.out;
  EXPECT_EQ(Tool("call tklNoSuchMember --help").status, 1);
  // Without a member, the help of call itself.
  EXPECT_NE(Tool("call --help").out.find("MEMBER --help"), std::string::npos);
}

TEST(CliHelpTest, TheTourReadsAsATour) {
  norvik50::testing::TempFolder temp;
  const std::string env =
      "TMPDIR=" + temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.path() + " NORVIK50_LOCALE=de-DE ";
  const CommandRun run = norvik50::testing::RunCommand(env + "NORVIK50_WINDIR=" + temp.path() +
                                                       " " + NORVIK50_TOOL + " demo");
  ASSERT_EQ(run.status, 0) << run.out;
  const std::string& out = run.out;
  // Calls as a person writes them, and why surprising results are right.
  EXPECT_NE(out.find("tklVal(\"EUR 1.234,56\") = 1234.56\n"), std::string::npos) << out;
  EXPECT_NE(out.find("tklVal(\"EUR 1.234,56\") = 1.23456\n      (intended"), std::string::npos);
  EXPECT_NE(out.find("tkrSubKeyCount(-2147483647, \"SOFTWARE\\Demo\") = 1\n      (intended"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("Type mismatch"), std::string::npos);
  EXPECT_NE(out.find("on purpose"), std::string::npos);
  EXPECT_NE(out.find("Format(1234.5, \"#,##0.00\") = \"1.234,50\""), std::string::npos) << out;
  // Compressed bytes in hexadecimal pairs.
  bool hex_line = false;
  for (const std::string& line : Lines(out)) {
    hex_line = hex_line || (line.size() > 20 &&
                            line.find_first_not_of(" 0123456789ABCDEF") == std::string::npos);
  }
  EXPECT_TRUE(hex_line) << out;
  // The dialogs answered by the tour's own script, or the headless answers.
  EXPECT_NE(out.find("== Dialogs"), std::string::npos);
  EXPECT_NE(out.find("CurCount is now 150\n"), std::string::npos) << out;
  if (out.find("Real Qt forms") != std::string::npos) {
    EXPECT_NE(out.find("Value is now \"K-1017-X\""), std::string::npos) << out;
    EXPECT_NE(out.find("frmMessage shown, title \"Tour\", counter 150 of 150"), std::string::npos);
  } else {
    EXPECT_NE(out.find("tklInputValue(\"Customer number:\", \"08|Customer\", \"\", \"\") = 2"),
              std::string::npos);
  }
  // Raw JSON only in the batch step.
  const std::size_t batch_step = out.find("== Calls by name from any language");
  ASSERT_NE(batch_step, std::string::npos);
  EXPECT_GT(out.find("{\""), batch_step);
  // The Windows folder exists here, so nothing is said about installing it.
  EXPECT_EQ(out.find("not there yet"), std::string::npos);
  const CommandRun missing = norvik50::testing::RunCommand(env + "NORVIK50_WINDIR=" + temp.path() +
                                                           "/none " + NORVIK50_TOOL + " demo");
  EXPECT_NE(missing.out.find("not there yet"), std::string::npos);
}

}  // namespace
}  // namespace norvik50::cli
