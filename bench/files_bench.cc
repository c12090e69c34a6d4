// Whole-file reads and writes and profile look-ups, each beside its
// reference measured in the same run:
//   ReadFile of a 1 GiB file in the page cache   vs  cat file > /dev/null
//   WriteFile of 1 GiB (new file / replacing)     vs  dd to the same disk (plain / conv=fdatasync)
//   FileReadProfileString, 10,000 keys, random   vs  re-reading and parsing the file per call
// A median per benchmark is printed, then each member's speed as a ratio
// of its reference's. Files go to $TOLVA_BENCH_DIR (default: the current directory).
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/profiles/profile_file.h"
#include "median_ratios.h"
#include "tolva/tolva2011register.h"

namespace {

constexpr std::size_t kBig = std::size_t{1} << 30;

std::string BenchDir() {
  const char* d = std::getenv("TOLVA_BENCH_DIR");
  return d && *d ? d : ".";
}
std::string BigFile() {
  return BenchDir() + "/tolva-bench-1g.bin";
}
std::string IniFile() {
  return BenchDir() + "/tolva-bench-10k.ini";
}

// Runs a shell command and returns its wall time in seconds.
double TimeShell(const std::string& command) {
  const auto start = std::chrono::steady_clock::now();
  const int rc = std::system(command.c_str());
  const auto end = std::chrono::steady_clock::now();
  if (rc != 0) std::cerr << "command failed: " << command << "\n";
  return std::chrono::duration<double>(end - start).count();
}

void EnsureBigFile() {
  struct stat st {};
  if (::stat(BigFile().c_str(), &st) == 0 && static_cast<std::size_t>(st.st_size) == kBig) return;
  TimeShell("head -c 1073741824 /dev/urandom > '" + BigFile() + "'");
}

void EnsureIni(std::vector<std::pair<std::string, std::string>>& keys) {
  std::string text = "; benchmark profile\r\n";
  for (int s = 0; s < 100; ++s) {
    text += "[Section" + std::to_string(s) + "]\r\n";
    for (int k = 0; k < 100; ++k) {
      text += "Key" + std::to_string(k) + " = value " + std::to_string(s * 100 + k) + "\r\n";
      keys.emplace_back("Section" + std::to_string(s), "Key" + std::to_string(k));
    }
  }
  std::ofstream(IniFile(), std::ios::binary) << text;
}

void BM_CatReference(benchmark::State& state) {
  EnsureBigFile();
  TimeShell("cat '" + BigFile() + "' > /dev/null");  // into the page cache
  for (auto _ : state) state.SetIterationTime(TimeShell("cat '" + BigFile() + "' > /dev/null"));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kBig));
}

void BM_ReadFile(benchmark::State& state) {
  EnsureBigFile();
  tolva::Tolva2011Register c;
  // One untimed read first, as cat gets: on a virtual machine the first
  // gigabyte this process takes may be memory the host has not backed yet,
  // which costs more than anything measured here.
  (void)c.ReadFile(BigFile());
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    std::string text = c.ReadFile(BigFile());
    const auto end = std::chrono::steady_clock::now();
    if (text.size() != kBig) state.SkipWithError("short read");
    benchmark::DoNotOptimize(text.data());
    state.SetIterationTime(std::chrono::duration<double>(end - start).count());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kBig));
}

// Peak memory of one ReadFile, measured in a child so that nothing else
// the benchmark holds is counted: growth of the peak resident size.
void BM_ReadFilePeakMemory(benchmark::State& state) {
  EnsureBigFile();
  for (auto _ : state) {
    int fds[2];
    if (::pipe(fds) != 0) break;
    const pid_t pid = ::fork();
    if (pid == 0) {
      tolva::Tolva2011Register c;
      struct rusage before {
      }, after{};
      ::getrusage(RUSAGE_SELF, &before);
      std::string text = c.ReadFile(BigFile());
      ::getrusage(RUSAGE_SELF, &after);
      const long extra_kib = after.ru_maxrss - before.ru_maxrss;
      (void)::write(fds[1], &extra_kib, sizeof extra_kib);
      ::_exit(text.size() == kBig ? 0 : 1);
    }
    ::close(fds[1]);
    long extra_kib = -1;
    (void)::read(fds[0], &extra_kib, sizeof extra_kib);
    ::close(fds[0]);
    ::waitpid(pid, nullptr, 0);
    state.counters["peak_over_file_MiB"] = static_cast<double>(extra_kib) / 1024.0 - 1024.0;
    state.SetIterationTime(0.001);
  }
}

void BM_DdReference(benchmark::State& state) {
  const bool sync = state.range(0) != 0;
  const std::string out = BenchDir() + "/tolva-bench-dd.out";
  for (auto _ : state) {
    ::unlink(out.c_str());
    ::sync();  // the same start as the member's: no dirty pages, freed pages settled
    state.SetIterationTime(
        TimeShell("dd if=/dev/zero of='" + out + "' bs=1M count=1024 status=none" + (sync ? " conv=fdatasync" : "")));
  }
  ::unlink(out.c_str());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kBig));
}

// range(0) 0: a new file each time; 1: replacing an existing file, which is
// flushed to the device before the rename.
void BM_WriteFile(benchmark::State& state) {
  const bool replace = state.range(0) != 0;
  const std::string out = BenchDir() + "/tolva-bench-write.out";
  const std::string data(kBig, 'x');
  tolva::Tolva2011Register c;
  std::string msg;
  for (auto _ : state) {
    ::unlink(out.c_str());
    if (replace) c.WriteFile(out, "old", msg);
    ::sync();
    const auto start = std::chrono::steady_clock::now();
    if (!tolva::IsTrue(c.WriteFile(out, data, msg))) state.SkipWithError(msg.c_str());
    const auto end = std::chrono::steady_clock::now();
    state.SetIterationTime(std::chrono::duration<double>(end - start).count());
  }
  ::unlink(out.c_str());
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(kBig));
}

void BM_ProfileLookup(benchmark::State& state) {
  std::vector<std::pair<std::string, std::string>> keys;
  EnsureIni(keys);
  tolva::Tolva2011Register c;
  std::mt19937 rng(42);
  std::uniform_int_distribution<std::size_t> pick(0, keys.size() - 1);
  for (auto _ : state) {
    const auto& k = keys[pick(rng)];
    benchmark::DoNotOptimize(c.FileReadProfileString(IniFile(), k.first, k.second));
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

void BM_ProfileReparseReference(benchmark::State& state) {
  std::vector<std::pair<std::string, std::string>> keys;
  EnsureIni(keys);
  std::mt19937 rng(42);
  std::uniform_int_distribution<std::size_t> pick(0, keys.size() - 1);
  for (auto _ : state) {
    const auto& k = keys[pick(rng)];
    std::ifstream in(IniFile(), std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const tolva::platform::posix::ProfileFile file(std::move(bytes));
    benchmark::DoNotOptimize(file.Find(k.first, k.second));
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}

BENCHMARK(BM_CatReference)->UseManualTime()->Iterations(1)->Repetitions(9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadFile)->UseManualTime()->Iterations(1)->Repetitions(9)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadFilePeakMemory)->UseManualTime()->Iterations(1)->Repetitions(1);
BENCHMARK(BM_DdReference)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Iterations(1)
    ->Repetitions(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WriteFile)->Arg(0)->Arg(1)->UseManualTime()->Iterations(1)->Repetitions(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProfileLookup)->Repetitions(5)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ProfileReparseReference)->Repetitions(5)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto ratio = [&](const char* label, const char* member, const char* reference, double target) {
    reporter.PrintRatio(label, member, reference, target);
  };
  std::printf("\nMedians compared (same run):\n");
  ratio("ReadFile 1 GiB vs cat > /dev/null", "BM_ReadFile", "BM_CatReference", 0.6);
  // The spread of single runs against the reference's median: a slow run
  // matters to a host as much as a slow median.
  const auto m = reporter.singles.find("BM_ReadFile");
  const auto r = reporter.medians.find("BM_CatReference");
  if (m != reporter.singles.end() && r != reporter.medians.end() && !m->second.empty()) {
    const auto [lo, hi] = std::minmax_element(m->second.begin(), m->second.end());
    std::printf("%-52s fastest %.2fx, slowest %.2fx of nine runs (target: none below 0.50x)\n",
                "  ReadFile single runs", r->second / *lo, r->second / *hi);
  }
  ratio("WriteFile 1 GiB new file vs dd", "BM_WriteFile/0", "BM_DdReference/0", 0.5);
  ratio("WriteFile 1 GiB replacing vs dd conv=fdatasync", "BM_WriteFile/1", "BM_DdReference/1", 0.5);
  ratio("FileReadProfileString vs re-parse per call", "BM_ProfileLookup", "BM_ProfileReparseReference", 20);
  ::unlink(BigFile().c_str());
  ::unlink(IniFile().c_str());
  return 0;
}
