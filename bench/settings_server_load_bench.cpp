// Fifty desktops at once on one settings server: fifty client processes,
// each writing its own values back to back and reading a machine-wide one,
// against a server of this program's own (as the tests start theirs). In
// the middle one client is killed and the server is stopped at once and
// started again. Printed: acknowledged writes per second, the median and
// 99th-percentile write latency as ratios against one client's write alone
// (the anchor, measured by Google Benchmark in the same run), and how many
// acknowledged writes are missing afterwards (target: 0).
#include <benchmark/benchmark.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "bench_folder.h"
#include "best_time_reporter.h"
#include "norvik50/encoding.h"
#include "settings/pg_server_for_tests.h"
#include "settings/registry_algorithms.h"

namespace {

namespace settings = norvik50::settings;
using norvik50::HKEY_CURRENT_USER;
using norvik50::HKEY_LOCAL_MACHINE;
using norvik50::Variant;
using Clock = std::chrono::steady_clock;

constexpr int kClients = 50;
constexpr auto kRun = std::chrono::seconds(4);
constexpr auto kKill = std::chrono::milliseconds(1000);
constexpr auto kRestart = std::chrono::milliseconds(2000);

std::string& Folder() {
  static std::string folder;
  return folder;
}

std::shared_ptr<settings::PgStore> Store(const std::string& role) {
  settings::PgStoreOptions options;
  options.conninfo = settings::ServerConninfo(role);
  options.retry_interval = std::chrono::milliseconds(0);
  return std::make_shared<settings::PgStore>(std::move(options));
}

void BM_OneClientWrite(benchmark::State& state) {
  auto store = Store("alice");
  int32_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(settings::RegWriteValue(*store, HKEY_CURRENT_USER, u"Software\\Load",
                                                     u"alone", Variant(++i), nullptr));
  }
}
BENCHMARK(BM_OneClientWrite);

// One client: writes "c<client>-<i>" = i until the run ends, and notes
// "<i> <microseconds>" for every write the server acknowledged.
[[noreturn]] void Client(int client, Clock::time_point end) {
  auto store = Store("alice");
  std::FILE* out = std::fopen((Folder() + "/client" + std::to_string(client)).c_str(), "w");
  std::setvbuf(out, nullptr, _IOLBF, 0);
  const std::u16string prefix = norvik50::FromUtf8("c" + std::to_string(client) + "-");
  for (int32_t i = 1; Clock::now() < end; ++i) {
    const auto started = Clock::now();
    const bool acknowledged = settings::RegWriteValue(
        *store, HKEY_CURRENT_USER, u"Software\\Load",
        prefix + norvik50::FromUtf8(std::to_string(i)), Variant(i), nullptr);
    const auto took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - started);
    if (acknowledged) std::fprintf(out, "%d %lld\n", i, static_cast<long long>(took.count()));
    // A desktop reads far more than it writes.
    settings::RegReadValue(*store, HKEY_LOCAL_MACHINE, u"Software\\Load", u"ResourceDLL",
                           Variant(u""), false, nullptr);
    if (!acknowledged) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  std::fclose(out);
  std::_Exit(0);
}

struct LoadResult {
  long acknowledged = 0, lost = 0;
  double seconds = 0, p50_us = 0, p99_us = 0;
};

LoadResult RunLoad() {
  LoadResult result;
  auto& server = norvik50::testing::PgTestServer::Shared();
  settings::RegWriteValue(*Store("desk"), HKEY_LOCAL_MACHINE, u"Software\\Load", u"ResourceDLL",
                          Variant(u"R_%L.dll"), nullptr);
  std::fflush(nullptr);
  const auto start = Clock::now();
  std::vector<pid_t> pids;
  for (int c = 0; c < kClients; ++c) {
    const pid_t pid = ::fork();
    if (pid == 0) Client(c, start + kRun);
    pids.push_back(pid);
  }
  std::this_thread::sleep_until(start + kKill);
  ::kill(pids[0], SIGKILL);
  std::this_thread::sleep_until(start + kRestart);
  server.Stop();
  server.Start();
  for (const pid_t pid : pids) ::waitpid(pid, nullptr, 0);
  result.seconds = std::chrono::duration<double>(Clock::now() - start).count();

  // Every acknowledged write must be on the server.
  auto reader = Store("alice");
  std::vector<long> latencies;
  for (int c = 0; c < kClients; ++c) {
    std::ifstream in(Folder() + "/client" + std::to_string(c));
    long i = 0, us = 0;
    while (in >> i >> us) {
      ++result.acknowledged;
      latencies.push_back(us);
      const Variant v = settings::RegReadValue(
          *reader, HKEY_CURRENT_USER, u"Software\\Load",
          norvik50::FromUtf8("c" + std::to_string(c) + "-" + std::to_string(i)), std::nullopt,
          false, nullptr);
      if (v.type() != norvik50::VarType::kLong || v.as_long() != i) ++result.lost;
    }
  }
  std::sort(latencies.begin(), latencies.end());
  if (!latencies.empty()) {
    result.p50_us = latencies[latencies.size() / 2];
    result.p99_us = latencies[latencies.size() * 99 / 100];
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const norvik50::bench::BenchFolder folder("settings-load");
  if (!folder.ok()) return 1;
  Folder() = folder.path();
  if (const std::string& why = settings::PrepareTestServer(); !why.empty()) {
    std::fprintf(stderr, "settings_server_load_bench: no server to measure: %s\n", why.c_str());
    return 1;
  }
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter reporter(norvik50::bench::BestTimeReporter::Clock::kReal);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double anchor_ns = reporter.Ns("BM_OneClientWrite");
  const LoadResult r = RunLoad();
  std::printf(
      "\n%d clients for %.1f s (one killed after %lld ms, the server stopped at once and\n"
      "started again after %lld ms): %ld acknowledged writes, %.0f per second\n",
      kClients, r.seconds, static_cast<long long>(kKill.count()),
      static_cast<long long>(kRestart.count()), r.acknowledged, r.acknowledged / r.seconds);
  if (anchor_ns > 0) {
    std::printf("write latency under load / one client's write alone: median %.1f, p99 %.1f\n",
                r.p50_us * 1000 / anchor_ns, r.p99_us * 1000 / anchor_ns);
  }
  std::printf("acknowledged writes missing afterwards: %ld (target 0)\n", r.lost);
  benchmark::Shutdown();
  return r.lost == 0 ? 0 : 1;
}
