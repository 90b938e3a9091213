// The table of measures: what each must reach, what it should reach, and what it reached.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

struct Measure {
  std::string name;
  enum class Bound { AtMost, AtLeast } bound;
  double must;
  double dream;
  std::optional<double> seen;  // nullopt if it could not be measured
  std::string remark = {};
};

using Table = std::vector<Measure>;

bool IsMissed(const Measure& measure);
// As a Markdown table.
void Print(std::ostream& out, const Table& table);
// places: digits after the decimal point.
std::string Rounded(double value, int places);
// "| a | b |" and a line end.
std::string TableRow(const std::vector<std::string>& cells);
