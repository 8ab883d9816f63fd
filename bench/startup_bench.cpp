// What a one-shot command costs before it does anything: starting
// `norvik50 --version` and a headless `norvik50 call` against starting
// /bin/true, the anchor. Qt is opened only when a dialog is shown, so the
// headless commands must stay within a few milliseconds of the anchor; the
// last benchmark shows what the first dialog costs on top.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench_folder.h"
#include "best_time_reporter.h"

extern char** environ;

namespace {

// Runs `argv` with stdin, stdout and stderr on /dev/null; false when it
// could not be started or did not exit 0.
bool Run(std::vector<std::string> argv) {
  std::vector<char*> args;
  for (std::string& arg : argv) args.push_back(arg.data());
  args.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (int fd : {0, 1, 2}) {
    posix_spawn_file_actions_addopen(&actions, fd, "/dev/null", fd == 0 ? O_RDONLY : O_WRONLY, 0);
  }
  pid_t pid = 0;
  const int started = posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  return started == 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status) &&
         WEXITSTATUS(status) == 0;
}

void Spawn(benchmark::State& state, const std::vector<std::string>& argv) {
  for (auto _ : state) {
    if (!Run(argv)) {
      state.SkipWithError("the command failed");
      return;
    }
  }
}

void BM_AnchorTrue(benchmark::State& state) { Spawn(state, {"/bin/true"}); }
BENCHMARK(BM_AnchorTrue)->UseRealTime()->MinTime(1.0);

void BM_Version(benchmark::State& state) { Spawn(state, {NORVIK50_TOOL, "--version"}); }
BENCHMARK(BM_Version)->UseRealTime()->MinTime(1.0);

void BM_HeadlessCall(benchmark::State& state) {
  Spawn(state, {NORVIK50_TOOL, "call", "tklVal", "EUR 1.234,56"});
}
BENCHMARK(BM_HeadlessCall)->UseRealTime()->MinTime(1.0);

// A call that shows a message box on the offscreen platform, answered by
// a dialog script: the price of opening Qt, paid only here.
void BM_DialogCall(benchmark::State& state) {
  Spawn(state, {NORVIK50_TOOL, "call", "tklMsgBox", "Saved.", "", "0", "Bench"});
}
BENCHMARK(BM_DialogCall)->UseRealTime()->MinTime(1.0);

}  // namespace

int main(int argc, char** argv) {
  const norvik50::bench::BenchFolder folder("startup");
  if (!folder.ok()) return 1;
  // Every dialog is answered at once; no display is ever needed.
  const std::string script = folder.path() + "/script.jsonl";
  {
    std::ofstream lines(script);
    for (int i = 0; i < 100000; ++i) lines << "{\"click\":1}\n";
  }
  setenv("NORVIK50_DIALOG_SCRIPT", script.c_str(), 1);
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("NORVIK50_LOCALE", "de-DE", 1);

  benchmark::Initialize(&argc, argv);
  // Real time: a process start is mostly waiting for the kernel and loader.
  norvik50::bench::BestTimeReporter reporter(norvik50::bench::BestTimeReporter::Clock::kReal);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double anchor = reporter.Ns("BM_AnchorTrue");
  std::printf("\nStart-up against /bin/true (real time, best of the runs)\n");
  for (const char* name : {"BM_Version", "BM_HeadlessCall", "BM_DialogCall"}) {
    const double ns = reporter.Ns(name);
    if (ns <= 0 || anchor <= 0) continue;
    std::printf("%-16s %7.2f ms = /bin/true + %6.2f ms (%5.2fx)%s\n", name, ns / 1e6,
                (ns - anchor) / 1e6, ns / anchor,
                std::string(name) == "BM_DialogCall" ? "" : "  (target: + 20 ms at most)");
  }
  benchmark::Shutdown();
  return 0;
}
