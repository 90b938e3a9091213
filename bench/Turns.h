// Runs the contenders of one comparison in turns, so that what disturbs the machine meets all alike.
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

// Nanoseconds of processor time, which other programs disturb least, of one run in each turn; one list
// for each contender. runs stand in one turn.
using TurnTimes = std::vector<std::vector<double>>;
TurnTimes Turns(const std::string& what, const std::vector<Contender>& contenders, std::size_t runs,
                std::size_t turns);

// 0 for none.
double Median(std::vector<double> values);
// The median of the ratios of turns, which is calmer than the ratio of medians where the machine's pace
// changes in between.
double MedianRatio(const std::vector<double>& times, const std::vector<double>& others);

// Keeps a result from being optimised away.
void Keep(std::size_t value);
