// norvik50 reg as a script runs it: switches, messages and exit codes, and
// a key that survives export, delete and import.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "commands.h"
#include "norvik50/encoding.h"
#include "settings/sqlite_store.h"
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

// An import that cannot be finished leaves every store as it was: the
// per-user values it would have changed or added before the failing part
// are not there, whatever the failure.
TEST_F(RegCommandTest, AnImportIsAllOrNothing) {
  const std::string machine_db = temp_.File("HKEY_LOCAL_MACHINE.db");
  std::string too_deep = "HKEY_CURRENT_USER\\Software\\Imp";
  for (int i = 0; i < 600; ++i) too_deep += "\\k";
  struct Case {
    const char* what;
    std::string last_key;     // the part of the file that fails
    bool lock_machine_store;  // made read-only (even root may not write it then)
    const char* said;
  } cases[] = {
      {"a root this user may not write", "HKEY_LOCAL_MACHINE\\Software\\Imp", true,
       "cannot be written by this user"},
      {"a key the store refuses, late in the file", too_deep, false, "Importing HKEY_CURRENT_USER"},
  };
  for (const Case& c : cases) {
    ASSERT_EQ(Reg("add 'HKCU\\Software\\Imp' /v Keep /d old /f").status, 0);
    ASSERT_EQ(Reg("add 'HKLM\\Software\\Imp' /v M /d 1 /f").status, 0);
    const std::string file = temp_.File("partial.reg");
    std::ofstream(file, std::ios::binary)
        << "REGEDIT4\r\n\r\n"
        << "[HKEY_CURRENT_USER\\Software\\Imp]\r\n\"Keep\"=\"new\"\r\n\"Added\"=\"x\"\r\n\r\n"
        << "[HKEY_CURRENT_USER\\Software\\Imp\\Sub]\r\n\"v\"=dword:00000001\r\n\r\n"
        << "[" << c.last_key << "]\r\n\"M\"=\"2\"\r\n";
    if (c.lock_machine_store) {
      ASSERT_EQ(::chmod(machine_db.c_str(), 0444), 0);
    }
    const ToolRun import = Reg("import " + file);
    ::chmod(machine_db.c_str(), 0644);
    EXPECT_EQ(import.status, 1) << c.what << "\n" << import.out;
    EXPECT_NE(import.out.find("nothing was imported"), std::string::npos) << import.out;
    EXPECT_NE(import.out.find(c.said), std::string::npos) << import.out;
    const ToolRun keep = Reg("query 'HKCU\\Software\\Imp' /v Keep");
    EXPECT_NE(keep.out.find("REG_SZ    old"), std::string::npos) << c.what << "\n" << keep.out;
    EXPECT_EQ(Reg("query 'HKCU\\Software\\Imp' /v Added").status, 1) << c.what;
    EXPECT_EQ(Reg("query 'HKCU\\Software\\Imp\\Sub'").status, 1) << c.what;
    EXPECT_NE(Reg("query 'HKLM\\Software\\Imp' /v M").out.find("REG_SZ    1"), std::string::npos);
  }
  // The same file without its failing part imports whole.
  const std::string file = temp_.File("whole.reg");
  std::ofstream(file, std::ios::binary)
      << "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Imp]\r\n\"Keep\"=\"new\"\r\n\r\n"
      << "[HKEY_LOCAL_MACHINE\\Software\\Imp]\r\n\"M\"=\"2\"\r\n";
  ASSERT_EQ(Reg("import " + file).status, 0);
  EXPECT_NE(Reg("query 'HKCU\\Software\\Imp' /v Keep").out.find("REG_SZ    new"),
            std::string::npos);
  EXPECT_NE(Reg("query 'HKLM\\Software\\Imp' /v M").out.find("REG_SZ    2"), std::string::npos);
}

// A one-shot command's change is in the database file itself when the
// command returns, not only in the write-ahead log. Another program keeps
// the per-user store open meanwhile, as a running host does; otherwise
// SQLite copies the log back anyway when the command's connection, the
// last one, closes.
TEST_F(RegCommandTest, ChangesAreOnDiskWhenTheCommandReturns) {
  settings::SqliteStore host;
  RegKey key = 0;
  ASSERT_EQ(host.CreateKey(HKEY_CURRENT_USER, u"Software\\Host", 0, KEY_ALL_ACCESS, key, nullptr),
            0);
  ASSERT_EQ(host.SetValue(key, u"open", REG_SZ, "yes"), 0);
  // What a copy of the database file alone (without its log) holds.
  auto file_alone = [&](const std::string& key_name, const std::string& value) {
    testing::TempFolder copy;
    // Copied by another process: closing a descriptor of the file here
    // would drop the host connection's locks (POSIX locks belong to the
    // process), and with them what keeps the log from being copied back.
    const ToolRun cp = testing::RunCommand("cp " + temp_.File("HKEY_CURRENT_USER.db") + " " +
                                           copy.File("HKEY_CURRENT_USER.db"));
    EXPECT_EQ(cp.status, 0) << cp.out;
    const testing::ScopedEnv there("NORVIK50_REGISTRY_DIR", copy.path());
    settings::SqliteStore store;
    RegKey k = 0;
    int32_t type = 0;
    std::string data;
    return store.OpenKey(HKEY_CURRENT_USER, FromUtf8(key_name), KEY_QUERY_VALUE, k) == 0 &&
           store.QueryValue(k, FromUtf8(value), 1024, type, data) == 0;
  };
  const ToolRun add = Reg("add 'HKCU\\Software\\Durable' /v Added /d 1 /f");
  ASSERT_EQ(add.status, 0) << add.out;
  EXPECT_TRUE(file_alone("Software\\Durable", "Added")) << "reg add did not flush";

  const std::string file = temp_.File("durable.reg");
  std::ofstream(file, std::ios::binary)
      << "REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Durable]\r\n\"Imported\"=\"1\"\r\n";
  ASSERT_EQ(Reg("import " + file).status, 0);
  EXPECT_TRUE(file_alone("Software\\Durable", "Imported")) << "reg import did not flush";

  // Flushed by the host whatever the commands did, so the value is in the
  // file before it is deleted.
  ASSERT_EQ(host.FlushKey(HKEY_CURRENT_USER), 0);
  ASSERT_TRUE(file_alone("Software\\Durable", "Added"));
  ASSERT_EQ(Reg("delete 'HKCU\\Software\\Durable' /v Added /f").status, 0);
  EXPECT_FALSE(file_alone("Software\\Durable", "Added")) << "reg delete did not flush";

  // The batch writes without flushing unless it asks for it with
  // tkrFlushKey.
  const std::string set =
      R"({"member":"tkrSetValue","args":[-2147483647,"Software\\Durable","FromBatch","x"]})";
  const std::string flush = R"({"member":"tkrFlushKey","args":[-2147483647]})";
  const std::string tool = std::string(NORVIK50_TOOL) + " batch --headless";
  ToolRun batch = testing::RunCommand("printf '%s\\n' '" + set + "' | " + tool);
  ASSERT_NE(batch.out.find("\"ok\":true"), std::string::npos) << batch.out;
  EXPECT_FALSE(file_alone("Software\\Durable", "FromBatch"))
      << "the copy shows more than the database file holds";
  batch = testing::RunCommand("printf '%s\\n' '" + set + "' '" + flush + "' | " + tool);
  EXPECT_NE(batch.out.find(R"({"id":null,"ok":true,"result":{"vt":"Long","v":0}})"),
            std::string::npos)
      << batch.out;
  EXPECT_TRUE(file_alone("Software\\Durable", "FromBatch")) << "tkrFlushKey did not flush";
  host.CloseKey(key);
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
