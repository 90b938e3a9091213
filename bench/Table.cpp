#include "Table.h"

#include <charconv>
#include <ostream>

namespace {

std::string Wanted(Measure::Bound bound, double value) {
  return std::string(bound == Measure::Bound::AtMost ? "at most " : "at least ") + Rounded(value, 2);
}

std::string Seen(const Measure& measure) {
  if (!measure.seen) return "not measured";
  return Rounded(*measure.seen, 2) + (IsMissed(measure) ? " **missed**" : "");
}

}  // namespace

bool IsMissed(const Measure& measure) {
  if (!measure.seen) return false;
  return measure.bound == Measure::Bound::AtMost ? *measure.seen > measure.must
                                                 : *measure.seen < measure.must;
}

void Print(std::ostream& out, const Table& table) {
  out << TableRow({"measure", "must", "dream", "seen", "remark"})
      << TableRow({"---", "---", "---", "---", "---"});
  for (const Measure& m : table) {
    out << TableRow({m.name, Wanted(m.bound, m.must), Rounded(m.dream, 2), Seen(m), m.remark});
  }
}

std::string Rounded(double value, int places) {
  char text[400];
  return std::string(text,
                     std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, places).ptr);
}

std::string TableRow(const std::vector<std::string>& cells) {
  std::string row = "|";
  for (const std::string& cell : cells) row += " " + cell + " |";
  return row + "\n";
}
