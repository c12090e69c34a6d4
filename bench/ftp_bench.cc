// The FTP members beside their references, measured in the same run on the
// same local server (pyftpdlib, or the one TOLVA_BENCH_FTPD names, on
// 127.0.0.1; files written just before, so they sit in the page cache):
//   listing 10,000 files into arrays    vs curl --list-only (NLST), curl LIST, lftp cls -1
//   FTPSessionDirectoryCurrent          vs a raw PWD exchange on one control connection
//   FTPSessionGet / FTPSessionPut 1 GiB vs curl
//   buffered get / put, default blocks  vs curl
//   FTPSessionGetMask 1,000 x 10 KB     vs lftp mget
// Each member run includes its login and logout, as each reference does.
// At the end a table gives medians and the ratios against the references,
// and the peak memory of each transfer above the idle process.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "median_ratios.h"
#include "support/ftp_servers.h"
#include "tolva/tolva2011register.h"

namespace {

namespace fs = std::filesystem;
using tolva::kTrue;
using tolva::Long;

constexpr std::uint64_t kBigBytes = 1ull << 30;
constexpr int kManyFiles = 10000;
constexpr int kMaskFiles = 1000;
constexpr std::size_t kMaskFileBytes = 10 * 1024;

// ---- Measurements kept for the closing table --------------------------------

struct Sample {
  std::vector<double> seconds;
  std::uint64_t bytes = 0;  // per run, for rates
  double peak_mib = -1;     // largest peak above idle seen
};
std::map<std::string, Sample>& Samples() {
  static std::map<std::string, Sample> s;
  return s;
}

// Peak memory: the kernel's high-water mark is reset before a run and read after it.
long StatusKb(const char* field) {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line)) {
    if (line.rfind(field, 0) == 0) return std::atol(line.c_str() + std::strlen(field));
  }
  return 0;
}
void ResetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

// ---- The server -----------------------------------------------------------

// The server is pyftpdlib unless TOLVA_BENCH_FTPD names another kind the
// test fixtures can start ("proftpd", "pure_ftpd", "vsftpd").
class Server {
 public:
  Server() {
    const char* wanted = std::getenv("TOLVA_BENCH_FTPD");
    std::string why;
    for (tolva::testing::FtpServerKind kind :
         {tolva::testing::FtpServerKind::kPyftpdlib, tolva::testing::FtpServerKind::kProftpd,
          tolva::testing::FtpServerKind::kPureFtpd, tolva::testing::FtpServerKind::kVsftpd}) {
      if (tolva::testing::FtpServerName(kind) == (wanted && *wanted ? wanted : "pyftpdlib"))
        server_ = tolva::testing::FtpServer::Start(kind, &why);
    }
    if (!server_) {
      std::fprintf(stderr, "no FTP server: %s\n", why.empty() ? "unknown TOLVA_BENCH_FTPD" : why.c_str());
      return;
    }
    base_ = tolva::testing::MakeTempDir("tolva-ftp-bench");
    root_ = server_->Root();
    local_ = base_ / "local";
    fs::create_directories(root_ / "many");
    fs::create_directories(root_ / "masks");
    fs::create_directories(local_ / "masks");
    for (int i = 0; i < kManyFiles; ++i) {
      char name[32];
      std::snprintf(name, sizeof name, "f%05d.txt", i);
      std::ofstream(root_ / "many" / name) << "x";
    }
    std::mt19937_64 random(42);
    std::string block(1 << 20, '\0');
    for (auto& ch : block) ch = static_cast<char>(random());
    {
      std::ofstream big(root_ / "big.bin", std::ios::binary);
      for (std::uint64_t done = 0; done < kBigBytes; done += block.size()) big.write(block.data(), block.size());
    }
    fs::copy_file(root_ / "big.bin", local_ / "big.bin");
    for (int i = 0; i < kMaskFiles; ++i) {
      char name[32];
      std::snprintf(name, sizeof name, "m%04d.dat", i);
      std::ofstream(root_ / "masks" / name, std::ios::binary).write(block.data() + i * 97, kMaskFileBytes);
    }
  }
  ~Server() {
    server_.reset();
    std::error_code ignored;
    if (!base_.empty()) fs::remove_all(base_, ignored);
  }
  bool ok() const { return server_ != nullptr; }
  std::string name() const { return server_ ? server_->Name() : "none"; }
  std::string user() const { return server_->User(); }
  std::string password() const { return server_->Password(); }
  std::string host() const { return server_->HostPort(); }
  std::string url(const std::string& path) const {
    return "ftp://" + user() + ":" + password() + "@" + server_->HostPort() + "/" + path;
  }
  int port() const { return server_->Port(); }
  const fs::path& root() const { return root_; }
  const fs::path& local() const { return local_; }

 private:
  std::unique_ptr<tolva::testing::FtpServer> server_;
  fs::path base_, root_, local_;
};

Server& TheServer() {
  static Server server;
  return server;
}

// A component with the real services; null library: the benchmark is skipped.
struct Session {
  tolva::Tolva2011Register c{tolva::platform::LinuxServices()};
  bool Open(benchmark::State& state) {
    std::string msg;
    if (c.FTPSessionOpen(TheServer().host(), TheServer().user(), TheServer().password(), msg) != kTrue) {
      state.SkipWithError(("FTPSessionOpen: " + msg).c_str());
      return false;
    }
    return true;
  }
};

bool Ready(benchmark::State& state) {
  if (!TheServer().ok()) {
    state.SkipWithError("the local FTP server did not start");
    return false;
  }
  return true;
}

// Runs `body` once per iteration, timing it and, when asked, its peak memory.
template <class F>
void Measure(benchmark::State& state, const std::string& name, std::uint64_t bytes, bool memory, F&& body) {
  Sample& sample = Samples()[name];
  sample.bytes = bytes;
  for (auto _ : state) {
    long idle = 0;
    if (memory) {
      ResetPeak();
      idle = StatusKb("VmRSS:");
    }
    // Every run starts with no dirty pages waiting: otherwise a run pays
    // for writing back the gigabyte the run before it left, and the order
    // of the benchmarks decides the ratios.
    // And the server has settled: proftpd's master waits 400 ms after a
    // session ends before it accepts the next, which would otherwise be
    // timed as part of whichever login comes next.
    state.PauseTiming();
    ::sync();
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    state.ResumeTiming();
    const auto start = std::chrono::steady_clock::now();
    if (!body()) {
      state.SkipWithError("the run failed");
      return;
    }
    sample.seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    if (memory) sample.peak_mib = std::max(sample.peak_mib, (StatusKb("VmHWM:") - idle) / 1024.0);
  }
  if (bytes) state.SetBytesProcessed(static_cast<std::int64_t>(bytes * state.iterations()));
  if (memory) state.counters["peak_MiB_above_idle"] = sample.peak_mib;
}

bool Shell(const std::string& command) {
  return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// ---- Listing -------------------------------------------------------------------

void BM_FindFilesFull10k(benchmark::State& state) {
  if (!Ready(state)) return;
  Measure(state, "list: FTPSessionFileFindFilesFull", 0, false, [&] {
    Session s;
    std::string msg;
    if (s.c.FTPSessionOpen(TheServer().host(), TheServer().user(), TheServer().password(), msg) != kTrue) return false;
    s.c.FTPSessionDirectoryCurrentSet("many");
    auto files = tolva::HostArray<std::string>::OneDim(1, kManyFiles);
    auto sizes = tolva::HostArray<Long>::OneDim(1, kManyFiles);
    auto dates = tolva::HostArray<std::string>::OneDim(1, kManyFiles);
    auto times = tolva::HostArray<std::string>::OneDim(1, kManyFiles);
    const Long n = s.c.FTPSessionFileFindFilesFull("*", files, sizes, dates, times, kManyFiles, msg);
    s.c.FTPSessionClose();
    return n == kManyFiles;
  });
}
void BM_CurlListOnly10k(benchmark::State& state) {
  if (!Ready(state)) return;
  Measure(state, "list: curl --list-only", 0, false,
          [&] { return Shell("curl -s --list-only '" + TheServer().url("many/") + "'"); });
}
// The same listing with sizes and dates, as the member needs them: LIST
// makes the server stat every file, which --list-only's NLST never does.
void BM_CurlLongList10k(benchmark::State& state) {
  if (!Ready(state)) return;
  Measure(state, "list: curl (LIST, sizes and dates)", 0, false,
          [&] { return Shell("curl -s '" + TheServer().url("many/") + "'"); });
}
void BM_LftpCls10k(benchmark::State& state) {
  if (!Ready(state)) return;
  Measure(state, "list: lftp cls -1", 0, false, [&] {
    return Shell("lftp -c 'set cmd:fail-exit yes; open -u " + TheServer().user() + "," + TheServer().password() +
                 " -p " + std::to_string(TheServer().port()) + " 127.0.0.1; cls -1 many/'");
  });
}

// ---- One round trip ----------------------------------------------------------

constexpr int kRoundTrips = 2000;

void BM_DirectoryCurrent(benchmark::State& state) {
  if (!Ready(state)) return;
  Session s;
  if (!s.Open(state)) return;
  Measure(state, "pwd x2000: FTPSessionDirectoryCurrent", 0, false, [&] {
    for (int i = 0; i < kRoundTrips; ++i)
      if (s.c.FTPSessionDirectoryCurrent().empty()) return false;
    return true;
  });
  s.c.FTPSessionClose();
}

// A bare control connection: login, then PWD after PWD.
class RawControl {
 public:
  explicit RawControl(int port) {
    fd_ = socket(AF_INET, SOCK_STREAM, 0);
    // As the library's control connection does: no Nagle delay on commands.
    const int one = 1;
    setsockopt(fd_, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<std::uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ok_ = connect(fd_, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0 && Reply() == 220 &&
          Command("USER " + TheServer().user()) == 331 && Command("PASS " + TheServer().password()) == 230;
  }
  ~RawControl() { close(fd_); }
  bool ok() const { return ok_; }
  int Command(const std::string& line) {
    const std::string out = line + "\r\n";
    if (send(fd_, out.data(), out.size(), 0) != static_cast<ssize_t>(out.size())) return -1;
    return Reply();
  }

 private:
  // Reads one reply, multi-line ones ("220-...", ..., "220 ...") whole;
  // the code, or -1.
  int Reply() {
    for (;;) {
      const std::size_t eol = buffer_.find("\r\n");
      if (eol == std::string::npos) {
        char chunk[4096];
        const ssize_t n = recv(fd_, chunk, sizeof chunk, 0);
        if (n <= 0) return -1;
        buffer_.append(chunk, static_cast<std::size_t>(n));
        continue;
      }
      const std::string line = buffer_.substr(0, eol);
      buffer_.erase(0, eol + 2);
      if (line.size() >= 4 && line[3] == '-' && code_ < 0) code_ = std::atoi(line.substr(0, 3).c_str());
      const int code = line.size() >= 3 ? std::atoi(line.substr(0, 3).c_str()) : -1;
      const bool last = line.size() >= 3 && (line.size() == 3 || line[3] == ' ');
      if (last && (code_ < 0 || code == code_)) {
        code_ = -1;
        return code;
      }
    }
  }
  int code_ = -1;  // the code of a multi-line reply being read
  int fd_ = -1;
  bool ok_ = false;
  std::string buffer_;
};

void BM_RawPwd(benchmark::State& state) {
  if (!Ready(state)) return;
  RawControl control(TheServer().port());
  if (!control.ok()) return state.SkipWithError("raw login failed");
  Measure(state, "pwd x2000: raw PWD exchange", 0, false, [&] {
    for (int i = 0; i < kRoundTrips; ++i)
      if (control.Command("PWD") != 257) return false;
    return true;
  });
}

// ---- Transfers of 1 GiB --------------------------------------------------------

template <class F>
void Transfer(benchmark::State& state, const std::string& name, F&& move) {
  if (!Ready(state)) return;
  Measure(state, name, kBigBytes, true, [&] {
    Session s;
    std::string msg;
    if (s.c.FTPSessionOpen(TheServer().host(), TheServer().user(), TheServer().password(), msg) != kTrue) return false;
    const bool ok = move(s.c, msg);
    s.c.FTPSessionClose();
    return ok;
  });
}

void BM_Get1GiB(benchmark::State& state) {
  const std::string local = (TheServer().local() / "got.bin").string();
  Transfer(state, "get 1 GiB: FTPSessionGet",
           [&](auto& c, auto& msg) { return c.FTPSessionGet("big.bin", local, tolva::kFalse, msg) == kTrue; });
}
void BM_GetBuffered1GiB(benchmark::State& state) {
  const std::string local = (TheServer().local() / "got-buffered.bin").string();
  Transfer(state, "get 1 GiB: FTPSessionGetBuffered (10000)",
           [&](auto& c, auto& msg) { return c.FTPSessionGetBuffered("big.bin", local, tolva::kFalse, msg) == kTrue; });
}
void BM_CurlGet1GiB(benchmark::State& state) {
  if (!Ready(state)) return;
  const std::string local = (TheServer().local() / "curl.bin").string();
  Measure(state, "get 1 GiB: curl", kBigBytes, false,
          [&] { return Shell("curl -s -o '" + local + "' '" + TheServer().url("big.bin") + "'"); });
}
void BM_Put1GiB(benchmark::State& state) {
  const std::string local = (TheServer().local() / "big.bin").string();
  Transfer(state, "put 1 GiB: FTPSessionPut",
           [&](auto& c, auto& msg) { return c.FTPSessionPut(local, "put.bin", tolva::kFalse, msg) == kTrue; });
}
void BM_PutBuffered1GiB(benchmark::State& state) {
  const std::string local = (TheServer().local() / "big.bin").string();
  Transfer(state, "put 1 GiB: FTPSessionPutBuffered (10000)", [&](auto& c, auto& msg) {
    return c.FTPSessionPutBuffered(local, "put-buffered.bin", tolva::kFalse, msg) == kTrue;
  });
}
void BM_CurlPut1GiB(benchmark::State& state) {
  if (!Ready(state)) return;
  const std::string local = (TheServer().local() / "big.bin").string();
  Measure(state, "put 1 GiB: curl", kBigBytes, false,
          [&] { return Shell("curl -s -T '" + local + "' '" + TheServer().url("curl-put.bin") + "'"); });
}

// ---- 1,000 small files by mask ---------------------------------------------------

void BM_GetMask1000(benchmark::State& state) {
  if (!Ready(state)) return;
  const std::string local = (TheServer().local() / "masks").string();
  Measure(state, "mask 1000 x 10 KB: FTPSessionGetMask", 1000ull * kMaskFileBytes, true, [&] {
    Session s;
    std::string msg;
    if (s.c.FTPSessionOpen(TheServer().host(), TheServer().user(), TheServer().password(), msg) != kTrue) return false;
    s.c.FTPSessionDirectoryCurrentSet("masks");
    const bool ok = s.c.FTPSessionGetMask("*.dat", local, msg) == kTrue;
    s.c.FTPSessionClose();
    return ok;
  });
}
void BM_LftpMget1000(benchmark::State& state) {
  if (!Ready(state)) return;
  const std::string local = (TheServer().local() / "masks-lftp").string();
  fs::create_directories(local);
  Measure(state, "mask 1000 x 10 KB: lftp mget", 1000ull * kMaskFileBytes, false, [&] {
    return Shell("lftp -c 'set cmd:fail-exit yes; set xfer:clobber yes; open -u " + TheServer().user() + "," +
                 TheServer().password() + " -p " + std::to_string(TheServer().port()) + " 127.0.0.1; mget -O " + local +
                 " masks/*.dat'");
  });
}

constexpr int kReps = 5;
constexpr int kBigReps = 5;

BENCHMARK(BM_FindFilesFull10k)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_CurlListOnly10k)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_CurlLongList10k)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_LftpCls10k)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_DirectoryCurrent)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_RawPwd)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_CurlGet1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_Get1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_GetBuffered1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_CurlPut1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_Put1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_PutBuffered1GiB)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kBigReps);
BENCHMARK(BM_GetMask1000)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);
BENCHMARK(BM_LftpMget1000)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(kReps);

// ---- The closing table ---------------------------------------------------------------

void PrintSummary() {
  auto med = [](const std::string& name) { return Median(Samples()[name].seconds); };
  auto line = [&](const std::string& name) {
    const Sample& s = Samples()[name];
    const double m = Median(s.seconds);
    std::printf("  %-46s median %9.3f ms", name.c_str(), m * 1000);
    if (s.bytes && m > 0) std::printf("  %8.1f MiB/s", s.bytes / m / (1 << 20));
    if (s.peak_mib >= 0) std::printf("  peak %.1f MiB above idle", s.peak_mib);
    std::printf("\n");
  };
  auto ratio = [&](const char* what, const std::string& a, const std::string& b, const char* target) {
    const double x = med(a), y = med(b);
    if (x > 0 && y > 0) std::printf("  %-62s %6.2f   (target %s)\n", what, x / y, target);
  };
  std::printf("\nFTP members vs references (server: %s on 127.0.0.1; medians)\n", TheServer().name().c_str());
  for (const auto& [name, sample] : Samples()) line(name);
  std::printf("\nRatios\n");
  ratio("listing time / curl --list-only", "list: FTPSessionFileFindFilesFull", "list: curl --list-only", "<= 1.5");
  ratio("listing time / curl LIST (same facts)", "list: FTPSessionFileFindFilesFull",
        "list: curl (LIST, sizes and dates)", "report");
  ratio("listing time / lftp cls -1", "list: FTPSessionFileFindFilesFull", "list: lftp cls -1", "<= 1.5");
  ratio("PWD round trip / raw PWD", "pwd x2000: FTPSessionDirectoryCurrent", "pwd x2000: raw PWD exchange", "<= 1.2");
  ratio("get rate / curl (= curl time / get time)", "get 1 GiB: curl", "get 1 GiB: FTPSessionGet", ">= 1.0");
  ratio("put rate / curl", "put 1 GiB: curl", "put 1 GiB: FTPSessionPut", ">= 1.0");
  ratio("buffered get rate / curl", "get 1 GiB: curl", "get 1 GiB: FTPSessionGetBuffered (10000)", ">= 0.85");
  ratio("buffered put rate / curl", "put 1 GiB: curl", "put 1 GiB: FTPSessionPutBuffered (10000)", ">= 0.85");
  ratio("mask download time / lftp mget", "mask 1000 x 10 KB: FTPSessionGetMask", "mask 1000 x 10 KB: lftp mget",
        "report");
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  TheServer();  // files written and server started before any timing
  benchmark::RunSpecifiedBenchmarks();
  PrintSummary();
  benchmark::Shutdown();
  return 0;
}
