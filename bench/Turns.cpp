#include "Turns.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>

namespace {

class Medians : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& reports) override {
    for (const Run& run : reports) {
      if (run.run_type != Run::RT_Iteration) continue;
      times_[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
    }
  }
  double Of(const std::string& name) const { return Median(times_.at(name)); }

 private:
  std::map<std::string, std::vector<double>> times_;
};

}  // namespace

std::vector<double> Turns(const std::string& what, const std::vector<Contender>& contenders, std::size_t runs,
                          std::size_t turns) {
  benchmark::ClearRegisteredBenchmarks();
  for (const Contender& contender : contenders) {
    contender.run();  // warm
    benchmark::RegisterBenchmark((what + "/" + contender.name).c_str(),
                                 [&contender](benchmark::State& state) {
                                   for (auto _ : state) contender.run();
                                 })
        ->Iterations(static_cast<benchmark::IterationCount>(runs))
        ->Repetitions(static_cast<int>(turns))
        ->Unit(benchmark::kNanosecond);
  }
  Medians medians;
  benchmark::RunSpecifiedBenchmarks(&medians, ".");
  std::vector<double> found;
  for (const Contender& contender : contenders) found.push_back(medians.Of(what + "/" + contender.name));
  return found;
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void Keep(std::size_t value) { benchmark::DoNotOptimize(value); }
