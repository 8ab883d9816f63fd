// Reading the machine-wide store while its owner writes.
//
// An installer (the store's owner) commits values one after another, each
// its own transaction, while another user's process reads a value again
// and again, as a host reads its settings. One run measures:
//
//   BM_MachineStore/who:0   the reader alone (the anchor of the reads)
//   BM_MachineStore/who:1   the reader while the owner commits back to back
//   BM_MachineStore/who:2   the owner alone (the anchor of the commits)
//
// and prints each read's latency as percentiles (p50, p99, the worst), its
// ratios to the idle median and to a commit, what letting readers in costs
// the owner, and how many reads saw a missing or older value than the read
// before (must be 0: a read sees only what was committed, and never goes
// back).
//
// Target: the p99 under the writer below 50 ms.
//
// Run as root, the reader becomes user 65534, for whom the store is
// read-only; run as anyone else it is a second process of the same user,
// which meets the same locks.
#include <benchmark/benchmark.h>
#include <grp.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "bench_folder.h"
#include "settings/registry_algorithms.h"
#include "settings/sqlite_store.h"
#include "settings/value_bytes.h"

namespace {

using norvik50::HKEY_LOCAL_MACHINE;
using norvik50::RegKey;
using norvik50::Variant;
using norvik50::VarType;
using norvik50::settings::SqliteStore;
using Clock = std::chrono::steady_clock;

constexpr std::u16string_view kKey = u"Software\\Vendor\\Application";
constexpr uid_t kNobody = 65534;
constexpr auto kIdleFor = std::chrono::seconds(1);
constexpr auto kWriterFor = std::chrono::seconds(4);
// A host reads its settings now and then, not in a tight loop.
constexpr auto kBetweenReads = std::chrono::milliseconds(1);

struct Outcome {
  std::vector<double> ms;  // each read's latency, sorted
  long bad = 0;            // reads that saw a missing or an older value
  long commits = 0;        // the writer's commits
  double commit_ms = 0;    // the writer's time per commit
};

std::map<int64_t, Outcome>& Outcomes() {
  static std::map<int64_t, Outcome> outcomes;
  return outcomes;
}

double Percentile(const std::vector<double>& sorted, double q) {
  if (sorted.empty()) return 0;
  const auto rank = static_cast<std::size_t>(std::ceil(q * static_cast<double>(sorted.size())));
  return sorted[std::min(sorted.size(), std::max<std::size_t>(rank, 1)) - 1];
}

bool WriteAll(int fd, const void* data, std::size_t size) {
  const char* p = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t n = ::write(fd, p, size);
    if (n <= 0) return false;
    p += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

std::string ReadAll(int fd) {
  std::string bytes;
  char buffer[65536];
  for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;) bytes.append(buffer, n);
  return bytes;
}

// The owner: commits "Counter" = 1, 2, 3 ... one transaction each, until
// `stop` is closed; then reports the number of commits and the time per
// commit on `out`.
[[noreturn]] void Writer(int stop, int out) {
  long commits = 0;
  const auto start = Clock::now();
  {
    SqliteStore owner;
    RegKey key = 0;
    if (owner.OpenKey(HKEY_LOCAL_MACHINE, kKey, norvik50::KEY_SET_VALUE, key) != 0) std::_Exit(3);
    pollfd p{stop, POLLIN, 0};
    while (::poll(&p, 1, 0) == 0) {
      const auto next = static_cast<uint32_t>(commits + 1);
      if (owner.SetValue(key, u"Counter", norvik50::REG_DWORD,
                         norvik50::settings::DwordBytes(next)) != 0) {
        std::_Exit(4);
      }
      ++commits;
    }
  }
  const double ms = std::chrono::duration<double, std::milli>(Clock::now() - start).count() /
                    static_cast<double>(std::max(commits, 1L));
  WriteAll(out, &commits, sizeof commits);
  WriteAll(out, &ms, sizeof ms);
  std::_Exit(0);
}

// The other user: reads "Counter" for `duration`, and reports the number
// of bad reads and each read's latency in milliseconds on `out`.
[[noreturn]] void Reader(Clock::duration duration, int out) {
  if (::geteuid() == 0 &&
      (::setgroups(0, nullptr) != 0 || ::setresgid(kNobody, kNobody, kNobody) != 0 ||
       ::setresuid(kNobody, kNobody, kNobody) != 0)) {
    std::_Exit(5);
  }
  SqliteStore store;
  std::vector<double> ms;
  long bad = 0;
  int32_t seen = 0;
  const auto end = Clock::now() + duration;
  while (Clock::now() < end) {
    const auto start = Clock::now();
    const Variant v = norvik50::settings::RegReadValue(store, HKEY_LOCAL_MACHINE, kKey, u"Counter",
                                                       Variant(int32_t{-1}), false, nullptr);
    ms.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    const int32_t now = v.type() == VarType::kLong ? v.as_long() : -1;
    if (now < seen) ++bad;
    seen = std::max(seen, now);
    std::this_thread::sleep_for(kBetweenReads);
  }
  WriteAll(out, &bad, sizeof bad);
  WriteAll(out, ms.data(), ms.size() * sizeof(double));
  std::_Exit(0);
}

// A child process running `job`, which never returns.
pid_t Start(const std::function<void()>& job) {
  const pid_t pid = ::fork();
  if (pid == 0) job();
  return pid;
}

// Who works in a run of BM_MachineStore.
enum Who : int64_t { kReaderAlone = 0, kReaderAndWriter = 1, kWriterAlone = 2 };

void BM_MachineStore(benchmark::State& state) {
  const auto who = static_cast<Who>(state.range(0));
  const bool reads = who != kWriterAlone, writes = who != kReaderAlone;
  for (auto _ : state) {
    Outcome outcome;
    int stop[2], writer_out[2], reader_out[2];
    if (::pipe(stop) != 0 || ::pipe(writer_out) != 0 || ::pipe(reader_out) != 0) {
      state.SkipWithError("no pipes");
      return;
    }
    pid_t writer = -1, reader = -1;
    if (writes) {
      writer = Start([&] {
        // Only the parent may hold the reader's pipe, or its end never comes.
        for (const int fd : {stop[1], writer_out[0], reader_out[0], reader_out[1]}) ::close(fd);
        Writer(stop[0], writer_out[1]);
      });
      // The reader starts once the writer is in its stride.
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
    }
    const auto started = Clock::now();
    if (reads) {
      reader = Start([&] {
        for (const int fd : {stop[0], stop[1], writer_out[0], writer_out[1], reader_out[0]}) {
          ::close(fd);
        }
        Reader(writes ? kWriterFor : kIdleFor, reader_out[1]);
      });
    }
    ::close(stop[0]);
    ::close(writer_out[1]);
    ::close(reader_out[1]);
    const std::string read = ReadAll(reader_out[0]);
    int status = 0;
    if (reads) {
      ::waitpid(reader, &status, 0);
    } else {
      std::this_thread::sleep_for(kWriterFor);
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
    ::close(stop[1]);  // the writer stops
    const std::string written = ReadAll(writer_out[0]);
    int writer_status = 0;
    if (writes) ::waitpid(writer, &writer_status, 0);
    ::close(reader_out[0]);
    ::close(writer_out[0]);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || (reads && read.size() < sizeof(long)) ||
        !WIFEXITED(writer_status) || WEXITSTATUS(writer_status) != 0) {
      state.SkipWithError("a child process failed");
      return;
    }
    if (reads) {
      std::memcpy(&outcome.bad, read.data(), sizeof(long));
      outcome.ms.resize((read.size() - sizeof(long)) / sizeof(double));
      std::memcpy(outcome.ms.data(), read.data() + sizeof(long),
                  outcome.ms.size() * sizeof(double));
      std::sort(outcome.ms.begin(), outcome.ms.end());
      state.counters["reads"] = static_cast<double>(outcome.ms.size());
      state.counters["p50_ms"] = Percentile(outcome.ms, 0.50);
      state.counters["p99_ms"] = Percentile(outcome.ms, 0.99);
      state.counters["max_ms"] = outcome.ms.empty() ? 0 : outcome.ms.back();
      state.counters["bad"] = static_cast<double>(outcome.bad);
    }
    if (written.size() == sizeof(long) + sizeof(double)) {
      std::memcpy(&outcome.commits, written.data(), sizeof(long));
      std::memcpy(&outcome.commit_ms, written.data() + sizeof(long), sizeof(double));
      state.counters["commits"] = static_cast<double>(outcome.commits);
      state.counters["ms_per_commit"] = outcome.commit_ms;
    }
    state.SetIterationTime(seconds);
    Outcomes()[who] = std::move(outcome);
  }
}
BENCHMARK(BM_MachineStore)
    ->ArgName("who")
    ->Arg(kReaderAlone)
    ->Arg(kReaderAndWriter)
    ->Arg(kWriterAlone)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kSecond);

// The store as an installer leaves it: the key and its first value.
bool MakeStore(const std::string& folder) {
  // Other users pass through the folder to read the store in it.
  if (::chmod(folder.c_str(), 0755) != 0) return false;
  SqliteStore owner;
  RegKey key = 0;
  return owner.CreateKey(HKEY_LOCAL_MACHINE, kKey, 0, norvik50::KEY_ALL_ACCESS, key, nullptr) ==
             0 &&
         owner.SetValue(key, u"Counter", norvik50::REG_DWORD, norvik50::settings::DwordBytes(0)) ==
             0;
}

}  // namespace

int main(int argc, char** argv) {
  const norvik50::bench::BenchFolder folder("settings-contention");
  if (!folder.ok() || !MakeStore(folder.path())) return 1;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  const auto& outcomes = Outcomes();
  std::printf("\nReads of the machine-wide store by %s\n",
              ::geteuid() == 0 ? "user 65534 (read-only for it)" : "a second process");
  auto show = [&](int64_t who, const char* what) {
    if (outcomes.count(who) == 0) return;
    const Outcome& o = outcomes.at(who);
    std::printf("  %-28s", what);
    if (!o.ms.empty()) {
      std::printf("%5zu reads  p50 %7.3f ms  p99 %7.3f ms  max %7.3f ms  bad %ld", o.ms.size(),
                  Percentile(o.ms, 0.5), Percentile(o.ms, 0.99), o.ms.back(), o.bad);
    }
    if (o.commits > 0) std::printf("  %ld commits, %.2f ms each", o.commits, o.commit_ms);
    std::printf("\n");
  };
  show(kReaderAlone, "nobody writes:");
  show(kReaderAndWriter, "while the owner commits:");
  show(kWriterAlone, "the owner alone:");
  if (outcomes.count(kReaderAlone) != 0 && outcomes.count(kReaderAndWriter) != 0) {
    const double idle = Percentile(outcomes.at(kReaderAlone).ms, 0.5);
    const Outcome& busy = outcomes.at(kReaderAndWriter);
    std::printf(
        "\nRatios (target: p99 under the writer below 50 ms)\n"
        "  read p50 under the writer / idle read p50 = %9.1f\n"
        "  read p99 under the writer / idle read p50 = %9.1f\n",
        Percentile(busy.ms, 0.5) / idle, Percentile(busy.ms, 0.99) / idle);
    if (outcomes.count(kWriterAlone) != 0 && outcomes.at(kWriterAlone).commit_ms > 0) {
      const double alone = outcomes.at(kWriterAlone).commit_ms;
      std::printf(
          "  read p99 under the writer / commit alone  = %9.1f\n"
          "  commit with the reader / commit alone     = %9.2f\n",
          Percentile(busy.ms, 0.99) / alone, busy.commit_ms / alone);
    }
  }
  benchmark::Shutdown();
  return 0;
}
