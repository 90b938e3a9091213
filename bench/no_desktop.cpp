#include <ostream>

#include "measures.h"

// Takes the place of desktop/ if the desktop program is not built.
void MeasureWaiting(const std::string&, Effort, std::ostream&, Table& table) {
  for (const char* what : {"processor time", "wake-ups"})
    table.push_back({std::string("silence of 3 s, against libcurl: ") + what, Measure::Bound::AtMost, 2, 0.5,
                     std::nullopt, "not built"});
}

void MeasureDesktop(Effort, std::ostream&, Table& table) {
  table.push_back({"start until drawn, against the form by hand in Qt", Measure::Bound::AtMost, 1.2, 1.0,
                   std::nullopt, "not built"});
}
