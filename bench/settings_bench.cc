// Settings members on a real database beside bare SQLite doing the least
// the same job needs: one upsert (a save) or one select (a get) of one row
// of a two-column table, same pragmas (WAL, synchronous=NORMAL), prepared
// once. Reported as items per second; compare the rates of one run.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "tolva/tolva2011register.h"

namespace {

std::string TempDatabase(const char* name) {
  static std::string dir = [] {
    std::string t = "/tmp/tolva-settings-bench-XXXXXX";
    return ::mkdtemp(t.data()) ? t : std::string("/tmp");
  }();
  const std::string path = dir + "/" + name;
  for (const char* suffix : {"", "-wal", "-shm"}) std::remove((path + suffix).c_str());
  return path;
}

tolva::platform::Services DatabaseServices(const std::string& path) {
  tolva::platform::Services s;
  s.settings = tolva::platform::NewSettingsDatabase(path, "");
  return s;
}

// The reference: a bare table written and read with prepared statements.
class BareTable {
 public:
  explicit BareTable(const std::string& path) {
    sqlite3_open(path.c_str(), &db_);
    sqlite3_exec(db_,
                 "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                 "CREATE TABLE IF NOT EXISTS t(k TEXT PRIMARY KEY, v BLOB) WITHOUT ROWID;",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(db_, "INSERT INTO t(k, v) VALUES(?1, ?2) ON CONFLICT(k) DO UPDATE SET v = excluded.v", -1,
                       &upsert_, nullptr);
    sqlite3_prepare_v2(db_, "SELECT v FROM t WHERE k = ?1", -1, &select_, nullptr);
  }
  ~BareTable() {
    sqlite3_finalize(upsert_);
    sqlite3_finalize(select_);
    sqlite3_close(db_);
  }
  void Upsert(const std::string& k, const std::string& v) {
    sqlite3_bind_text(upsert_, 1, k.data(), static_cast<int>(k.size()), SQLITE_STATIC);
    sqlite3_bind_blob(upsert_, 2, v.data(), static_cast<int>(v.size()), SQLITE_STATIC);
    sqlite3_step(upsert_);
    sqlite3_reset(upsert_);
  }
  std::string Select(const std::string& k) {
    sqlite3_bind_text(select_, 1, k.data(), static_cast<int>(k.size()), SQLITE_STATIC);
    std::string v;
    if (sqlite3_step(select_) == SQLITE_ROW)
      v.assign(static_cast<const char*>(sqlite3_column_blob(select_, 0)),
               static_cast<std::size_t>(sqlite3_column_bytes(select_, 0)));
    sqlite3_reset(select_);
    return v;
  }

 private:
  sqlite3* db_ = nullptr;
  sqlite3_stmt* upsert_ = nullptr;
  sqlite3_stmt* select_ = nullptr;
};

std::string KeyName(long i) {
  return "Key" + std::to_string(i % 1000);
}

void BM_BareSqliteUpsert(benchmark::State& state) {
  BareTable t(TempDatabase("bare-upsert.db"));
  long i = 0;
  for (auto _ : state) {
    t.Upsert(KeyName(i), "value " + std::to_string(i));
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BareSqliteUpsert)->MinTime(1.0);

void BM_RegistrySaveSetting(benchmark::State& state) {
  tolva::Tolva2011Register c(DatabaseServices(TempDatabase("save.db")));
  c.RegistryApp("Bench");
  long i = 0;
  for (auto _ : state) {
    c.RegistrySaveSetting("Section", KeyName(i), "value " + std::to_string(i));
    ++i;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RegistrySaveSetting)->MinTime(1.0);

void BM_BareSqliteSelect(benchmark::State& state) {
  BareTable t(TempDatabase("bare-select.db"));
  for (long i = 0; i < 1000; ++i) t.Upsert(KeyName(i), "value");
  long i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(t.Select(KeyName(i++)));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BareSqliteSelect)->MinTime(1.0);

void BM_RegistryGetSetting(benchmark::State& state) {
  tolva::Tolva2011Register c(DatabaseServices(TempDatabase("get.db")));
  c.RegistryApp("Bench");
  for (long i = 0; i < 1000; ++i) c.RegistrySaveSetting("Section", KeyName(i), "value");
  long i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(c.RegistryGetSetting("Section", KeyName(i++), "default"));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RegistryGetSetting)->MinTime(1.0);

// Listing an application of 10,000 sections; each iteration lists all of them.
void BM_RegistryGetSections10000(benchmark::State& state) {
  tolva::Tolva2011Register c(DatabaseServices(TempDatabase("sections.db")));
  c.RegistryApp("Many");
  for (int i = 0; i < 10000; ++i) c.RegistrySaveSetting("Section" + std::to_string(i), "k", "v");
  tolva::HostArray<std::string> names = tolva::HostArray<std::string>::OneDim(1, 10000);
  for (auto _ : state) benchmark::DoNotOptimize(c.RegistryGetSections(names, 10000));
}
BENCHMARK(BM_RegistryGetSections10000)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace

BENCHMARK_MAIN();
