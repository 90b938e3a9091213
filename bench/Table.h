// The table of measures: what each must reach, what it should, and what was seen.
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
  std::optional<double> seen;  // nullopt where it could not be measured
  std::string remark = {};
};

using Table = std::vector<Measure>;

bool IsMissed(const Measure& measure);
// As a Markdown table.
void Print(std::ostream& out, const Table& table);
// With so many places behind the point.
std::string Rounded(double value, int places);
// "| a | b |" and a line end.
std::string TableRow(const std::vector<std::string>& cells);
