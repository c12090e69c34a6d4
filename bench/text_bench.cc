// Text members on 1 KB and 1 MB inputs, reported as time per input byte
// (bytes_per_second). Each member should cost the same per byte at both
// sizes: compare the two rows of a member; the reference is the 1 KB row.
// The clock texts take a count, not a text: they run over a batch of counts
// whose total digits make up the input size.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "tolva/tolva2011register.h"

namespace {

tolva::Tolva2011Register& Component() {
  static tolva::Tolva2011Register c{tolva::platform::Services{}};
  return c;
}

std::string PathOf(std::size_t n) {
  std::string s;
  while (s.size() < n) s += "\\dir" + std::to_string(s.size() % 97);
  s.resize(n);
  return s;
}

std::string Padded(std::size_t n) {
  std::string s(n, 'x');
  for (std::size_t i = 0; i < n / 8; ++i) s[i] = static_cast<char>(i % 33);
  for (std::size_t i = n - n / 8; i < n; ++i) s[i] = static_cast<char>(i % 33);
  return s;
}

std::string TimeOf(std::size_t n) {
  std::string s;
  while (s.size() < n) s += "12:34:";
  s.resize(n);
  if (s.back() == ':') s.back() = '5';
  return s;
}

void BM_FilePathShorten(benchmark::State& state) {
  const std::string p = PathOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(Component().FilePathShorten(p));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void BM_StringCountCharacters(benchmark::State& state) {
  const std::string p = PathOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state)
    benchmark::DoNotOptimize(Component().StringCountCharacters(p, "\\/", tolva::kTrue, tolva::kTrue));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void BM_TrimCrLf(benchmark::State& state) {
  const std::string p = Padded(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(Component().TrimCrLf(p));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void BM_IsTime(benchmark::State& state) {
  const std::string p = TimeOf(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(Component().IsTime(p));
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void BM_ClockTexts(benchmark::State& state) {
  // Counts of 5 digits: one "byte" of input per digit.
  const std::size_t n = static_cast<std::size_t>(state.range(0)) / 5;
  std::vector<tolva::Long> counts(n);
  for (std::size_t i = 0; i < n; ++i) counts[i] = static_cast<tolva::Long>(10000 + i * 7 % 89999);
  for (auto _ : state) {
    for (tolva::Long v : counts) {
      benchmark::DoNotOptimize(Component().MinutesSeconds(v));
      benchmark::DoNotOptimize(Component().HoursMinutesSeconds(v));
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(n * 5));
}

}  // namespace

BENCHMARK(BM_FilePathShorten)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_StringCountCharacters)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_TrimCrLf)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_IsTime)->Arg(1 << 10)->Arg(1 << 20);
BENCHMARK(BM_ClockTexts)->Arg(1 << 10)->Arg(1 << 20);

BENCHMARK_MAIN();
