// norvik50 res end to end on the resource libraries the build makes.
#include <gtest/gtest.h>

#include <string>

#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

testing::CommandRun Res(const std::string& args, const std::string& environment = "") {
  return testing::RunCommand(environment + "NORVIK50_LOCALE=en-US " + std::string(NORVIK50_TOOL) +
                             " res " + args);
}

std::string Fixture(const std::string& name) {
  return std::string(NORVIK50_FIXTURE_DIR) + "/" + name;
}

TEST(ResCommandTest, ListsEveryResource) {
  const auto run = Res("list " + Fixture("multi32.dll"));
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("(PE32)"), std::string::npos);
  EXPECT_NE(run.out.find("FORMS                MAIN                 0x0409    77"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("#6 STRING            #19                  0x0000    46"),
            std::string::npos);
}

TEST(ResCommandTest, StringsAndResources) {
  EXPECT_EQ(Res("string " + Fixture("Res_DE.dll") + " 100").out, "Größe ändern\n");
  // The loader's choice for the locale: English for en-US.
  EXPECT_EQ(Res("string " + Fixture("multi64.dll") + " 200").out, "Hello\n");
  EXPECT_EQ(Res("get " + Fixture("multi64.dll") + " '#10' '#7'").out, "abc<def>");
  EXPECT_EQ(Res("get " + Fixture("multi64.dll") + " forms main").out.substr(0, 11), "<resources>");
}

// A person at a terminal reads the document as a resource call reads it,
// in UTF-8; a redirected output (and --raw) keeps the exact bytes: here a
// UTF-8 byte-order mark followed by the Windows-1252 byte 0xDC.
TEST(ResCommandTest, TheTourLibrariesOnATerminalAndRedirected) {
  testing::TempFolder temp;
  const auto written =
      testing::RunCommand(std::string(NORVIK50_TOOL) + " demo --libraries " + temp.File("res"));
  ASSERT_EQ(written.status, 0) << written.out;
  const std::string library = temp.File("res/Res_DE.dll");
  EXPECT_EQ(Res("string " + library + " 100").out, "Größe ändern\n");
  // script(1) gives the command a terminal; it writes its own CR LF.
  const auto shown = testing::RunCommand("script -qec \"NORVIK50_LOCALE=en-US " +
                                         std::string(NORVIK50_TOOL) + " res get " + library +
                                         " XML '#100'\" /dev/null");
  EXPECT_EQ(shown.status, 0) << shown.out;
  EXPECT_EQ(shown.out.rfind("<resources>", 0), 0u) << shown.out;
  EXPECT_NE(shown.out.find("text=\"Übersicht\""), std::string::npos) << shown.out;
  const std::string bytes = Res("get " + library + " XML '#100'").out;
  EXPECT_EQ(bytes.substr(0, 14), "\xEF\xBB\xBF<resources>");
  EXPECT_NE(bytes.find("text=\"\xDC" "bersicht\""), std::string::npos);
  const auto raw = testing::RunCommand("script -qec \"" + std::string(NORVIK50_TOOL) +
                                       " res get --raw " + library + " XML '#100'\" /dev/null");
  EXPECT_EQ(raw.out.substr(0, 3), "\xEF\xBB\xBF") << raw.out;
}

// A FIFO nobody writes and a device that never ends are no libraries: the
// command says so at once (timeout makes a blocked command exit 124).
TEST(ResCommandTest, FifosAndDevicesAreNoLibraries) {
  testing::TempFolder temp;
  testing::RunCommand("mkfifo " + temp.File("pipe.dll"));
  for (const std::string& file : {temp.File("pipe.dll"), std::string("/dev/zero")}) {
    for (const std::string& args : {"list " + file, "string " + file + " 100",
                                    "get " + file + " XML '#100'"}) {
      EXPECT_EQ(Res(args, "timeout 10 env ").status, 2) << args;
    }
  }
}

TEST(ResCommandTest, ExitCodes) {
  EXPECT_EQ(Res("string " + Fixture("Res_DE.dll") + " 5").status, 1);
  EXPECT_EQ(Res("get " + Fixture("Res_DE.dll") + " XML '#5'").status, 1);
  EXPECT_EQ(Res("list /no/such.dll").status, 2);
  EXPECT_EQ(Res("list " + std::string(NORVIK50_FIXTURE_DIR) + "/../../CMakeCache.txt").status, 2);
  EXPECT_EQ(Res("string " + Fixture("Res_DE.dll") + " 70000").status, 2);  // usage
}

TEST(ResCommandTest, TheTourReadsRealLibrariesInBothLanguages) {
  testing::TempFolder temp;
  const auto run =
      testing::RunCommand("TMPDIR=" + temp.path() + " NORVIK50_REGISTRY_DIR=" + temp.path() + " " +
                          NORVIK50_TOOL + " demo");
  ASSERT_EQ(run.status, 0) << run.out;
  const std::size_t step = run.out.find("== Languages and resources");
  ASSERT_NE(step, std::string::npos) << run.out;
  const std::string out = run.out.substr(step);
  EXPECT_NE(out.find("tklLanguages() = Array(\"1;Deutsch;DE\", \"2;English;EN\")"),
            std::string::npos)
      << out;
  EXPECT_NE(out.find("tklRes(100) = \"Größe ändern\""), std::string::npos);
  EXPECT_NE(out.find("tklRes(100) = \"Change size\""), std::string::npos);
  EXPECT_NE(out.find("tklXMLRes(Object, \"title\") = \"Overview\""), std::string::npos);
  EXPECT_NE(out.find("'LoadLibrary 'R:\\App\\Res_FR.dll' failed.'"), std::string::npos);
}

TEST(ResCommandTest, FilesThatAreNoLibraryAndWindowsPathsInAnyCase) {
  testing::TempFolder temp;
  testing::RunCommand("printf 'MZ and nothing after it' > " + temp.File("text.dll"));
  // A real library cut after its headers: the resource section is gone.
  testing::RunCommand("head -c 600 " + Fixture("Res_DE.dll") + " > " + temp.File("cut.dll"));
  for (const std::string& file : {temp.File("text.dll"), temp.File("cut.dll"), temp.path()}) {
    EXPECT_EQ(Res("list " + file).status, 2) << file;
    EXPECT_EQ(Res("string " + file + " 100").status, 2) << file;
  }

  // Hosts keep the path as it was typed years ago; the file on the Linux
  // disk has its own case.
  testing::RunCommand("mkdir " + temp.File("Prog") + " && cp " + Fixture("Res_DE.dll") + " " +
                      temp.File("Prog/Res_DE.dll"));
  const std::string drives = "NORVIK50_DRIVES=C=" + temp.path() + " ";
  for (const char* path : {"'C:\\PROG\\RES_DE.DLL'", "'c:\\prog\\res_de.dll'"}) {
    EXPECT_EQ(Res(std::string("string ") + path + " 17", drives).out, "Siebzehn\n") << path;
  }
  EXPECT_EQ(Res("string 'D:\\Prog\\Res_DE.dll' 17", drives).status, 2);  // D: has no root
}

}  // namespace
}  // namespace norvik50
