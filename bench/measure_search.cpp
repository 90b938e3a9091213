#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <stdexcept>

#include "BareSearch.h"
#include "Turns.h"
#include "measures.h"
#include "runtime/RegEx.h"
#include "samples.h"

namespace {

std::size_t HitsByUs(RegEx& term, const std::vector<std::string>& texts) {
  std::size_t hits = 0;
  for (const std::string& text : texts) hits += term.Search(text) != nullptr;
  return hits;
}

std::size_t HitsByStandard(const std::regex& term, const std::vector<std::string>& texts) {
  return static_cast<std::size_t>(
      std::count_if(texts.begin(), texts.end(), [&](auto& text) { return std::regex_search(text, term); }));
}

// The texts as lines of a file, for grep.
class TextFile {
 public:
  explicit TextFile(const std::vector<std::string>& texts) {
    std::ofstream file(path_, std::ios::binary);
    for (const std::string& text : texts) file << text << '\n';
  }
  ~TextFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TextFile(const TextFile&) = delete;
  TextFile& operator=(const TextFile&) = delete;
  std::size_t HitsByGrep() const {
    const std::string command = std::string("LC_ALL=C.UTF-8 grep -i -c ") + kRareWord + " '" + path_ + "'";
    FILE* out = ::popen(command.c_str(), "r");
    std::size_t hits = 0;
    if (!out || std::fscanf(out, "%zu", &hits) != 1) hits = 0;
    if (out) ::pclose(out);
    return hits;
  }

 private:
  std::string path_ =
      (std::filesystem::temp_directory_path() / ("ravelyn-bench-" + std::to_string(::getpid()))).string();
};

// Elapsed time: processor time of other processes is not counted here.
double GrepTime(const TextFile& file, std::size_t turns) {
  std::vector<double> times;
  for (std::size_t i = 0; i < turns; ++i) {
    const auto start = std::chrono::steady_clock::now();
    Keep(file.HitsByGrep());
    times.push_back(
        std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count());
  }
  return Median(times);
}

}  // namespace

void MeasureSearch(Effort effort, std::ostream& out, Table& table) {
  out << "\n## Search of a word that occurs in 1 % of the cues, ns per cue\n\n"
      << TableRow(
             {"cues", "us", "PCRE2 bare", "PCRE2 bare, checked", "`std::regex`", "`grep -i`", "us / bare"})
      << TableRow({"---", "---", "---", "---", "---", "---", "---"});
  RegEx ours;
  ours.SearchPattern = kRareWord;
  BareSearch bare(kRareWord, false), checked(kRareWord, true);
  const std::regex standard(kRareWord, std::regex::icase | std::regex::optimize);
  double worst = 0;
  for (const std::size_t cues : {10'000, 100'000}) {
    const std::vector<std::string> texts = CueTextsOf(cues);
    const TextFile file(texts);
    const std::size_t hits = HitsByUs(ours, texts);
    if (hits != cues / 100 || bare.Hits(texts) != hits || checked.Hits(texts) != hits ||
        HitsByStandard(standard, texts) != hits || file.HitsByGrep() != hits) {
      throw std::runtime_error("the searches differ");
    }
    const std::size_t turns = effort.brief ? 3 : 21;
    auto times = Turns("search",
                       {{"us", [&] { Keep(HitsByUs(ours, texts)); }},
                        {"bare", [&] { Keep(bare.Hits(texts)); }},
                        {"checked", [&] { Keep(checked.Hits(texts)); }},
                        {"standard", [&] { Keep(HitsByStandard(standard, texts)); }}},
                       1, turns);
    times.push_back({GrepTime(file, turns)});
    std::vector<std::string> cells{std::to_string(cues)};
    for (const auto& time : times) cells.push_back(Rounded(Median(time) / static_cast<double>(cues), 1));
    const double ratio = MedianRatio(times[0], times[1]);
    cells.push_back(Rounded(ratio, 2));
    out << TableRow(cells) << std::flush;
    worst = std::max(worst, ratio);
  }
  table.push_back(
      {"search, time per cue against the bare PCRE2 loop", Measure::Bound::AtMost, 1.1, 0.4, worst});
}
