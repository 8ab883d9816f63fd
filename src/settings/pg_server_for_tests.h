// Test support: the settings tests against both stores. The test
// program's PostgreSQL server (tests/testing/pg_test_server.h) gets the
// settings schema and three login roles: "desk" (norvik50_admin), "alice"
// and "bob" (norvik50_user).
#ifndef NORVIK50_SRC_SETTINGS_PG_SERVER_FOR_TESTS_H_
#define NORVIK50_SRC_SETTINGS_PG_SERVER_FOR_TESTS_H_

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "settings/pg_connection.h"
#include "settings/pg_schema.h"
#include "settings/pg_store.h"
#include "testing/pg_test_server.h"

namespace norvik50::settings {

enum class StoreKind { kLocal, kServer };

inline std::string StoreKindName(StoreKind kind) {
  return kind == StoreKind::kLocal ? "LocalFiles" : "Server";
}

inline std::string ServerConninfo(const std::string& role) {
  return norvik50::testing::PgTestServer::Shared().Conninfo(role);
}

// Runs `sql` as the server's superuser; "" or what went wrong.
inline std::string AsSuperuser(const std::string& sql) {
  std::string error;
  auto conn = PgConnection::Connect(ServerConninfo("postgres"), 10, error);
  if (!conn) return error;
  PgFailure failure;
  return conn->Script(sql, failure) ? "" : failure.message;
}

// "" when the server is ready for the settings store, else why not.
inline const std::string& PrepareTestServer() {
  static const std::string why = [] {
    auto& server = norvik50::testing::PgTestServer::Shared();
    if (!server.available()) return server.why();
    std::string error;
    auto conn = PgConnection::Connect(ServerConninfo("postgres"), 10, error);
    if (!conn) return "cannot reach the test server: " + error;
    std::vector<std::string> done;
    PgFailure failure;
    if (InitServerSchema(*conn, done, failure) != 0) return "store init failed: " + failure.message;
    const std::string roles = AsSuperuser(
        "CREATE ROLE desk LOGIN IN ROLE norvik50_admin;"
        "CREATE ROLE alice LOGIN IN ROLE norvik50_user;"
        "CREATE ROLE bob LOGIN IN ROLE norvik50_user;");
    return roles.empty() ? std::string() : "cannot make the test roles: " + roles;
  }();
  return why;
}

// In a fixture's SetUp: the test skips, saying why, when this machine has
// no PostgreSQL server programs; it fails when they are there and the
// server could not be made ready.
#define NORVIK50_NEED_TEST_SERVER()                                                           \
  do {                                                                                        \
    if (const std::string& why = ::norvik50::settings::PrepareTestServer(); !why.empty()) {   \
      if (!::norvik50::testing::PgTestServer::ServerProgramsInstalled()) GTEST_SKIP() << why; \
      GTEST_FAIL() << why;                                                                    \
    }                                                                                         \
  } while (false)

// Every settings row gone: each test starts from an empty server.
inline void EmptyServer() {
  const std::string failed = AsSuperuser(
      "TRUNCATE norvik50.machine_values, norvik50.machine_keys, norvik50.user_values, "
      "norvik50.user_keys");
  if (!failed.empty()) ADD_FAILURE() << "cannot empty the test server: " << failed;
}

inline std::shared_ptr<PgStore> ServerStore(const std::string& role,
                                            const std::string& offline_copy = "") {
  PgStoreOptions options;
  options.conninfo = ServerConninfo(role);
  options.offline_copy = offline_copy;
  options.retry_interval = std::chrono::milliseconds(0);
  return std::make_shared<PgStore>(std::move(options));
}

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_PG_SERVER_FOR_TESTS_H_
