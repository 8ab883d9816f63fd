#include "testing/pg_test_server.h"

#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace norvik50::testing {
namespace {

constexpr uid_t kServerUser = 65534;

bool AsRoot() { return ::geteuid() == 0; }

// The temporary folder as the program started: tests point TMPDIR at
// folders of their own, which the server's user may not enter and which
// go when the test does.
const std::string kTempBase = [] {
  const char* tmp = std::getenv("TMPDIR");
  const std::string base = tmp != nullptr && *tmp != '\0' ? tmp : "/tmp";
  // The server's user must pass through every folder above its own; a
  // private TMPDIR (as root's may be) is left for /tmp then.
  for (std::filesystem::path p = base; !p.empty() && p != p.root_path(); p = p.parent_path()) {
    struct stat st {};
    if (::stat(p.c_str(), &st) != 0 || (st.st_mode & S_IXOTH) == 0) return std::string("/tmp");
  }
  return base;
}();

// The newest installed server's programs, or NORVIK50_PG_BIN.
std::string FindServerBin() {
  if (const char* bin = std::getenv("NORVIK50_PG_BIN"); bin != nullptr && *bin != '\0') {
    const std::string dir(bin);
    return std::filesystem::exists(dir + "/initdb") && std::filesystem::exists(dir + "/pg_ctl")
               ? dir
               : std::string();
  }
  std::string best;
  int best_version = -1;
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator("/usr/lib/postgresql", ec)) {
    const std::string bin = entry.path().string() + "/bin";
    if (!std::filesystem::exists(bin + "/initdb") || !std::filesystem::exists(bin + "/pg_ctl")) {
      continue;
    }
    const int version = std::atoi(entry.path().filename().c_str());
    if (version > best_version) {
      best_version = version;
      best = bin;
    }
  }
  return best;
}

int FreePort() {
  const int s = ::socket(AF_INET, SOCK_STREAM, 0);
  if (s < 0) return 54321;
  sockaddr_in addr{};
  addr.sin_family = AF_INET;
  addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t len = sizeof addr;
  int port = 54321;
  if (::bind(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0 &&
      ::getsockname(s, reinterpret_cast<sockaddr*>(&addr), &len) == 0) {
    port = ntohs(addr.sin_port);
  }
  ::close(s);
  return port;
}

void BecomeServerUser() {
  if (!AsRoot()) return;
  if (::setgroups(0, nullptr) != 0 || ::setresgid(kServerUser, kServerUser, kServerUser) != 0 ||
      ::setresuid(kServerUser, kServerUser, kServerUser) != 0) {
    std::_Exit(90);
  }
}

}  // namespace

bool PgTestServer::ServerProgramsInstalled() { return !FindServerBin().empty(); }

PgTestServer& PgTestServer::Shared() {
  static PgTestServer server;
  return server;
}

bool PgTestServer::RunAsServerUser(const std::string& program, const std::string& args) {
  const std::string command = "'" + bin_ + "/" + program + "' " + args + " >>'" + log_ + "' 2>&1";
  const pid_t pid = ::fork();
  if (pid == 0) {
    BecomeServerUser();
    ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
    std::_Exit(127);
  }
  int status = 0;
  if (pid < 0 || ::waitpid(pid, &status, 0) != pid) return false;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

PgTestServer::PgTestServer() {
  bin_ = FindServerBin();
  if (bin_.empty()) {
    why_ =
        "no PostgreSQL server programs (initdb, pg_ctl) in /usr/lib/postgresql/*/bin; "
        "scripts/install-deps installs them";
    return;
  }
  std::string pattern = kTempBase + "/norvik50-pg-XXXXXX";
  if (::mkdtemp(pattern.data()) == nullptr) {
    why_ = "cannot make a temporary folder";
    return;
  }
  folder_ = pattern;
  data_ = folder_ + "/data";
  log_ = folder_ + "/server.log";
  port_ = FreePort();
  std::filesystem::create_directory(data_);
  { std::ofstream(log_).flush(); }
  // The server's user must reach its folders, and may own only them.
  std::filesystem::permissions(folder_, std::filesystem::perms::owner_all |
                                            std::filesystem::perms::group_exec |
                                            std::filesystem::perms::others_exec);
  if (AsRoot() && (::chown(data_.c_str(), kServerUser, kServerUser) != 0 ||
                   ::chown(log_.c_str(), kServerUser, kServerUser) != 0)) {
    why_ = "cannot give the server's folder to user 65534";
    return;
  }
  if (!RunAsServerUser("initdb",
                       "-D '" + data_ + "' -U postgres -A trust -E UTF8 --locale=C --no-sync")) {
    std::ifstream in(log_);
    std::stringstream s;
    s << in.rdbuf();
    why_ = "initdb failed: " + s.str();
    return;
  }
  // The watchdog outlives a crashed test program: it waits for the pipe to
  // close (which happens however this process ends), then stops the
  // server and removes the folder.
  int fds[2];
  if (::pipe2(fds, O_CLOEXEC) != 0) {
    why_ = "cannot make a pipe";
    return;
  }
  watchdog_ = ::fork();
  if (watchdog_ == 0) {
    ::close(fds[1]);
    char byte;
    while (::read(fds[0], &byte, 1) > 0) {
    }
    RunAsServerUser("pg_ctl", "-D '" + data_ + "' -m immediate -w stop");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    std::_Exit(0);
  }
  ::close(fds[0]);
  watchdog_pipe_ = fds[1];
  running_ = Start();
  if (!running_) {
    std::ifstream in(log_);
    std::stringstream s;
    s << in.rdbuf();
    why_ = "the test server did not start: " + s.str();
  }
}

bool PgTestServer::Start() {
  running_ = RunAsServerUser("pg_ctl", "-D '" + data_ + "' -l '" + log_ + "' -w -t 60 -o \"-k '" +
                                           data_ + "' -p " + std::to_string(port_) +
                                           " -c listen_addresses='' -c fsync=off\" start");
  return running_;
}

bool PgTestServer::Stop() {
  const bool stopped = RunAsServerUser("pg_ctl", "-D '" + data_ + "' -m immediate -w stop");
  if (stopped) running_ = false;
  return stopped;
}

std::string PgTestServer::Conninfo(const std::string& user, const std::string& db) const {
  return "host=" + data_ + " port=" + std::to_string(port_) + " user=" + user + " dbname=" + db;
}

PgTestServer::~PgTestServer() {
  if (watchdog_pipe_ >= 0) {
    ::close(watchdog_pipe_);
    int status = 0;
    ::waitpid(watchdog_, &status, 0);
  }
}

}  // namespace norvik50::testing
