// Test support: runs a shell command line and collects what it printed,
// stdout and stderr together, with its exit status.
#ifndef NORVIK50_TESTS_TESTING_RUN_COMMAND_H_
#define NORVIK50_TESTS_TESTING_RUN_COMMAND_H_

#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace norvik50::testing {

struct CommandRun {
  int status = -1;  // the exit code; -1 when the command did not exit normally
  std::string out;
};

inline CommandRun RunCommand(const std::string& command_line) {
  CommandRun run;
  FILE* pipe = popen((command_line + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return run;
  char buffer[512];
  while (fgets(buffer, sizeof buffer, pipe) != nullptr) run.out += buffer;
  const int status = pclose(pipe);
  if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
  return run;
}

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_RUN_COMMAND_H_
