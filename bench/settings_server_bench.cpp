// The settings server store against its anchors, in one run on a server of
// its own (started as the tests start theirs: initdb and pg_ctl in a
// temporary folder, unix socket, fsync off for both sides alike):
//
//   tkrGetLong, cached, on the server store   vs tkrGetLong on the local store
//   tkrGetString of a value not yet read       vs the raw libpq round trip of
//                                                the same prepared SELECT
//   tkrSetValue of a Long on the server        vs the raw libpq round trip of
//                                                the same prepared upsert
//
// Targets: each within 1.5x of its anchor. The first read and the write
// also keep the local copy for when the server is away (a SQLite write).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench_folder.h"
#include "best_time_reporter.h"
#include "norvik50/encoding.h"
#include "norvik50/lib.h"
#include "settings/pg_server_for_tests.h"
#include "settings/routing_store.h"
#include "settings/sqlite_store.h"

namespace {

using norvik50::HKEY_CURRENT_USER;
using norvik50::LIB;
using norvik50::Variant;
namespace settings = norvik50::settings;

constexpr std::u16string_view kKey = u"Software\\Bench";

LIB& Lib() {
  static LIB lib;
  return lib;
}

std::shared_ptr<norvik50::RegistryStore>& ServerStore() {
  static std::shared_ptr<norvik50::RegistryStore> store;
  return store;
}

void BM_LocalRead(benchmark::State& state) {
  norvik50::SetRegistryStore(std::make_shared<settings::SqliteStore>());
  Lib().tkrSetValue(HKEY_CURRENT_USER, kKey, u"Count", Variant(int32_t{42}));
  for (auto _ : state)
    benchmark::DoNotOptimize(Lib().tkrGetLong(HKEY_CURRENT_USER, kKey, u"Count"));
}
BENCHMARK(BM_LocalRead);

void BM_ServerCachedRead(benchmark::State& state) {
  norvik50::SetRegistryStore(ServerStore());
  Lib().tkrSetValue(HKEY_CURRENT_USER, kKey, u"Count", Variant(int32_t{42}));
  for (auto _ : state)
    benchmark::DoNotOptimize(Lib().tkrGetLong(HKEY_CURRENT_USER, kKey, u"Count"));
}
BENCHMARK(BM_ServerCachedRead);

void BM_ServerFirstRead(benchmark::State& state) {
  norvik50::SetRegistryStore(ServerStore());
  Lib().tkrSetValue(HKEY_CURRENT_USER, kKey, u"Count", Variant(int32_t{42}));
  // Every name is new to the cache, in every run Google Benchmark makes:
  // each read asks the server.
  static int64_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Lib().tkrGetString(
        HKEY_CURRENT_USER, kKey, u"Unread" + norvik50::FromUtf8(std::to_string(++i))));
  }
}
BENCHMARK(BM_ServerFirstRead);

void BM_ServerWrite(benchmark::State& state) {
  norvik50::SetRegistryStore(ServerStore());
  int32_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Lib().tkrSetValue(HKEY_CURRENT_USER, kKey, u"Written", Variant(++i)));
  }
}
BENCHMARK(BM_ServerWrite);

// The same statements the store prepares, on a plain connection.
std::unique_ptr<settings::PgConnection> RawConnection() {
  std::string error;
  auto conn = settings::PgConnection::Connect(settings::ServerConninfo("alice"), 10, error);
  settings::PgFailure failure;
  if (conn) {
    conn->Prepare("get",
                  "SELECT type, data FROM norvik50.user_values WHERE owner = session_user AND "
                  "root = $1 AND key = $2 AND fold = $3",
                  failure);
    conn->Prepare("put",
                  "INSERT INTO norvik50.user_values (owner, root, key, fold, name, type, data) "
                  "VALUES (session_user, $1, $2, $3, $4, $5, $6) ON CONFLICT (owner, root, key, "
                  "fold) DO UPDATE SET type = EXCLUDED.type, data = EXCLUDED.data",
                  failure);
  }
  return conn;
}

void BM_RawLibpqRead(benchmark::State& state) {
  auto conn = RawConnection();
  settings::PgFailure failure;
  int64_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(conn->ExecPrepared(
        "get",
        {settings::PgParam::Int(HKEY_CURRENT_USER), settings::PgParam::Bytes("software\\bench"),
         settings::PgParam::Bytes("unread" + std::to_string(++i))},
        failure));
  }
}
BENCHMARK(BM_RawLibpqRead);

void BM_RawLibpqWrite(benchmark::State& state) {
  auto conn = RawConnection();
  settings::PgFailure failure;
  int32_t i = 0;
  for (auto _ : state) {
    const uint32_t v = static_cast<uint32_t>(++i);
    const std::string bytes{static_cast<char>(v), static_cast<char>(v >> 8),
                            static_cast<char>(v >> 16), static_cast<char>(v >> 24)};
    benchmark::DoNotOptimize(conn->ExecPrepared(
        "put",
        {settings::PgParam::Int(HKEY_CURRENT_USER), settings::PgParam::Bytes("software\\bench"),
         settings::PgParam::Bytes("written"), settings::PgParam::Bytes("Written"),
         settings::PgParam::Int(4), settings::PgParam::Bytes(bytes)},
        failure));
  }
}
BENCHMARK(BM_RawLibpqWrite);

}  // namespace

int main(int argc, char** argv) {
  const norvik50::bench::BenchFolder folder("settings-server");
  if (!folder.ok()) return 1;
  if (const std::string& why = settings::PrepareTestServer(); !why.empty()) {
    std::fprintf(stderr, "settings_server_bench: no server to measure: %s\n", why.c_str());
    return 1;
  }
  setenv("NORVIK50_STORE_HKCU", settings::ServerConninfo("alice").c_str(), 1);
  ServerStore() = settings::MakeConfiguredStore();
  benchmark::Initialize(&argc, argv);
  norvik50::bench::BestTimeReporter reporter(norvik50::bench::BestTimeReporter::Clock::kReal);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  auto ratio = [&](const char* a, const char* b) {
    if (const double r = reporter.Ratio(a, b); r > 0) {
      std::printf("%-22s / %-18s = %8.2f\n", a, b, r);
    }
  };
  std::printf("\nRatios (targets: each <= 1.5)\n");
  ratio("BM_ServerCachedRead", "BM_LocalRead");
  ratio("BM_ServerFirstRead", "BM_RawLibpqRead");
  ratio("BM_ServerWrite", "BM_RawLibpqWrite");
  norvik50::SetRegistryStore(nullptr);
  ServerStore().reset();
  benchmark::Shutdown();
  return 0;
}
