#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "Turns.h"
#include "conversion.h"
#include "measures.h"
#include "samples.h"

namespace {

// With fewer cues, the fixed costs of a run distort the ratio.
constexpr std::size_t kCounted = 10'000;

void CheckSameBytes(const std::string& document, Form form) {
  const std::string ours = *ConvertByUs(document, form);
  const bool same = ours == ConvertByPugixml(document, form) && ours == ConvertByLibxml2(document, form);
  if (!same || ours.empty())
    throw std::runtime_error(std::string("the converters differ in ") + NameOf(form));
}

struct Amount {
  std::size_t runs, turns;
};

Amount AmountFor(std::size_t cues, Effort effort) {
  const std::size_t turns = cues >= 1'000'000 ? 5 : cues >= 100'000 ? 9 : 21;
  return {std::max<std::size_t>(cues >= 1'000'000 ? 1 : 3, 30'000 / cues), effort.brief ? 3 : turns};
}

struct Worst {
  double ratio = 0;
  std::string where;
};

void CompareForm(const std::string& document, std::size_t cues, Form form, Effort effort, std::ostream& out,
                 Worst& worst) {
  CheckSameBytes(document, form);
  const Amount amount = AmountFor(cues, effort);
  // The program and pugixml change the document, so each gets a copy of its own.
  std::string copy;
  const auto makeCopy = [&] { copy = document; };
  const auto times =
      Turns(std::string("conversion/") + NameOf(form),
            {{"us", [&] { Keep(ConvertByUs(std::move(copy), form)->size()); }, makeCopy},
             {"pugixml", [&] { Keep(ConvertByPugixml(std::move(copy), form).size()); }, makeCopy},
             {"libxml2", [&] { Keep(ConvertByLibxml2(document, form).size()); }},
             {"bound", [&] { Keep(CopyByMemchr(document).size()); }}},
            amount.runs, amount.turns);
  std::vector<std::string> cells{std::to_string(cues), NameOf(form)};
  for (const auto& time : times) cells.push_back(Rounded(Median(time) / static_cast<double>(cues), 0));
  const double ratio = MedianRatio(times[0], times[1]);
  cells.push_back(Rounded(ratio, 2));
  out << TableRow(cells) << std::flush;
  if (cues >= kCounted && ratio > worst.ratio) worst = {ratio, cells[1] + ", " + cells[0] + " cues"};
}

}  // namespace

void MeasureConversion(Effort effort, std::ostream& out, Table& table) {
  std::vector<std::size_t> sizes{1'000, 10'000, 100'000};
  if (!effort.brief) sizes.push_back(1'000'000);
  Worst worst;
  out << "\n## Conversion in memory, ns per cue\n\n"
      << TableRow({"cues", "form", "us", "pugixml", "libxml2", "bound", "us / pugixml"})
      << TableRow({"---", "---", "---", "---", "---", "---", "---"});
  for (const std::size_t cues : sizes) {
    const std::string document = TimedTextDocument(cues);
    for (const Form form : kForms) {
      CompareForm(document, cues, form, effort, out, worst);
    }
  }
  table.push_back({"conversion, time against pugixml and `to_chars`", Measure::Bound::AtMost, 0.5, 0.22,
                   worst.ratio, worst.where});
}
