#include <algorithm>
#include <map>
#include <ostream>
#include <stdexcept>

#include "Turns.h"
#include "conversion.h"
#include "measures.h"
#include "runtime/Text.h"
#include "samples.h"
#include "timedtext/normalise.h"

namespace {

// Below this many cues, what a run does once is no small part of it.
constexpr std::size_t kCounted = 10'000;

void CheckSameBytes(Window1& window, const std::string& document, Form form) {
  const std::string ours = ConvertByUs(window, document, form);
  const bool same = ours == ConvertByPugixml(document, form) && ours == ConvertByLibxml2(document, form);
  if (!same || ours.empty())
    throw std::runtime_error(std::string("the converters differ in ") + NameOf(form));
}

struct Amount {
  std::size_t runs, turns;
};

Amount AmountFor(std::size_t cues, Effort effort) {
  const std::size_t turns = cues >= 1'000'000 ? 3 : cues >= 100'000 ? 5 : 11;
  return {std::max<std::size_t>(1, 30'000 / cues), effort.brief ? 3 : turns};
}

// The worst growth of time from a size to its tenfold.
class Growth {
 public:
  void Note(const std::string& stage, std::size_t cues, double time) {
    times_[stage][cues] = time;
    const auto tenth = times_[stage].find(cues / 10);
    if (cues / 10 < kCounted || tenth == times_[stage].end()) return;
    const double factor = time / tenth->second;
    if (factor > worst_) worst_ = factor, where_ = stage + ", " + std::to_string(cues) + " cues";
  }
  Measure Row() const {
    return {"growth of any stage for ten times the input", Measure::Bound::AtMost, 11, 10, worst_, where_};
  }

 private:
  std::map<std::string, std::map<std::size_t, double>> times_;
  double worst_ = 0;
  std::string where_;
};

struct Worst {
  double ratio = 0;
  std::string where;
};

void CompareForm(Window1& window, const std::string& document, std::size_t cues, Form form, Effort effort,
                 std::ostream& out, Worst& worst, Growth& growth) {
  CheckSameBytes(window, document, form);
  const Amount amount = AmountFor(cues, effort);
  const auto times = Turns(std::string("conversion/") + NameOf(form),
                           {{"us", [&] { Keep(ConvertByUs(window, document, form).size()); }},
                            {"pugixml", [&] { Keep(ConvertByPugixml(document, form).size()); }},
                            {"libxml2", [&] { Keep(ConvertByLibxml2(document, form).size()); }},
                            {"bound", [&] { Keep(CopyByMemchr(document).size()); }}},
                           amount.runs, amount.turns);
  std::vector<std::string> cells{std::to_string(cues), NameOf(form)};
  for (const double time : times) cells.push_back(Rounded(time / static_cast<double>(cues), 0));
  const double ratio = times[0] / times[1];
  cells.push_back(Rounded(ratio, 2));
  out << TableRow(cells) << std::flush;
  growth.Note(NameOf(form), cues, times[0]);
  if (cues >= kCounted && ratio > worst.ratio) worst = {ratio, cells[1] + ", " + cells[0] + " cues"};
}

void TimeStages(const std::string& document, std::size_t cues, Effort effort, std::ostream& out,
                Growth& growth) {
  const Amount amount = AmountFor(cues, effort);
  const auto times = Turns("stages",
                           {{"normalise", [&] { Keep(NormaliseTimedText(document).ends.size()); }},
                            {"split", [&] { Keep(document.size()); }}},
                           amount.runs, amount.turns);
  out << TableRow({std::to_string(cues), Rounded(times[0] / static_cast<double>(cues), 0),
                   Rounded(times[1] / static_cast<double>(cues), 0)})
      << std::flush;
  growth.Note("normalisation", cues, times[0]);
  growth.Note("split", cues, times[1]);
}

}  // namespace

void MeasureConversion(Window1& window, Effort effort, std::ostream& out, Table& table) {
  std::vector<std::size_t> sizes{1'000, 10'000, 100'000};
  if (!effort.brief) sizes.push_back(1'000'000);
  Worst worst;
  Growth growth;
  out << "\n## Conversion in memory, ns a cue\n\n"
      << TableRow({"cues", "form", "us", "pugixml", "libxml2", "bound", "us / pugixml"})
      << TableRow({"---", "---", "---", "---", "---", "---", "---"});
  for (const std::size_t cues : sizes) {
    const std::string document = TimedTextDocument(cues);
    for (const Form form : kForms) {
      CompareForm(window, document, cues, form, effort, out, worst, growth);
    }
  }
  out << "\n## Stages of it, ns a cue\n\n"
      << TableRow({"cues", "normalise", "split"}) << TableRow({"---", "---", "---"});
  for (const std::size_t cues : sizes) TimeStages(TimedTextDocument(cues), cues, effort, out, growth);
  table.push_back({"conversion, time against pugixml and `to_chars`", Measure::Bound::AtMost, 0.5, 0.22,
                   worst.ratio, worst.where});
  table.push_back(growth.Row());
}
