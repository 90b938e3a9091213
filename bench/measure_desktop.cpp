#include <ostream>

#include "measures.h"

// The desktop program is measured where it is built along with the benchmarks.
void MeasureDesktop(std::ostream&, Table& table) {
  table.push_back(
      {"start to window, against an empty Qt window", Measure::Bound::AtMost, 1.5, 1.1, std::nullopt});
}
