// norvik50 store and an office moving onto a settings server: the local
// store exported with reg export, imported into the server with reg
// import, and back.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "settings/pg_server_for_tests.h"
#include "testing/run_command.h"
#include "testing/temp_folder.h"

namespace norvik50 {
namespace {

class StoreCommandTest : public ::testing::Test {
 protected:
  void SetUp() override {
    NORVIK50_NEED_TEST_SERVER();
    settings::EmptyServer();
  }
  // Runs the tool; `server` names the settings server for both roots.
  testing::CommandRun Tool(const std::string& args, const std::string& server = "") {
    const std::string env = server.empty() ? ""
                                           : "NORVIK50_STORE_HKLM='" + server +
                                                 "' NORVIK50_STORE_HKCU='" + server + "' ";
    return testing::RunCommand(env + NORVIK50_TOOL + " " + args);
  }
  testing::TempFolder temp_;
  testing::ScopedEnv registry_{"NORVIK50_REGISTRY_DIR", temp_.path()};
  testing::ScopedEnv hklm_{"NORVIK50_STORE_HKLM", std::nullopt};
  testing::ScopedEnv hkcu_{"NORVIK50_STORE_HKCU", std::nullopt};
};

TEST_F(StoreCommandTest, ShowsWhichStoreHoldsEachRoot) {
  testing::CommandRun run = Tool("store");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find("HKEY_CURRENT_USER: local file " + temp_.path()), std::string::npos)
      << run.out;
  run = Tool("store", settings::ServerConninfo("alice"));
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find("HKEY_LOCAL_MACHINE: server "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("(from NORVIK50_STORE_HKLM): reachable as role alice"), std::string::npos)
      << run.out;
  // A password in the connection string is never shown.
  run = Tool("store", settings::ServerConninfo("alice") + " password=sekrit");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(run.out.find("sekrit"), std::string::npos) << run.out;
  // A server that does not answer: said, and exit code 1.
  run = Tool("store", "host=" + temp_.path() + " port=1 user=alice");
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_NE(run.out.find("NOT reachable: "), std::string::npos) << run.out;
  // The configuration file names the server as well as the variables do.
  {
    std::ofstream conf(temp_.File("store.conf"));
    conf << "# the office server\nHKCU = " << settings::ServerConninfo("bob") << "\n";
  }
  run = Tool("store");
  EXPECT_NE(run.out.find("HKEY_CURRENT_USER: server "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("(from " + temp_.File("store.conf") + "): reachable as role bob"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("HKEY_LOCAL_MACHINE: local file"), std::string::npos) << run.out;
}

TEST_F(StoreCommandTest, InitCanBeRunAgainAndRefusesWithoutTheRight) {
  testing::CommandRun run = Tool("store init '" + settings::ServerConninfo("postgres") + "'");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find("schema norvik50 is at version 1"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("GRANT SELECT ON norvik50.machine_keys"), std::string::npos) << run.out;
  run = Tool("store init '" + settings::ServerConninfo("alice") + "'");
  EXPECT_EQ(run.status, 1) << run.out;
  EXPECT_NE(run.out.find("nothing was changed"), std::string::npos) << run.out;
  EXPECT_EQ(Tool("store init").status, 2);
}

TEST_F(StoreCommandTest, AnOfficeMovesOntoTheServerAndBack) {
  const std::string server = settings::ServerConninfo("desk");
  const std::string key = "'HKCU\\Software\\Demo'";
  ASSERT_EQ(Tool("reg add " + key + " /v Language /d DE /f").status, 0);
  ASSERT_EQ(Tool("reg add 'HKCU\\Software\\Demo\\Columns' /v Width /t REG_DWORD /d 120 /f").status,
            0);
  ASSERT_EQ(Tool("reg add 'HKLM\\Software\\Demo' /v ResourceDLL /d 'C:\\Res_%L.dll' /f").status, 0);
  const std::string user_file = temp_.File("user.reg"), machine_file = temp_.File("machine.reg");
  ASSERT_EQ(Tool("reg export " + key + " " + user_file + " /y").status, 0);
  ASSERT_EQ(Tool("reg export 'HKLM\\Software\\Demo' " + machine_file + " /y").status, 0);
  testing::CommandRun run = Tool("reg import " + user_file, server);
  ASSERT_EQ(run.status, 0) << run.out;
  ASSERT_EQ(Tool("reg import " + machine_file, server).status, 0);

  run = Tool("reg query " + key + " /s", server);
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_NE(run.out.find("Language    REG_SZ    DE"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("Width    REG_DWORD    0x78"), std::string::npos) << run.out;
  run = Tool("reg query 'HKLM\\Software\\Demo' /v ResourceDLL", server);
  EXPECT_NE(run.out.find("C:\\Res_%L.dll"), std::string::npos) << run.out;

  // And back: the server's export is the same file the local store wrote.
  const std::string back = temp_.File("back.reg");
  ASSERT_EQ(Tool("reg export " + key + " " + back + " /y", server).status, 0);
  EXPECT_EQ(temp_.Read("back.reg"), temp_.Read("user.reg"));
}

}  // namespace
}  // namespace norvik50
