#include <ostream>

#include "measures.h"

// Takes the place of desktop/ if the desktop program is not built.
void MeasureWaiting(const std::string&, Effort, std::ostream&, Table& table) {
  table.push_back(
      {"silence of 3 s, against libcurl", Measure::Bound::AtMost, 2, 0.5, std::nullopt, "not built"});
}

void MeasureDesktop(Effort, std::ostream&, Table& table) {
  table.push_back({"start to window, against an empty Qt window", Measure::Bound::AtMost, 1.5, 1.1,
                   std::nullopt, "not built"});
}
