// Runs the contenders of a comparison in turns, so that disturbances of the machine affect all of them alike.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct Contender {
  std::string name;
  std::function<void()> run;
  std::function<void()> prepare = {};  // before each run, not timed
};

// A list for each contender, with one entry per turn of `runs` runs: nanoseconds of processor time per run.
using TurnTimes = std::vector<std::vector<double>>;
TurnTimes Turns(const std::string& what, const std::vector<Contender>& contenders, std::size_t runs,
                std::size_t turns);

// 0 if there are no values.
double Median(std::vector<double> values);
// The median of the turns' ratios, which varies less than the ratio of the medians if the machine's speed
// changes.
double MedianRatio(const std::vector<double>& times, const std::vector<double>& others);

// Keeps the computation of a result from being optimised away.
void Keep(std::size_t value);
