// Runs the contenders of one comparison in turns, so that what disturbs the machine meets all alike.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct Contender {
  std::string name;
  std::function<void()> run;
};

// Each contender's median, in nanoseconds of one run of it: of processor time, which other
// programs disturb least. runs stand in one turn, and turns are taken in a random order.
std::vector<double> Turns(const std::string& what, const std::vector<Contender>& contenders, std::size_t runs,
                          std::size_t turns);

// 0 for none.
double Median(std::vector<double> values);

// Keeps a result from being optimised away.
void Keep(std::size_t value);
