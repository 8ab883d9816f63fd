// A call by name through the C interface against the same call through the
// C++ dispatch by name (the anchor), in one process on the one shared
// library: what the C layer adds (values made, checked and freed at the
// boundary). Target: the C call within 1.5x of the anchor.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <vector>

#include "best_time_reporter.h"
#include "norvik50/dispatch.h"
#include "norvik50/lib.h"
#include "norvik50/norvik50.h"

namespace {

void BM_CppDispatchByName(benchmark::State& state) {
  norvik50::LIB lib;
  for (auto _ : state) {
    std::vector<std::optional<norvik50::Variant>> args;
    args.emplace_back(norvik50::Variant(u"1234,56"));
    const norvik50::InvokeResult r = norvik50::Invoke(lib, "tklVal", std::move(args));
    benchmark::DoNotOptimize(r.result->as_double());
  }
}
BENCHMARK(BM_CppDispatchByName);

// What a C host writes for one call: the argument made from UTF-8, the
// call, the result read, both values freed.
void BM_CInvoke(benchmark::State& state) {
  norvik50_lib* lib = nullptr;
  norvik50_lib_new(&lib, nullptr);
  norvik50_error err = NORVIK50_ERROR_INIT;
  for (auto _ : state) {
    norvik50_value* arg = nullptr;
    norvik50_value_new_utf8("1234,56", 7, &arg);
    norvik50_value* result = nullptr;
    if (norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, &arg, 1, &result, &err) != 0) {
      state.SkipWithError("the call failed");
      break;
    }
    double d = 0;
    norvik50_value_get_double(result, &d);
    benchmark::DoNotOptimize(d);
    norvik50_value_free(result);
    norvik50_value_free(arg);
  }
  norvik50_error_clear(&err);
  norvik50_lib_free(lib);
}
BENCHMARK(BM_CInvoke);

// The argument made once and passed again: the boundary's own cost.
void BM_CInvokeReusedArgument(benchmark::State& state) {
  norvik50_lib* lib = nullptr;
  norvik50_lib_new(&lib, nullptr);
  norvik50_value* arg = nullptr;
  norvik50_value_new_utf8("1234,56", 7, &arg);
  for (auto _ : state) {
    norvik50_value* result = nullptr;
    norvik50_invoke(lib, "tklVal", NORVIK50_METHOD, &arg, 1, &result, nullptr);
    norvik50_value_free(result);
  }
  norvik50_value_free(arg);
  norvik50_lib_free(lib);
}
BENCHMARK(BM_CInvokeReusedArgument);

}  // namespace

int main(int argc, char** argv) {
  setenv("NORVIK50_LOCALE", "de-DE", 1);
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const double anchor = reporter.Ns("BM_CppDispatchByName");
  std::printf("\ntklVal(\"1234,56\") by name, against the C++ dispatch (%.0f ns)\n", anchor);
  for (const char* name : {"BM_CInvoke", "BM_CInvokeReusedArgument"}) {
    const double ns = reporter.Ns(name);
    if (ns > 0 && anchor > 0) {
      std::printf("%-26s %7.0f ns  %5.2fx  (target: 1.5x at most)\n", name, ns, ns / anchor);
    }
  }
  benchmark::Shutdown();
  return 0;
}
