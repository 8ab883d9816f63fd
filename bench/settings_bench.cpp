// The settings store against raw SQLite and QSettings, in one run.
//
//   tkrGetLong of an existing value       vs a raw prepared SQLite point read
//   tkrSetValue of a Long (committed)     vs a raw SQLite WAL write, and
//                                           QSettings setValue + sync
//   tkrGetString of a missing value with bAutoCreate
//   tkrSubKeyCount of a 1,000-key tree
//
// Targets: a read within 1.5x of the raw point read; a committed write
// within 1.2x of the raw SQLite write with the same settings (WAL,
// synchronous=NORMAL). QSettings is information only: it syncs to disk on
// every call, so its figure is the disk's fsync.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>

#include "norvik50/encoding.h"
#include "norvik50/lib.h"

#ifdef NORVIK50_BENCH_QSETTINGS
#include <QSettings>
#include <QString>
#endif

namespace {

using norvik50::HKEY_CURRENT_USER;
using norvik50::LIB;
using norvik50::Variant;

std::string& Folder() {
  static std::string folder;
  return folder;
}

LIB& Lib() {
  static LIB lib;
  return lib;
}

void BM_RawSqlitePointRead(benchmark::State& state) {
  SQLite::Database db(Folder() + "/raw.db", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  db.exec(
      "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
      "CREATE TABLE IF NOT EXISTS kv(k TEXT PRIMARY KEY, v BLOB);"
      "INSERT OR REPLACE INTO kv VALUES('count', x'2a000000');");
  SQLite::Statement read(db, "SELECT v FROM kv WHERE k=?1");
  for (auto _ : state) {
    read.bind(1, "count");
    read.executeStep();
    benchmark::DoNotOptimize(read.getColumn(0).getBytes());
    read.reset();
  }
}
BENCHMARK(BM_RawSqlitePointRead);

void BM_RawSqliteWrite(benchmark::State& state) {
  SQLite::Database db(Folder() + "/raw.db", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
  db.exec(
      "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
      "CREATE TABLE IF NOT EXISTS kv(k TEXT PRIMARY KEY, v BLOB);");
  SQLite::Statement write(db, "INSERT OR REPLACE INTO kv VALUES(?1, ?2)");
  int32_t i = 0;
  for (auto _ : state) {
    write.bind(1, "count");
    write.bind(2, ++i);
    write.exec();
    write.reset();
  }
}
BENCHMARK(BM_RawSqliteWrite);

void BM_tkrGetLong(benchmark::State& state) {
  Lib().tkrSetValue(HKEY_CURRENT_USER, u"Software\\Bench", u"Count", Variant(int32_t{42}));
  for (auto _ : state) {
    benchmark::DoNotOptimize(Lib().tkrGetLong(HKEY_CURRENT_USER, u"Software\\Bench", u"Count"));
  }
}
BENCHMARK(BM_tkrGetLong);

void BM_tkrSetValueLong(benchmark::State& state) {
  int32_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Lib().tkrSetValue(HKEY_CURRENT_USER, u"Software\\Bench", u"Written", Variant(++i)));
  }
}
BENCHMARK(BM_tkrSetValueLong);

void BM_tkrGetStringMissingAutoCreate(benchmark::State& state) {
  int i = 0;
  for (auto _ : state) {
    // A new name each time, so that every call finds the value missing.
    const std::u16string name = u"Missing" + norvik50::FromUtf8(std::to_string(++i));
    benchmark::DoNotOptimize(
        Lib().tkrGetString(HKEY_CURRENT_USER, u"Software\\BenchMissing", name, u"x", true));
  }
}
BENCHMARK(BM_tkrGetStringMissingAutoCreate);

void BM_tkrSubKeyCount1000(benchmark::State& state) {
  // 10 children with 99 leaves each: 1,000 keys below the counted one.
  if (Lib().tkrSubKeyCount(HKEY_CURRENT_USER, u"Software\\Tree") != 1001) {
    for (int a = 0; a < 10; ++a) {
      for (int b = 0; b < 99; ++b) {
        const std::u16string path = u"Software\\Tree\\k" + norvik50::FromUtf8(std::to_string(a)) +
                                    u"\\j" + norvik50::FromUtf8(std::to_string(b));
        Lib().tkrSetValue(HKEY_CURRENT_USER, path, u"v", Variant(int32_t{1}));
      }
    }
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(Lib().tkrSubKeyCount(HKEY_CURRENT_USER, u"Software\\Tree"));
  }
}
BENCHMARK(BM_tkrSubKeyCount1000)->Unit(benchmark::kMillisecond);

#ifdef NORVIK50_BENCH_QSETTINGS
void BM_QSettingsSetValueSync(benchmark::State& state) {
  QSettings settings(QString::fromStdString(Folder() + "/qsettings.ini"), QSettings::IniFormat);
  int i = 0;
  for (auto _ : state) {
    settings.setValue("Bench/Written", ++i);
    settings.sync();
  }
}
BENCHMARK(BM_QSettingsSetValueSync)->Unit(benchmark::kMicrosecond);
#endif

// Keeps each benchmark's time per iteration for the ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  std::map<std::string, double> ns;
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& r : runs) {
      ns[r.benchmark_name()] =
          r.GetAdjustedRealTime() * (r.time_unit == benchmark::kMillisecond   ? 1e6
                                     : r.time_unit == benchmark::kMicrosecond ? 1e3
                                                                              : 1.0);
    }
    ConsoleReporter::ReportRuns(runs);
  }
};

}  // namespace

int main(int argc, char** argv) {
  char pattern[] = "/tmp/norvik50-settings-bench-XXXXXX";
  if (mkdtemp(pattern) == nullptr) return 1;
  Folder() = pattern;
  setenv("NORVIK50_REGISTRY_DIR", pattern, 1);
  setenv("TMPDIR", pattern, 1);
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto& t = reporter.ns;
  auto ratio = [&](const char* a, const char* b) {
    if (t.count(a) && t.count(b) && t.at(b) > 0) {
      std::printf("%-34s / %-28s = %8.2f\n", a, b, t.at(a) / t.at(b));
    }
  };
  std::printf("\nRatios (targets: read <= 1.5; write <= 1.2; the rest information)\n");
  ratio("BM_tkrGetLong", "BM_RawSqlitePointRead");
  ratio("BM_tkrSetValueLong", "BM_RawSqliteWrite");
  ratio("BM_tkrSetValueLong", "BM_QSettingsSetValueSync");
  ratio("BM_tkrGetStringMissingAutoCreate", "BM_tkrSetValueLong");
  std::error_code ignored;
  std::filesystem::remove_all(pattern, ignored);
  benchmark::Shutdown();
  return 0;
}
