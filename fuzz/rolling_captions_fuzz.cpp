// Caption files generated from an input. Handmade ones, with repeated lines, overlaps and words that light up
// one by one, keep every cue; rolling ones give the original lines.

#include "gateway/documents/convert.h"
#include "support/Harness.h"
#include "timedtext/TimedText.h"

namespace {

struct Shown {
  std::int64_t start = 0;  // milliseconds
  std::int64_t end = 0;
  std::vector<std::string> lines;
  bool timesWords = false;

  bool operator==(const Shown& other) const {
    return start == other.start && end == other.end && Words() == other.Words();
  }
  std::string Words() const {
    std::string words;
    for (const std::string& line : lines) words += (words.empty() ? "" : "\n") + line;
    return words;
  }
};

std::string Padded(std::int64_t number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

std::string Clock(std::int64_t time, char point) {
  return Padded(time / 3'600'000, 2) + ":" + Padded(time / 60'000 % 60, 2) + ":" +
         Padded(time / 1000 % 60, 2) + point + Padded(time % 1000, 3);
}

std::string WriteVtt(const std::vector<Shown>& cues) {
  std::string file = "WEBVTT\n\n";
  for (const Shown& cue : cues) {
    file += Clock(cue.start, '.') + " --> " + Clock(cue.end, '.') + "\n" +
            (cue.lines.size() < 2 ? " \n" : "") + cue.Words() +
            (cue.timesWords ? "<" + Clock(cue.start, '.') + ">" : "") + "\n\n";
  }
  return file;
}

std::string WriteSrt(const std::vector<Shown>& cues) {
  std::string file;
  for (const Shown& cue : cues) {
    file += "1\n" + Clock(cue.start, ',') + " --> " + Clock(cue.end, ',') + "\n" + cue.Words() + "\n\n";
  }
  return file;
}

// Few words, so that lines repeat.
std::string LineOf(std::uint8_t byte) {
  constexpr const char* kWords[] = {"la", "la la", "[Music]", "3", ">> no", "oh"};
  return kWords[byte % std::size(kWords)];
}

// The cues that the program reads from the file.
std::vector<Shown> ReadBack(const std::string& ending, const std::string& file) {
  const auto conversion = gateway::ToDocument(file, *gateway::FormatWithEnding(ending), {"en", false});
  const TimedText track = TimedText::From(conversion.document);
  std::vector<Shown> cues;
  const auto milliseconds = [](std::string_view seconds) {
    std::string digits(seconds);
    std::erase(digits, '.');
    return std::stoll(digits);
  };
  for (std::size_t i = 0; i < track.Cues(); ++i) {
    const std::int64_t start = milliseconds(track.Times(i).start);
    cues.push_back({start, start + milliseconds(track.Times(i).dur), {std::string(track.Text(i).raw)}});
  }
  return cues;
}

// Starts differ, cues are long enough to be read, and words light up in all cues or in none.
std::vector<Shown> MakeByHand(fuzz::Input& input) {
  std::vector<Shown> cues;
  const bool timesWords = input.Byte() % 2 == 1;
  std::int64_t start = 0;
  while (!input.IsOver()) {
    Shown cue{start, start + 100 + 20 * input.Byte(), {}, timesWords};
    for (int lines = input.Byte() % 3; lines >= 0; --lines) cue.lines.push_back(LineOf(input.Byte()));
    const std::uint8_t next = input.Byte();
    start = next % 2 == 1 ? cue.end : start + 1 + 10 * next;
    cues.push_back(cue);
  }
  return cues;
}

struct Rolling {
  std::vector<Shown> lines;  // the spoken lines
  std::vector<Shown> cues;   // the cues that show them
};

Rolling Roll(fuzz::Input& input) {
  Rolling rolling;
  const std::size_t most = 2 + input.Byte() % 2;  // lines on the screen at a time
  std::int64_t time = 0;
  std::vector<std::string> shown;
  while (!input.IsOver()) {
    const std::uint8_t length = input.Byte(), pause = input.Byte();
    if (pause % 4 == 1) time += 60 + 10 * pause;  // all lines stay visible, or
    if (pause % 8 == 1) shown.clear();            // none does
    if (shown.size() == most) shown.erase(shown.begin());
    shown.push_back(LineOf(input.Byte()));
    const std::int64_t end = time + 60 + 10 * length;
    rolling.cues.push_back({time, end, shown, true});
    rolling.lines.push_back({time, end + 10, {shown.back()}});
    if (shown.size() == most) shown.erase(shown.begin());
    rolling.cues.push_back({end, end + 10, shown, false});
    time = end + 10;
  }
  return rolling;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  if (input.Byte() % 2 == 0) {
    const std::vector<Shown> cues = MakeByHand(input);
    HOLDS(ReadBack("vtt", WriteVtt(cues)) == cues);
    HOLDS(ReadBack("srt", WriteSrt(cues)) == cues);
  } else {
    const Rolling rolling = Roll(input);
    if (rolling.lines.size() < 2) return 0;
    HOLDS(ReadBack("vtt", WriteVtt(rolling.cues)) == rolling.lines);
    HOLDS(ReadBack("srt", WriteSrt(rolling.cues)) == rolling.lines);
  }
  return 0;
}
