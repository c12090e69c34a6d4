// Speed and memory of the delimited readers beside their references, on
// the same files in the same run: `wc -l` and Python 3's csv module
// (counting rows and the widest row; building the list of rows).
//
// Files are generated here, seeded, in a temporary directory:
//   plain  - 2,000,000 rows of 10 short fields (about 200 MB)
//   quoted - the same rows with a third of the fields quoted, some holding
//            the delimiter, doubled quotes or a line break
//   wide   - about 100 MB of 200-column rows
// and, for linear time on hostile input, 100 MB each of: one quoted field
// that never closes, one line without a delimiter, only delimiters, only
// quotes, and a million empty lines padded to the same size.
// Compare the medians: ratio = reference time / reader time.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "median_ratios.h"
#include "tolva/tolva2011register.h"

namespace {

namespace fs = std::filesystem;

struct Files {
  fs::path dir;
  std::string plain, quoted, wide;
  std::string unclosed, no_delimiter, only_delimiters, only_quotes, empty_lines;
  long plain_rows = 2000000;
};

std::string RandomField(std::mt19937& rng) {
  static const char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::string f;
  const int n = 3 + static_cast<int>(rng() % 12);
  for (int i = 0; i < n; ++i) f += kLetters[rng() % 36];
  return f;
}

void WriteFile(const std::string& path, const std::string& data) {
  std::ofstream(path, std::ios::binary) << data;
}

const Files& TheFiles() {
  static const Files files = [] {
    Files f;
    f.dir = fs::temp_directory_path() / ("tolva-delimited-bench-" + std::to_string(::getpid()));
    fs::create_directories(f.dir);
    std::mt19937 rng(2011);
    std::string plain, quoted, wide;
    plain.reserve(210u << 20);
    quoted.reserve(240u << 20);
    for (long r = 0; r < f.plain_rows; ++r) {
      for (int k = 0; k < 10; ++k) {
        const std::string field = RandomField(rng);
        if (k) {
          plain += ',';
          quoted += ',';
        }
        plain += field;
        switch (rng() % 9) {
          case 0:
            quoted += "\"" + field + "\"";
            break;
          case 1:
            quoted += "\"" + field + ", " + field + "\"";
            break;
          case 2:
            quoted += "\"say \"\"" + field + "\"\"\"";
            break;
          default:
            quoted += field;
            break;
        }
        if (k == 9 && r % 50 == 0) quoted += ",\"two\r\nlines\"";
      }
      plain += "\r\n";
      quoted += "\r\n";
    }
    while (wide.size() < (100u << 20)) {
      for (int k = 0; k < 200; ++k) {
        if (k) wide += ',';
        wide += RandomField(rng);
      }
      wide += "\r\n";
    }
    const std::size_t big = 100u << 20;
    f.plain = (f.dir / "plain.csv").string();
    f.quoted = (f.dir / "quoted.csv").string();
    f.wide = (f.dir / "wide.csv").string();
    WriteFile(f.plain, plain);
    WriteFile(f.quoted, quoted);
    WriteFile(f.wide, wide);
    f.unclosed = (f.dir / "unclosed.csv").string();
    WriteFile(f.unclosed, "a,\"" + std::string(big, 'x'));
    f.no_delimiter = (f.dir / "no_delimiter.csv").string();
    WriteFile(f.no_delimiter, std::string(big, 'y'));
    f.only_delimiters = (f.dir / "only_delimiters.csv").string();
    WriteFile(f.only_delimiters, std::string(big, ','));
    f.only_quotes = (f.dir / "only_quotes.csv").string();
    WriteFile(f.only_quotes, std::string(big, '"'));
    std::string empty_lines;
    empty_lines.reserve(big);
    for (int i = 0; i < 1000000; ++i) empty_lines += "\r\n";
    empty_lines += "a,b\r\n";
    empty_lines += std::string(big - empty_lines.size(), 'z');
    f.empty_lines = (f.dir / "empty_lines.csv").string();
    WriteFile(f.empty_lines, empty_lines);
    return f;
  }();
  return files;
}

struct Cleanup {
  ~Cleanup() {
    std::error_code ec;
    if (!TheFiles().dir.empty()) fs::remove_all(TheFiles().dir, ec);
  }
};

void Shell(benchmark::State& state, const std::string& command) {
  for (auto _ : state)
    if (std::system(command.c_str()) != 0) state.SkipWithError(("failed: " + command).c_str());
}

const char* const kPythonCount =
    "python3 -c \"import csv,sys\nn=w=0\nwith open(sys.argv[1],newline='') as f:\n for r in csv.reader(f):\n  "
    "n+=1\n  w=max(w,len(r))\n\" ";
const char* const kPythonList =
    "python3 -c \"import csv,sys\nwith open(sys.argv[1],newline='') as f:\n rows=list(csv.reader(f))\n\" ";

// A host whose progress handler and event loop do nothing.
struct IdleHost : tolva::HostContainer, tolva::Tolva2011RegisterEvents {
  void ReadWriteProgress(std::string&, tolva::Long&) override {}
};

void GetSize(benchmark::State& state, const std::string* file, bool handler) {
  IdleHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), handler ? &host : nullptr, handler ? &host : nullptr);
  for (auto _ : state) {
    tolva::Long rows = 0, columns = 0;
    std::string error;
    if (!tolva::IsTrue(c.ReadFileToArrayGetSize(*file, rows, columns, error))) state.SkipWithError(error.c_str());
    benchmark::DoNotOptimize(rows);
  }
}

void ReadArray(benchmark::State& state, const std::string* file, bool handler) {
  IdleHost host;
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), handler ? &host : nullptr, handler ? &host : nullptr);
  tolva::Long rows = 0, columns = 0;
  std::string error;
  c.ReadFileToArrayGetSize(*file, rows, columns, error);
  for (auto _ : state) {
    state.PauseTiming();
    auto array = tolva::HostArray<std::string>::TwoDim(1, rows, 1, columns);
    state.ResumeTiming();
    tolva::Long rr = 0, rc = 0, ar = 0, ac = 0;
    if (!tolva::IsTrue(c.ReadFileToArray(*file, array, rows, columns, rr, rc, ar, ac, error)))
      state.SkipWithError(error.c_str());
    state.PauseTiming();
    { auto gone = std::move(array); }
    state.ResumeTiming();
  }
}

void ReadDatabase(benchmark::State& state, const std::string* file) {
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), nullptr, nullptr);
  tolva::Long rows = 0, columns = 0;
  std::string error;
  c.ReadFileToArrayGetSize(*file, rows, columns, error);
  for (auto _ : state) {
    state.PauseTiming();
    auto names = tolva::HostArray<std::string>::OneDim(1, columns);
    auto values = tolva::HostArray<std::string>::TwoDim(1, rows, 1, columns);
    state.ResumeTiming();
    tolva::Long nr = 0, nf = 0;
    if (!tolva::IsTrue(c.ReadFileToCSVDatabase(*file, names, values, 1, rows, 1, columns, nr, nf, error)))
      state.SkipWithError(error.c_str());
    state.PauseTiming();
    { auto gone = std::move(values); }
    state.ResumeTiming();
  }
}

// Peak memory of ReadFileToArray in a child process: counters report the
// peak above the memory in use once the empty array is allocated, and the
// file's size, in MiB.
void PeakMemory(benchmark::State& state, const std::string* file) {
  tolva::Tolva2011Register c(tolva::platform::LinuxServices(), nullptr, nullptr);
  tolva::Long rows = 0, columns = 0;
  std::string error;
  c.ReadFileToArrayGetSize(*file, rows, columns, error);
  double peak_over_array = 0;
  for (auto _ : state) {
    const pid_t child = ::fork();
    if (child == 0) {
      auto array = tolva::HostArray<std::string>::TwoDim(1, rows, 1, columns);
      struct rusage before {};
      ::getrusage(RUSAGE_SELF, &before);
      tolva::Long rr = 0, rc = 0, ar = 0, ac = 0;
      c.ReadFileToArray(*file, array, rows, columns, rr, rc, ar, ac, error);
      struct rusage after {};
      ::getrusage(RUSAGE_SELF, &after);
      const long grown_kib = after.ru_maxrss - before.ru_maxrss;
      ::_exit(static_cast<int>(std::min<long>(grown_kib / 1024, 250)));
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    peak_over_array = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  state.counters["peak_above_empty_array_MiB_capped_250"] = peak_over_array;
  state.counters["file_MiB"] = static_cast<double>(fs::file_size(*file)) / (1 << 20);
}

void Register() {
  // The files first: statics go in reverse order, so the cleanup then runs
  // while the files' names still exist.
  const Files& f = TheFiles();
  static Cleanup cleanup;
  struct Named {
    const char* name;
    const std::string* path;
  };
  const Named main_files[] = {{"plain", &f.plain}, {"quoted", &f.quoted}, {"wide", &f.wide}};
  for (const Named& n : main_files) {
    const std::string p = *n.path;
    // Medians of nine for the quick ones, of three for Python's.
    benchmark::RegisterBenchmark((std::string("ref_wc_l/") + n.name).c_str(), Shell, "wc -l " + p + " >/dev/null")
        ->Repetitions(9);
    benchmark::RegisterBenchmark((std::string("GetSize/") + n.name).c_str(), GetSize, n.path, false)->Repetitions(9);
    benchmark::RegisterBenchmark((std::string("GetSize_idle_handler/") + n.name).c_str(), GetSize, n.path, true)
        ->Repetitions(3);
    benchmark::RegisterBenchmark((std::string("ref_python_csv_count/") + n.name).c_str(), Shell,
                                 std::string(kPythonCount) + p)
        ->Repetitions(3);
    benchmark::RegisterBenchmark((std::string("ReadFileToArray/") + n.name).c_str(), ReadArray, n.path, false)
        ->Repetitions(5);
    benchmark::RegisterBenchmark((std::string("ReadFileToArray_idle_handler/") + n.name).c_str(), ReadArray, n.path,
                                 true)
        ->Repetitions(3);
    benchmark::RegisterBenchmark((std::string("ReadFileToCSVDatabase/") + n.name).c_str(), ReadDatabase, n.path)
        ->Repetitions(5);
    benchmark::RegisterBenchmark((std::string("ref_python_csv_list/") + n.name).c_str(), Shell,
                                 std::string(kPythonList) + p)
        ->Repetitions(3);
  }
  benchmark::RegisterBenchmark("PeakMemory_ReadFileToArray/plain", PeakMemory, &f.plain)->Iterations(1);
  const Named hostile[] = {{"unclosed_quote", &f.unclosed},
                           {"no_delimiter", &f.no_delimiter},
                           {"only_delimiters", &f.only_delimiters},
                           {"only_quotes", &f.only_quotes},
                           {"million_empty_lines", &f.empty_lines}};
  for (const Named& n : hostile) {
    benchmark::RegisterBenchmark((std::string("Linear_GetSize/") + n.name).c_str(), GetSize, n.path, false);
    benchmark::RegisterBenchmark((std::string("Linear_ReadFileToArray/") + n.name).c_str(), ReadArray, n.path, false);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Register();
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  std::printf("\nMedians compared (same run):\n");
  const struct {
    const char* name;
    double size_target;
  } files[] = {{"plain", 1.0}, {"quoted", 0.5}, {"wide", 0.8}};
  for (const auto& f : files) {
    const std::string n = f.name;
    reporter.PrintRatio(("GetSize " + n + " vs wc -l").c_str(), "GetSize/" + n, "ref_wc_l/" + n, f.size_target);
    reporter.PrintRatio(("ReadFileToArray " + n + " vs Python csv list").c_str(), "ReadFileToArray/" + n,
                        "ref_python_csv_list/" + n, 30);
    reporter.PrintRatio(("ReadFileToCSVDatabase " + n + " vs Python csv list").c_str(), "ReadFileToCSVDatabase/" + n,
                        "ref_python_csv_list/" + n, 30);
  }
  benchmark::Shutdown();
  return 0;
}
