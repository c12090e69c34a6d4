// Collects every benchmark's median (and each repetition's time) while the
// console shows the runs, so a program can close with its figures as
// ratios against the references measured in the same run.
#ifndef TOLVA_BENCH_MEDIAN_RATIOS_H_
#define TOLVA_BENCH_MEDIAN_RATIOS_H_

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// The median of timings taken by hand (the middle two averaged for an even count); 0 for none.
inline double Median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  return v.size() % 2 ? v[v.size() / 2] : (v[v.size() / 2 - 1] + v[v.size() / 2]) / 2;
}

class MedianReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const auto& r : runs) {
      std::string key = r.run_name.function_name;
      if (!r.run_name.args.empty()) key += "/" + r.run_name.args;
      if (r.run_type == Run::RT_Iteration) singles[key].push_back(r.GetAdjustedRealTime());
      if (r.aggregate_name == "median") medians[key] = r.GetAdjustedRealTime();
    }
    ConsoleReporter::ReportRuns(runs);
  }

  // Prints the reference's median time over the member's: above 1 the
  // member is faster. Silent when either was not run.
  void PrintRatio(const char* label, const std::string& member, const std::string& reference, double target) const {
    const auto m = medians.find(member), r = medians.find(reference);
    if (m == medians.end() || r == medians.end() || m->second <= 0) return;
    const double speed = r->second / m->second;
    std::printf("%-52s %6.2fx the reference's speed (target >= %.2fx) %s\n", label, speed, target,
                speed >= target ? "ok" : "BELOW TARGET");
  }

  std::map<std::string, double> medians;
  std::map<std::string, std::vector<double>> singles;  // every repetition's time
};

#endif  // TOLVA_BENCH_MEDIAN_RATIOS_H_
