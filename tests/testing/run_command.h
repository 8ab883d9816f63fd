// Test support: runs a shell command line and collects what it printed,
// stdout and stderr together, with its exit status; or measures what a
// command costs.
#ifndef NORVIK50_TESTS_TESTING_RUN_COMMAND_H_
#define NORVIK50_TESTS_TESTING_RUN_COMMAND_H_

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

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

// A command's exit code, the most memory it held (its peak resident set)
// and how long it ran. Its output goes where the command line redirects it;
// variables for its environment are given through env(1), as in
// "env A=1 prog > out".
struct MeasuredRun {
  int status = -1;
  long peak_kb = 0;
  double seconds = 0;
};

inline MeasuredRun RunMeasured(const std::string& command_line) {
  MeasuredRun run;
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child < 0) return run;
  if (child == 0) {
    // exec: the shell becomes the command, so the figures are the command's.
    const std::string script = "exec " + command_line;
    execl("/bin/sh", "sh", "-c", script.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  struct rusage usage {};
  if (wait4(child, &status, 0, &usage) != child) return run;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  run.peak_kb = usage.ru_maxrss;
  if (WIFEXITED(status)) run.status = WEXITSTATUS(status);
  return run;
}

}  // namespace norvik50::testing

#endif  // NORVIK50_TESTS_TESTING_RUN_COMMAND_H_
