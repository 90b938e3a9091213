// How the time of each stage grows with its input.
//
// A process of its own measures this; it never returns memory to the system, and uses large pages. Otherwise
// the cost of new pages, which even a mere copy has, would hide the cost of the stages.
#include <time.h>

#include <cstdio>
#include <filesystem>
#include <ostream>
#include <stdexcept>

#include "QuietPlatform.h"
#include "Turns.h"
#include "app/App.h"
#include "conversion.h"
#include "measures.h"
#include "ravelyn/commands.h"
#include "runtime/RegEx.h"
#include "runtime/Streams.h"
#include "samples.h"
#include "timedtext/formats.h"
#include "timedtext/normalise.h"

namespace {

constexpr char kKeptMemory[] =
    "GLIBC_TUNABLES=glibc.malloc.mmap_threshold=4000000000:glibc.malloc.trim_threshold=8000000000:"
    "glibc.malloc.hugetlb=1";

// The inputs of the stages, at one size.
struct Input {
  std::string document;
  TimedText track;
  Captions captions;
  std::shared_ptr<MemoryBlock> file = std::make_shared<MemoryBlock>(0);

  Input(std::size_t cues, std::uint64_t seed)
      : document(TimedTextDocument(cues, seed)),
        track(TimedText::From(document)),
        captions(FormCaptions(track)) {
    file->Bytes().reserve(document.size());
  }
};

double Now() {
  timespec time;
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double TimeToNormalise(const Input& input) {
  std::string document = input.document;
  const double start = Now();
  Keep(NormaliseTimedText(std::move(document)).ends.size());
  return Now() - start;
}

double TimeToForm(const Input& input) {
  const double start = Now();
  Keep(FormCaptions(input.track).Count());
  return Now() - start;
}

double TimeToWrite(const Input& input, void (*write)(TextOutputStream&, const Captions&)) {
  input.file->Bytes().clear();
  TextOutputStream out(input.file);
  const double start = Now();
  write(out, input.captions);
  out.Close();
  return Now() - start;
}

double TimeOfTranscript(const Input& input, Form form) {
  const double start = Now();
  Keep(TranscriptOf(input.track, form).size());
  return Now() - start;
}

double TimeToSearch(const Input& input) {
  RegEx term;
  term.SearchPattern = kRareWord;
  std::string buffer;
  std::size_t hits = 0;
  const double start = Now();
  for (std::size_t i = 0; i < input.track.Cues(); ++i) {
    hits += term.Search(input.track.Text(i).In(buffer)) != nullptr;
  }
  Keep(hits);
  return Now() - start;
}

struct Stage {
  const char* name;
  double (*time)(const Input&);
};

constexpr Stage kStages[] = {
    {"normalise and split", TimeToNormalise},
    {"timecodes", TimeToForm},
    {"write SRT", [](const Input& input) { return TimeToWrite(input, WriteSRT); }},
    {"write WebVTT", [](const Input& input) { return TimeToWrite(input, WriteVTT); }},
    {"lines with timecode", [](const Input& input) { return TimeOfTranscript(input, Form::StampedLines); }},
    {"lines", [](const Input& input) { return TimeOfTranscript(input, Form::Lines); }},
    {"paragraph", [](const Input& input) { return TimeOfTranscript(input, Form::Paragraph); }},
    {"search", TimeToSearch},
};

// Ten inputs, and one as large as all of them: branch prediction and caches help both sides alike.
struct Inputs {
  std::vector<Input> tenths;
  Input whole;

  explicit Inputs(std::size_t cues) : whole(cues, 0) {
    for (std::uint64_t seed = 1; seed <= 10; ++seed) tenths.emplace_back(cues / 10, seed);
  }
};

void PrintGrowth(const Stage& stage, const Inputs& inputs, std::size_t turns) {
  std::vector<double> tenth, whole;
  for (std::size_t turn = 0; turn <= turns; ++turn) {
    double sum = 0;
    for (const Input& input : inputs.tenths) sum += stage.time(input);
    const double time = stage.time(inputs.whole);
    if (turn > 0) tenth.push_back(sum / 10), whole.push_back(time);  // the first turn warms up
  }
  const std::size_t cues = inputs.whole.track.Cues();
  const auto count = static_cast<double>(cues);
  std::printf("%s|%zu|%.1f|%.1f|%.4f\n", stage.name, cues, Median(tenth) / count * 10, Median(whole) / count,
              MedianRatio(whole, tenth));
}

}  // namespace

int PrintGrowthOfStages(Effort effort) {
  QuietPlatform platform;
  App app(platform, kCommands, LocalEndpoints("127.0.0.1:1"));
  for (const std::size_t cues : {100'000, 1'000'000}) {
    if (effort.brief && cues > 100'000) continue;
    const Inputs inputs(cues);
    for (const Stage& stage : kStages) PrintGrowth(stage, inputs, effort.brief ? 9 : 4'000'000 / cues + 7);
  }
  return 0;
}

void MeasureGrowth(Effort effort, std::ostream& out, Table& table) {
  out << "\n## Growth of the stages, ns per cue\n\n"
      << TableRow({"stage", "cues", "at a tenth of them", "at all of them", "growth for ten times the input"})
      << TableRow({"---", "---", "---", "---", "---"});
  const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string command =
      std::string(kKeptMemory) + " '" + self + "' --growth" + (effort.brief ? " --brief" : "");
  FILE* lines = ::popen(command.c_str(), "r");
  Measure row{"growth of any stage for ten times the input", Measure::Bound::AtMost, 11, 10, 0, ""};
  char stage[64];
  std::size_t cues = 0;
  double tenth = 0, whole = 0, growth = 0;
  while (lines &&
         std::fscanf(lines, " %63[^|]|%zu|%lf|%lf|%lf", stage, &cues, &tenth, &whole, &growth) == 5) {
    out << TableRow({stage, std::to_string(cues), Rounded(tenth, 1), Rounded(whole, 1), Rounded(growth, 1)})
        << std::flush;
    if (growth > row.seen)
      row.seen = growth, row.remark = std::string(stage) + ", " + std::to_string(cues) + " cues";
  }
  if (!lines || ::pclose(lines) != 0 || row.seen == 0)
    throw std::runtime_error("the measure of growth failed");
  table.push_back(row);
}
