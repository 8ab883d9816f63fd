// The console reporter every benchmark program here uses: it prints what
// Google Benchmark prints and keeps one time per benchmark for the ratios
// the program prints at the end.
//
// The kept time is the best (smallest) of the repetitions: the machine may
// be busy with other work, and interference only ever adds time. When only
// aggregates are reported (--benchmark_report_aggregates_only), the median
// stands in for it. Times are kept in nanoseconds whatever unit a benchmark
// reports in, so ratios never mix units.
#ifndef NORVIK50_BENCH_BEST_TIME_REPORTER_H_
#define NORVIK50_BENCH_BEST_TIME_REPORTER_H_

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace norvik50::bench {

class BestTimeReporter : public benchmark::ConsoleReporter {
 public:
  // CPU time does not depend on what else the machine runs; real time is
  // for benchmarks that wait (a window being painted, a disk write).
  enum class Clock { kCpu, kReal };

  explicit BestTimeReporter(Clock clock = Clock::kCpu) : clock_(clock) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred) continue;
      const std::string name = Key(run);
      const double ns = Nanoseconds(run);
      if (run.run_type == Run::RT_Aggregate) {
        if (run.aggregate_name == "median") medians_[name] = ns;
        continue;
      }
      auto [it, fresh] = best_.emplace(name, ns);
      if (!fresh) it->second = std::min(it->second, ns);
    }
  }

  // The kept time per iteration of `name` in nanoseconds, 0 when it did not
  // run (filtered out). `name` is the function name followed by the
  // argument values, "BM_OtherCase/1000", without argument names or
  // "/manual_time".
  double Ns(const std::string& name) const {
    if (const auto it = best_.find(name); it != best_.end()) return it->second;
    if (const auto it = medians_.find(name); it != medians_.end()) return it->second;
    return 0.0;
  }

  // Ns(a) / Ns(b), 0 when either did not run.
  double Ratio(const std::string& a, const std::string& b) const {
    const double num = Ns(a);
    const double den = Ns(b);
    return num > 0.0 && den > 0.0 ? num / den : 0.0;
  }

 private:
  static std::string Key(const Run& run) {
    std::string key = run.run_name.function_name;
    // "corpus:0/size:10" -> "/0/10".
    const std::string& args = run.run_name.args;
    for (std::size_t start = 0; start < args.size();) {
      std::size_t end = args.find('/', start);
      if (end == std::string::npos) end = args.size();
      std::string part = args.substr(start, end - start);
      if (const std::size_t colon = part.find(':'); colon != std::string::npos) {
        part.erase(0, colon + 1);
      }
      key += "/" + part;
      start = end + 1;
    }
    return key;
  }

  double Nanoseconds(const Run& run) const {
    const double per_iteration =
        clock_ == Clock::kCpu ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
    return per_iteration * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
  }

  Clock clock_;
  std::map<std::string, double> best_;
  std::map<std::string, double> medians_;
};

}  // namespace norvik50::bench

#endif  // NORVIK50_BENCH_BEST_TIME_REPORTER_H_
