// Test support: a real PostgreSQL server of the test program's own, made
// with initdb and run with pg_ctl from Debian's postgresql package in a
// temporary folder. It listens only on a unix socket in that folder (on a
// port number that is free on this machine, so that its socket name never
// meets another server's), runs as the unprivileged user 65534 when the
// tests run as root (the server refuses to run as root), and trusts every
// local connection, so a test logs in as any role it made.
//
// A watchdog process stops the server and removes the folder when the test
// program ends in any way, a crash included.
#ifndef NORVIK50_TESTS_TESTING_PG_TEST_SERVER_H_
#define NORVIK50_TESTS_TESTING_PG_TEST_SERVER_H_

#include <sys/types.h>

#include <string>

namespace norvik50::testing {

class PgTestServer {
 public:
  // The server of this test program, started at the first call. When it
  // cannot run, available() is false and why() says why (tests then skip
  // with that message).
  static PgTestServer& Shared();

  // Whether initdb and pg_ctl are on this machine (the tests that need a
  // server skip without them, and fail when the server cannot be made
  // with them).
  static bool ServerProgramsInstalled();

  bool available() const { return running_; }
  const std::string& why() const { return why_; }
  // The connection string for `user` on database `db`.
  std::string Conninfo(const std::string& user = "postgres",
                       const std::string& db = "postgres") const;

  // Stops the server at once (as a crash or a pulled cable would) or
  // starts it again on the same folder, port and data. True when done.
  bool Stop();
  bool Start();

  ~PgTestServer();
  PgTestServer(const PgTestServer&) = delete;
  PgTestServer& operator=(const PgTestServer&) = delete;

 private:
  PgTestServer();
  // Runs a server program as the server's user; true when it exits 0.
  bool RunAsServerUser(const std::string& program, const std::string& args);

  std::string bin_, folder_, data_, log_;
  int port_ = 0;
  bool running_ = false;
  std::string why_;
  pid_t watchdog_ = -1;
  int watchdog_pipe_ = -1;
};

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_PG_TEST_SERVER_H_
