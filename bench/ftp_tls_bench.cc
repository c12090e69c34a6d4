// FTP over TLS: the Internet library beside `curl --ssl-reqd` on the same
// local proftpd server in TLS mode (certificates made by openssl for the
// run), in the same run and in turns: a 1 GiB binary get and a 1 GiB
// binary put, five rounds each. Both
// clients trust the made authority and speak TLS 1.2, the layer's ceiling,
// so they encrypt alike. The end table gives medians, the ratio of the
// layer's throughput to curl's, and how much the layer's peak memory grew
// over all its transfers (constant memory: it must not grow with the file).
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

// The server fixture of the tests, compiled in: benchmarks do not link the
// test support library.
#include "median_ratios.h"
#include "platform/linux/ftp/poco_internet_library.h"
#include "support/ftp_servers.cc"

extern char** environ;

namespace {

using tolva::platform::InternetHandle;
using tolva::platform::posix::ftp::PocoInternetLibrary;
using namespace tolva::testing;

constexpr std::size_t kBigSize = 1u << 30;
constexpr double kBigMiB = 1024;

struct World {
  std::unique_ptr<FtpServer> server;
  std::optional<TestCertificates> certs;
  std::string local;
  std::map<std::string, std::vector<double>> seconds;
  long peak_kib_before = 0, peak_kib_after = 0;
};
World* g_world = nullptr;

long PeakKiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

struct Session {
  PocoInternetLibrary lib;
  InternetHandle internet = 0, connection = 0;
  Session() {
    lib.SetSecurity(tolva::platform::FtpSecurity::kTlsRequired, g_world->certs->authority);
    internet = lib.Open("bench", tolva::platform::kInternetOpenTypeDirect, 0);
    connection = lib.Connect(internet, g_world->server->HostPort(), 0, g_world->server->User(),
                             g_world->server->Password(), tolva::platform::kInternetServiceFtp, 0);
  }
  ~Session() { lib.CloseHandle(internet); }
  // Says why a transfer failed, so a failed run explains itself.
  bool Check(bool ok) {
    if (!ok) std::fprintf(stderr, "error %u: %s\n", lib.LastError(), lib.LastResponseInfo().c_str());
    return ok;
  }
};

int RunCurl(std::vector<std::string> args) {
  args.insert(args.begin(),
              {"/usr/bin/curl", "-s", "--ssl-reqd", "--tls-max", "1.2", "--cacert", g_world->certs->authority});
  std::vector<char*> argv;
  for (auto& a : args) argv.push_back(a.data());
  argv.push_back(nullptr);
  pid_t pid = 0;
  if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0) return -1;
  int status = 0;
  waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string Url(const std::string& file) {
  return "ftp://" + g_world->server->User() + ":" + g_world->server->Password() + "@" + g_world->server->HostPort() +
         "/" + file;
}

// Seconds one transfer took, after a sync, so that no transfer pays for
// the write-back of the one before.
template <class F>
double TimeOne(F&& body, bool& ok) {
  ::sync();
  const auto start = std::chrono::steady_clock::now();
  ok = body() && ok;
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One round: the layer's transfer and curl's, in turns (the order swaps
// every round), so a busy neighbour slows both alike; the manual time is
// the layer's.
template <class L, class C>
void Round(benchmark::State& state, const std::string& way, L&& layer, C&& curl) {
  for (auto _ : state) {
    bool ok = true;
    const bool layer_first = g_world->seconds["TLS " + way + " 1 GiB: layer"].size() % 2 == 0;
    double layer_s = 0, curl_s = 0;
    if (layer_first) layer_s = TimeOne(layer, ok);
    curl_s = TimeOne(curl, ok);
    if (!layer_first) layer_s = TimeOne(layer, ok);
    if (!ok) state.SkipWithError("failed");
    state.SetIterationTime(layer_s);
    g_world->seconds["TLS " + way + " 1 GiB: layer"].push_back(layer_s);
    g_world->seconds["TLS " + way + " 1 GiB: curl"].push_back(curl_s);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBigSize));
}

void BM_TlsGet1GiB(benchmark::State& state) {
  Session s;
  Round(
      state, "get",
      [&] {
        return s.Check(s.connection != 0 && s.lib.GetFile(s.connection, "big.bin", g_world->local + "/layer.bin", false,
                                                          0, tolva::platform::kFtpTransferTypeBinary));
      },
      [&] {
        return RunCurl({"-o", g_world->local + "/curl.bin", Url("big.bin")}) == 0;
      });
}

void BM_TlsPut1GiB(benchmark::State& state) {
  Session s;
  Round(
      state, "put",
      [&] {
        return s.Check(s.connection != 0 && s.lib.PutFile(s.connection, g_world->local + "/source.bin", "up-layer.bin",
                                                          tolva::platform::kFtpTransferTypeBinary));
      },
      [&] {
        return RunCurl({"-T", g_world->local + "/source.bin", Url("up-curl.bin")}) == 0;
      });
  g_world->peak_kib_after = PeakKiB();
}

// Writes `size` bytes of a fixed pattern in 1 MiB pieces, so the bench's own
// memory stays small and the peak measures the transfers.
bool WritePattern(const std::string& path, std::size_t size) {
  std::string piece(1 << 20, '\0');
  for (std::size_t i = 0; i < piece.size(); ++i) piece[i] = static_cast<char>(i * 131 + i / 977);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  for (std::size_t done = 0; done < size; done += piece.size())
    out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  return static_cast<bool>(out);
}

}  // namespace

BENCHMARK(BM_TlsGet1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TlsPut1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
  World world;
  g_world = &world;
  std::string why;
  world.local = MakeTempDir("tolva-ftp-tls-bench-");
  world.certs = TestCertificates::Make(world.local, &why);
  if (world.certs)
    world.server = FtpServer::Start(FtpServerKind::kProftpd, &why, world.certs->server, world.certs->key);
  if (!world.server) {
    std::fprintf(stderr, "no TLS server: %s\n", why.c_str());
    RemoveTree(world.local);
    return 1;
  }
  if (!WritePattern(world.server->Root() + "/big.bin", kBigSize) ||
      !WritePattern(world.local + "/source.bin", kBigSize)) {
    std::fprintf(stderr, "cannot write the 1 GiB files\n");
    RemoveTree(world.local);
    return 1;
  }
  world.peak_kib_before = PeakKiB();

  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();

  std::printf("\n%-30s %14s\n", "median", "seconds");
  for (const auto& [key, v] : world.seconds) std::printf("%-30s %14.3f\n", key.c_str(), Median(v));
  for (const char* way : {"get", "put"}) {
    const double layer = Median(world.seconds[std::string("TLS ") + way + " 1 GiB: layer"]);
    const double curl = Median(world.seconds[std::string("TLS ") + way + " 1 GiB: curl"]);
    if (layer > 0 && curl > 0) {
      std::printf("TLS %s 1 GiB: layer %.0f MiB/s, curl %.0f MiB/s, layer throughput / curl = %.2f\n", way,
                  kBigMiB / layer, kBigMiB / curl, curl / layer);
    }
  }
  std::printf("peak memory: %ld KiB before the layer's transfers, %ld KiB after (growth %ld KiB)\n",
              world.peak_kib_before, world.peak_kib_after, world.peak_kib_after - world.peak_kib_before);
  RemoveTree(world.local);
  return 0;
}
