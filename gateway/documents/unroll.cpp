#include <algorithm>

#include "gateway/documents/Cues.h"
#include "gateway/documents/cleaning.h"

namespace gateway {
namespace {

constexpr std::int64_t kMoment = 50;  // milliseconds

using Lines = std::vector<std::string_view>;

void Cut(std::string_view words, Lines& lines) {
  lines.clear();
  for (std::size_t end; (end = words.find('\n')) != std::string_view::npos; words.remove_prefix(end + 1))
    lines.push_back(words.substr(0, end));
  lines.push_back(words);
}

// Whether the last lines of `one` are those of `other`.
bool EndsWithLines(std::string_view one, std::string_view other) {
  if (!one.ends_with(other)) return false;
  return one.size() == other.size() || one[one.size() - other.size() - 1] == '\n';
}

bool StartsAtEndOf(const Cue& before, const Cue& cue) {
  return cue.start >= before.end - kMoment && cue.start <= before.end + kMoment;
}

bool IsHold(const Cues& cues, const Cue& before, const Cue& cue) {
  if (!StartsAtEndOf(before, cue) || !EndsWithLines(cues.WordsOf(before), cues.WordsOf(cue))) return false;
  return cue.end - cue.start <= kMoment || (before.timesWords && !cue.timesWords);
}

bool Rolls(const Cues& cues) {
  std::size_t holds = 0;
  for (std::size_t i = 1; i < cues.list.size(); ++i) holds += IsHold(cues, cues.list[i - 1], cues.list[i]);
  return holds >= 2 && holds * 5 >= cues.list.size();
}

// Finds the longest run of lines that starts a cue and ends the previous one, in linear time by the table of
// Knuth, Morris and Pratt.
class RunFinder {
 public:
  // The length of the run, in lines.
  std::size_t Find(std::string_view before, std::string_view words) {
    Cut(before, before_);
    Cut(words, lines_);
    FillTable();
    const std::size_t from = before_.size() - std::min(before_.size(), lines_.size());
    std::size_t length = 0;
    for (std::size_t i = from; i < before_.size(); ++i) length = Extended(length, before_[i]);
    return length;
  }
  const Lines& FoundIn() const { return lines_; }

 private:
  // The length of the run after one more line. lines_[length] exists, because no more lines are searched than
  // lines_ has.
  std::size_t Extended(std::size_t length, std::string_view line) const {
    while (length > 0 && lines_[length] != line) length = table_[length - 1];
    return lines_[length] == line ? length + 1 : length;
  }
  void FillTable() {
    table_.assign(lines_.size(), 0);
    for (std::size_t i = 1; i < lines_.size(); ++i) table_[i] = Extended(table_[i - 1], lines_[i]);
  }

  Lines before_, lines_;
  std::vector<std::size_t> table_;  // for each run of first lines: the longest shorter run that it ends with
};

void CutFirstLines(Cue& cue, const Lines& lines, std::size_t count) {
  const auto length = static_cast<std::uint32_t>(lines[count].data() - lines.front().data());
  cue.at += length;
  cue.length -= length;
}

}  // namespace

bool Unroll(Cues& cues) {
  if (!Rolls(cues)) return false;
  RunFinder runs;
  Cue before = cues.list.front();  // as in the file, before any line was removed
  std::size_t kept = 1;
  for (std::size_t i = 1; i < cues.list.size(); ++i) {
    Cue cue = cues.list[i];
    const std::size_t run = runs.Find(cues.WordsOf(before), cues.WordsOf(cue));
    const bool isWhole = run == runs.FoundIn().size();
    const bool isPause = cue.start > before.end + kMoment;
    before = cue;
    if (isWhole && !isPause) {
      Cue& last = cues.list[kept - 1];
      last.end = std::max(last.end, cue.end);
      continue;
    }
    if (!isWhole) CutFirstLines(cue, runs.FoundIn(), run);
    cues.list[kept++] = cue;
  }
  cues.list.resize(kept);
  return true;
}

}  // namespace gateway
