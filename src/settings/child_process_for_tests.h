// Test support: other processes on the same store. A test starts this test
// program again with NORVIK50_SETTINGS_JOB set; a job runner registered with
// RunJobIfAsked (at static initialisation, before any test runs) does the
// job in the child, talking through the child's stdin and stdout, and ends
// the child without returning to the test runner.
#ifndef NORVIK50_SRC_SETTINGS_CHILD_PROCESS_FOR_TESTS_H_
#define NORVIK50_SRC_SETTINGS_CHILD_PROCESS_FOR_TESTS_H_

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

namespace norvik50::settings {

inline constexpr const char* kJobVariable = "NORVIK50_SETTINGS_JOB";

// In a child started for a job "NAME:ARGUMENT": runs `job(ARGUMENT)` when
// NAME is `name` and exits with its result. Returns false otherwise.
inline bool RunJobIfAsked(const std::string& name, const std::function<int(std::string)>& job) {
  const char* asked = std::getenv(kJobVariable);
  if (asked == nullptr) return false;
  const std::string text(asked);
  if (text.compare(0, name.size() + 1, name + ":") != 0) return false;
  const int code = job(text.substr(name.size() + 1));
  std::fflush(stdout);
  std::_Exit(code);
}

struct ChildProcess {
  pid_t pid = -1;
  FILE* out = nullptr;  // what the child prints
  FILE* in = nullptr;   // what the child reads
};

// Starts this program again for `job` ("NAME:ARGUMENT").
inline ChildProcess StartChild(const std::string& job) {
  int to_child[2], from_child[2];
  if (::pipe(to_child) != 0 || ::pipe(from_child) != 0) return {};
  ChildProcess c;
  c.pid = ::fork();
  if (c.pid == 0) {
    ::dup2(to_child[0], STDIN_FILENO);
    ::dup2(from_child[1], STDOUT_FILENO);
    for (const int fd : {to_child[0], to_child[1], from_child[0], from_child[1]}) ::close(fd);
    ::setenv(kJobVariable, job.c_str(), 1);
    char* const args[] = {const_cast<char*>("settings_tests"), nullptr};
    ::execv("/proc/self/exe", args);
    std::_Exit(127);
  }
  ::close(to_child[0]);
  ::close(from_child[1]);
  c.out = ::fdopen(from_child[0], "r");
  c.in = ::fdopen(to_child[1], "w");
  return c;
}

// Everything the child still prints, then its exit status.
inline int FinishChild(ChildProcess& c, std::string* rest = nullptr) {
  if (c.in != nullptr) std::fclose(c.in);
  char buffer[4096];
  std::size_t n = 0;
  while ((n = std::fread(buffer, 1, sizeof buffer, c.out)) > 0) {
    if (rest != nullptr) rest->append(buffer, n);
  }
  std::fclose(c.out);
  int status = 0;
  ::waitpid(c.pid, &status, 0);
  return status;
}

}  // namespace norvik50::settings

#endif  // NORVIK50_SRC_SETTINGS_CHILD_PROCESS_FOR_TESTS_H_
