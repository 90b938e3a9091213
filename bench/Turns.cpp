#include "Turns.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace {

class Collector : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& reports) override {
    for (const Run& run : reports) time = run.GetAdjustedCPUTime();
  }
  double time = 0;
};

double TimeOf(const std::string& name, const Contender& contender, std::size_t runs) {
  benchmark::ClearRegisteredBenchmarks();
  const auto turn = [&contender](benchmark::State& state) {
    for (auto _ : state) {
      if (contender.prepare) {
        state.PauseTiming();
        contender.prepare();
        state.ResumeTiming();
      }
      contender.run();
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), turn)
      ->Iterations(static_cast<benchmark::IterationCount>(runs))
      ->Unit(benchmark::kNanosecond);
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector, ".");
  return collector.time;
}

}  // namespace

TurnTimes Turns(const std::string& what, const std::vector<Contender>& contenders, std::size_t runs,
                std::size_t turns) {
  TurnTimes times(contenders.size());
  for (std::size_t turn = 0; turn <= turns; ++turn) {
    for (std::size_t i = 0; i < contenders.size(); ++i) {
      const std::size_t which = turn % 2 ? contenders.size() - 1 - i : i;  // every second turn runs backwards
      const double time = TimeOf(what + "/" + contenders[which].name, contenders[which], turn ? runs : 1);
      if (turn > 0) times[which].push_back(time);  // the first turn warms up
    }
  }
  return times;
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double MedianRatio(const std::vector<double>& times, const std::vector<double>& others) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < times.size() && i < others.size(); ++i) ratios.push_back(times[i] / others[i]);
  return Median(ratios);
}

void Keep(std::size_t value) { benchmark::DoNotOptimize(value); }
