// FTP over TLS: the Internet library beside `curl --ssl-reqd` on the same
// local proftpd server in TLS mode (certificates made by openssl for the
// run), in the same run: a 1 GiB binary get and a 1 GiB binary put. Both
// clients trust the made authority and speak TLS 1.2, the layer's ceiling,
// so they encrypt alike. The end table gives medians, the ratio of the
// layer's throughput to curl's, and how much the layer's peak memory grew
// over all its transfers (constant memory: it must not grow with the file).
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

// The server fixture of the tests, compiled in: benchmarks do not link the
// test support library.
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

double Median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
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

template <class F>
void Timed(benchmark::State& state, const std::string& key, F&& body) {
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    if (!body()) state.SkipWithError("failed");
    const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(s);
    g_world->seconds[key].push_back(s);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kBigSize));
}

void BM_LayerGet1GiB(benchmark::State& state) {
  Session s;
  Timed(state, "TLS get 1 GiB: layer", [&] {
    return s.lib.GetFile(s.connection, "big.bin", g_world->local + "/layer.bin", false, 0,
                         tolva::platform::kFtpTransferTypeBinary);
  });
}

void BM_CurlGet1GiB(benchmark::State& state) {
  Timed(state, "TLS get 1 GiB: curl", [&] {
    return RunCurl({"-o", g_world->local + "/curl.bin", Url("big.bin")}) == 0;
  });
}

void BM_LayerPut1GiB(benchmark::State& state) {
  Session s;
  Timed(state, "TLS put 1 GiB: layer", [&] {
    return s.lib.PutFile(s.connection, g_world->local + "/source.bin", "up-layer.bin",
                         tolva::platform::kFtpTransferTypeBinary);
  });
  g_world->peak_kib_after = PeakKiB();
}

void BM_CurlPut1GiB(benchmark::State& state) {
  Timed(state, "TLS put 1 GiB: curl", [&] {
    return RunCurl({"-T", g_world->local + "/source.bin", Url("up-curl.bin")}) == 0;
  });
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

BENCHMARK(BM_LayerGet1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurlGet1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LayerPut1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurlPut1GiB)->UseManualTime()->Iterations(1)->Repetitions(5)->Unit(benchmark::kMillisecond);

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
