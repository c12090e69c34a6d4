// The Internet library beside curl on the same local proftpd server, in the
// same run: a 256 MiB binary get (the file sits in the page cache), a 1 KiB
// get on an open connection, and 10,000 open/close cycles of a file handle
// (descriptors and handles counted before and after: nothing may leak).
// The end table gives medians and the ratio against curl.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// The server fixture of the tests, compiled in: benchmarks do not link the
// test support library.
#include "median_ratios.h"
#include "support/ftp_servers.cc"
#include "platform/linux/ftp/poco_internet_library.h"

extern char** environ;

namespace {

using tolva::platform::InternetHandle;
using tolva::platform::posix::ftp::PocoInternetLibrary;
using namespace tolva::testing;

constexpr std::size_t kBigSize = 256u << 20;

struct World {
  std::unique_ptr<FtpServer> server;
  std::string local;
  std::map<std::string, std::vector<double>> seconds;
};
World* g_world = nullptr;

struct Session {
  PocoInternetLibrary lib;
  InternetHandle internet = 0, connection = 0;
  Session() {
    internet = lib.Open("bench", tolva::platform::kInternetOpenTypeDirect, 0);
    connection = lib.Connect(internet, g_world->server->HostPort(), 0, g_world->server->User(),
                             g_world->server->Password(), tolva::platform::kInternetServiceFtp, 0);
  }
  ~Session() { lib.CloseHandle(internet); }
};

int RunCurl(const std::string& url, const std::string& out) {
  std::vector<std::string> args = {"/usr/bin/curl", "-s", "-o", out, url};
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

template <class F>
void Timed(benchmark::State& state, const std::string& key, F&& body) {
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (!body()) state.SkipWithError("failed");
    const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(s);
    g_world->seconds[key].push_back(s);
  }
}

void BM_LayerGet256MiB(benchmark::State& state) {
  Session s;
  Timed(state, "get 256 MiB: layer", [&] {
    return s.lib.GetFile(s.connection, "big.bin", g_world->local + "/layer.bin", false, 0,
                         tolva::platform::kFtpTransferTypeBinary);
  });
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBigSize));
}

void BM_CurlGet256MiB(benchmark::State& state) {
  const std::string url = "ftp://" + g_world->server->User() + ":" + g_world->server->Password() + "@" +
                          g_world->server->HostPort() + "/big.bin";
  Timed(state, "get 256 MiB: curl", [&] { return RunCurl(url, g_world->local + "/curl.bin") == 0; });
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBigSize));
}

void BM_LayerGet1KiB(benchmark::State& state) {
  Session s;
  Timed(state, "get 1 KiB on an open connection: layer", [&] {
    return s.lib.GetFile(s.connection, "small.bin", g_world->local + "/small.bin", false, 0,
                         tolva::platform::kFtpTransferTypeBinary);
  });
}

void BM_CurlGet1KiB(benchmark::State& state) {
  // curl logs in for every file: the reference includes its login.
  const std::string url = "ftp://" + g_world->server->User() + ":" + g_world->server->Password() + "@" +
                          g_world->server->HostPort() + "/small.bin";
  Timed(state, "get 1 KiB with login: curl", [&] { return RunCurl(url, g_world->local + "/small-curl.bin") == 0; });
}

void BM_OpenClose10000(benchmark::State& state) {
  Session s;
  for (auto _ : state) {
    const int fds = CountOpenDescriptors();
    const std::size_t handles = s.lib.OpenHandleCount();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 10000; ++i) {
      InternetHandle f = s.lib.OpenFile(s.connection, "small.bin", tolva::platform::kGenericRead,
                                        tolva::platform::kFtpTransferTypeBinary);
      if (f == 0 || !s.lib.CloseHandle(f)) {
        state.SkipWithError("open/close failed");
        break;
      }
    }
    const double sec = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(sec);
    g_world->seconds["10,000 open/close of a file handle: layer"].push_back(sec);
    state.counters["leaked_fds"] = CountOpenDescriptors() - fds;
    state.counters["leaked_handles"] = static_cast<double>(s.lib.OpenHandleCount() - handles);
  }
}

}  // namespace

BENCHMARK(BM_LayerGet256MiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurlGet256MiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayerGet1KiB)->UseManualTime()->Iterations(200)->Repetitions(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_CurlGet1KiB)->UseManualTime()->Iterations(20)->Repetitions(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_OpenClose10000)->UseManualTime()->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  World world;
  g_world = &world;
  std::string why;
  world.server = FtpServer::Start(FtpServerKind::kProftpd, &why);
  if (!world.server) {
    std::fprintf(stderr, "no server: %s\n", why.c_str());
    return 1;
  }
  world.local = MakeTempDir("tolva-ftp-bench-");
  std::string big(kBigSize, '\0');
  for (std::size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 131);
  WriteWholeFile(world.server->Root() + "/big.bin", big);
  WriteWholeFile(world.server->Root() + "/small.bin", big.substr(0, 1024));
  big.clear();
  big.shrink_to_fit();

  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();

  std::printf("\n%-45s %14s\n", "median", "seconds");
  for (const auto& [key, v] : world.seconds) std::printf("%-45s %14.6f\n", key.c_str(), Median(v));
  const double layer = Median(world.seconds["get 256 MiB: layer"]);
  const double curl = Median(world.seconds["get 256 MiB: curl"]);
  if (layer > 0 && curl > 0) {
    std::printf("get 256 MiB: layer %.0f MiB/s, curl %.0f MiB/s, layer time / curl time = %.2f\n", 256 / layer,
                256 / curl, layer / curl);
  }
  const double small = Median(world.seconds["get 1 KiB on an open connection: layer"]);
  const double small_curl = Median(world.seconds["get 1 KiB with login: curl"]);
  if (small > 0 && small_curl > 0) std::printf("get 1 KiB: layer / curl = %.2f\n", small / small_curl);
  RemoveTree(world.local);
  return 0;
}
