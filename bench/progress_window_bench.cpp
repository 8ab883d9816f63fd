// A host updates the progress window from inside its loops, so a counter
// update must cost little more than the toolkit's own. Measured in one
// run on the offscreen platform:
//  - the anchor: a bare QProgressBar::setValue plus processEvents;
//  - tklSendMessage with only CurCount (events processed): target within
//    2x of the anchor;
//  - tklSendMessage with CurCount and NoEvents: target at least 50,000
//    updates per second (a bare setValue is printed beside it).
// The bar's range is large, so that most steps move the bar by less than a
// pixel and every variant repaints equally seldom.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QApplication>
#include <QProgressBar>
#include <QVBoxLayout>
#include <QWidget>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "bench_folder.h"
#include "best_time_reporter.h"
#include "norvik50/lib.h"
#include "norvik50/qt_dialogs.h"

namespace {

constexpr int32_t kMaximum = 1'000'000;

norvik50::LIB& Lib() {
  static norvik50::LIB lib;
  return lib;
}

// The anchor's window: a plain widget with a bar of the same size.
struct AnchorWindow {
  QWidget window;
  QProgressBar* bar = nullptr;
  AnchorWindow() {
    bar = new QProgressBar(&window);
    bar->setTextVisible(false);
    bar->setRange(0, kMaximum);
    bar->setGeometry(8, 80, 376, 17);
    window.resize(392, 104);
    window.show();
  }
};

// Lives while the application does: main() closes it before the
// application object goes.
std::unique_ptr<AnchorWindow>& AnchorSlot() {
  static std::unique_ptr<AnchorWindow> anchor;
  return anchor;
}

AnchorWindow& Anchor() {
  if (!AnchorSlot()) AnchorSlot() = std::make_unique<AnchorWindow>();
  return *AnchorSlot();
}

void BM_AnchorSetValueProcessEvents(benchmark::State& state) {
  QProgressBar* bar = Anchor().bar;
  int32_t i = 0;
  for (auto _ : state) {
    bar->setValue(i);
    QCoreApplication::processEvents();
    i = (i + 1) % kMaximum;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AnchorSetValueProcessEvents);

void BM_AnchorSetValue(benchmark::State& state) {
  QProgressBar* bar = Anchor().bar;
  int32_t i = 0;
  for (auto _ : state) {
    bar->setValue(i);
    i = (i + 1) % kMaximum;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AnchorSetValue);

void CountLoop(benchmark::State& state, bool no_events) {
  int32_t i = 0;
  for (auto _ : state) {
    norvik50::Variant cur(i);
    Lib().tklSendMessage(std::nullopt, std::nullopt, std::nullopt, &cur, nullptr, 0, std::nullopt,
                         std::nullopt, std::nullopt, no_events);
    i = (i + 1) % kMaximum;
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_tklSendMessageCurCount(benchmark::State& state) { CountLoop(state, false); }
BENCHMARK(BM_tklSendMessageCurCount);

void BM_tklSendMessageNoEvents(benchmark::State& state) { CountLoop(state, true); }
BENCHMARK(BM_tklSendMessageNoEvents);

}  // namespace

int main(int argc, char** argv) {
  const norvik50::bench::BenchFolder folder("progress");
  if (!folder.ok()) return 1;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  unsetenv("NORVIK50_DIALOG_SCRIPT");
  unsetenv("NORVIK50_DIALOG_LOG");
  static int qargc = 1;
  static char name[] = "progress_window_bench";
  static char* qargv[] = {name, nullptr};
  QApplication app(qargc, qargv);
  norvik50::InstallQtDialogs();
  // The window as a host opens it before its loop: text, counter, range.
  norvik50::Variant cur(int32_t{0});
  norvik50::Variant max(kMaximum);
  Lib().tklSendMessage(norvik50::Variant(u"Posting invoices"), norvik50::Variant(u"Bench"),
                       norvik50::Variant(true), &cur, &max);
  Anchor();
  QCoreApplication::processEvents();

  benchmark::Initialize(&argc, argv);
  // CPU time: every variant works in this process, none waits for anything.
  norvik50::bench::BestTimeReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const char* anchor = "BM_AnchorSetValueProcessEvents";
  const char* pumped = "BM_tklSendMessageCurCount";
  const char* quiet = "BM_tklSendMessageNoEvents";
  if (const double ratio = reporter.Ratio(pumped, anchor); ratio > 0) {
    std::printf("\nRatio (CPU time)\n%-30s / %-30s = %5.2f (target <= 2)\n", pumped, anchor,
                ratio);
  }
  if (const double ns = reporter.Ns(quiet); ns > 0) {
    std::printf("%-30s: %.0f updates/s (target >= 50000); %.2fx a bare setValue\n", quiet,
                1e9 / ns, reporter.Ratio(quiet, "BM_AnchorSetValue"));
  }
  Lib().tklClearMessage();
  AnchorSlot().reset();
  benchmark::Shutdown();
  return 0;
}
