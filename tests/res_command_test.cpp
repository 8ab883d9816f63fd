// norvik50 res end to end on the resource libraries the build makes.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "resources/damaged_libraries_for_tests.h"
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
  const auto shown =
      testing::RunCommand("script -qec \"NORVIK50_LOCALE=en-US " + std::string(NORVIK50_TOOL) +
                          " res get " + library + " XML '#100'\" /dev/null");
  EXPECT_EQ(shown.status, 0) << shown.out;
  EXPECT_EQ(shown.out.rfind("<resources>", 0), 0u) << shown.out;
  EXPECT_NE(shown.out.find("text=\"Übersicht\""), std::string::npos) << shown.out;
  const std::string bytes = Res("get " + library + " XML '#100'").out;
  EXPECT_EQ(bytes.substr(0, 14), "\xEF\xBB\xBF<resources>");
  EXPECT_NE(bytes.find("text=\"\xDC"
                       "bersicht\""),
            std::string::npos);
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

std::string FileText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// Libraries damaged to cost memory or time, through every way in: the
// listing, a lookup by the command, and tklResource in a host's process.
// One took 8 GB and ended in bad_alloc, one 145 s, the overlapping one 48 s;
// each must now stay within 50 MB. The time bound only guards against a
// walk that grows with the square of the file; the figures are in
// bench/resources_bench.
TEST(ResCommandTest, DamagedLibrariesAnswerInLittleMemoryAndTime) {
  testing::TempFolder temp;
  testing::WriteLibrary(temp.File("long.dll"), testing::SharedLongNameLibrary());
  testing::WriteLibrary(temp.File("overlap.dll"), testing::OverlappingDirectoriesLibrary(36000));
  const std::string long_name(65535, 'N');
  const std::string almost = long_name.substr(1) + "M";
  {
    std::ofstream requests(temp.File("requests"));
    requests << R"({"id":1,"member":"tkrSetValue","args":[-2147483646,"SOFTWARE\\VANTEX\\Global",)"
             << R"("ResourceDLL","C:\\long.dll"]})" << '\n'
             << R"({"id":2,"member":"tklResource","args":[100,"XML"]})" << '\n'
             << R"({"id":3,"member":"tklResource","args":[100,")" << long_name << "\"]}\n"
             << R"({"id":4,"member":"tklResource","args":[100,")" << almost << "\"]}\n";
  }
  const std::string tool = std::string(NORVIK50_TOOL);
  const std::string environment = "env NORVIK50_LOCALE=en-US NORVIK50_DRIVES=C=" + temp.path() +
                                  " NORVIK50_REGISTRY_DIR=" + temp.path() + " ";
  const std::string out = temp.File("out");
  const std::string listed_long = long_name.substr(0, 64) + "\u2026(65535 characters)";
  struct Case {
    std::string arguments;
    int status;
    std::string output;  // the output holds this
  } cases[] = {
      {"res list " + temp.File("long.dll"), 0, listed_long + " " + listed_long + " 0x0409    12"},
      {"res get " + temp.File("long.dll") + " " + long_name + " '#100'", 0, "<resources/>"},
      {"res get " + temp.File("long.dll") + " " + almost + " '#100'", 1, "no resource"},
      {"res get " + temp.File("long.dll") + " XML '#100'", 1, "no resource"},
      {"batch < " + temp.File("requests"), 0,
       R"({"id":2,"ok":true,"result":{"vt":"String","v":""}})"
       "\n"
       R"({"id":3,"ok":true,"result":{"vt":"String","v":"<resources/>"}})"
       "\n"
       R"({"id":4,"ok":true,"result":{"vt":"String","v":""}})"},
      {"res list " + temp.File("overlap.dll"), 1,
       "#1 CURSOR            #1                   0x0409    4\n"
       "norvik50 res: the directories of '" +
           temp.File("overlap.dll") + "' overlap (damaged); the listing stops there"},
      {"res get " + temp.File("overlap.dll") + " '#36000' '#1'", 0, "data"},
  };
  for (const Case& c : cases) {
    const std::string shown = c.arguments.substr(0, 80);
    const auto run =
        testing::RunMeasured(environment + tool + " " + c.arguments + " > " + out + " 2>&1");
    const std::string output = FileText(out);
    EXPECT_EQ(run.status, c.status) << shown << "\n" << output.substr(0, 2000);
    EXPECT_NE(output.find(c.output), std::string::npos) << shown << "\n" << output.substr(0, 2000);
    EXPECT_LT(output.size(), 4096 + c.arguments.size()) << shown;  // a message may name them
    EXPECT_LT(run.peak_kb, 50 * 1024) << shown;
    EXPECT_LT(run.seconds, 3.0) << shown;
  }
}

}  // namespace
}  // namespace norvik50
