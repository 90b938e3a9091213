#include <ostream>

#include "measures.h"

// Stands in where the desktop program is not built along with the benchmarks.
void MeasureDesktop(Effort, std::ostream&, Table& table) {
  table.push_back({"start to window, against an empty Qt window", Measure::Bound::AtMost, 1.5, 1.1,
                   std::nullopt, "not built"});
}
