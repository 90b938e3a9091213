#include "samples.h"

#include "runtime/Text.h"

namespace {

constexpr const char* kWords[] = {
    "the",   "a",     "of",      "and",   "water",   "garden",   "we",     "walk",    "slowly",  "Morning",
    "light", "over",  "harbour", "café",  "naïve",   "street",   "people", "were",    "talking", "about",
    "music", "which", "nobody",  "hears", "anymore", "τραγούδι", "朝の光", "because", "it",      "rained",
    "all",   "night", "long",    "so",    "boats",   "stayed",   "in",     "port",    "until",   "noon"};

// A plain linear congruence (multiplier and increment of Knuth's MMIX).
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}
  std::size_t Below(std::size_t limit) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<std::size_t>(state_ >> 33) % limit;
  }

 private:
  std::uint64_t state_;
};

// With the escapes of a document.
std::string Words(Numbers& numbers, std::size_t cue) {
  std::string words;
  const std::size_t count = 5 + numbers.Below(8);
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) words += i == count / 2 && cue % 3 == 0 ? '\n' : ' ';
    words += kWords[numbers.Below(std::size(kWords))];
  }
  if (cue % 4 == 1) words += ", it&amp;#39;s";
  if (cue % 9 == 2) words += " &amp;quot;so&amp;quot;";
  if (cue % 50 == 3) words += " &amp; on";
  if (cue % 100 == 57) words += std::string(" ") + (cue % 200 == 57 ? "Orchestra" : kRareWord);
  return words;
}

// Without trailing zeros: "12.34", "12.5", "12".
std::string Seconds(std::size_t hundredths) {
  std::string text = std::to_string(hundredths / 100);
  const std::size_t rest = hundredths % 100;
  if (rest == 0) return text;
  text += '.' + std::string(rest < 10 ? "0" : "") + std::to_string(rest);
  if (text.ends_with('0')) text.pop_back();
  return text;
}

}  // namespace

std::string TimedTextDocument(std::size_t cues, std::uint64_t seed) {
  Numbers numbers(seed);
  std::string document = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript>";
  std::size_t start = 50;
  for (std::size_t i = 0; i < cues; ++i) {
    const std::size_t dur = 80 + numbers.Below(500);
    document += "<text start=\"" + Seconds(start) + "\" dur=\"" + Seconds(dur) + "\">";
    document += Words(numbers, i) + "</text>";
    // At most eleven hours, so that the times stay short with any number of cues.
    start = (start + dur + numbers.Below(60)) % 4'000'000;
  }
  return document += "</transcript>";
}

std::vector<std::string> CueTextsOf(std::size_t cues) {
  Numbers numbers(2);
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < cues; ++i) {
    std::string words = ReplaceAll(Words(numbers, i), "\n", " ");
    texts.push_back(ReplaceAll(ReplaceAll(std::move(words), "&amp;#39;", "'"), "&amp;quot;", "\""));
  }
  return texts;
}

std::string TrackListDocument(std::size_t tracks) {
  std::string document = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript_list docid=\"4711\">";
  for (std::size_t i = 0; i < tracks; ++i) {
    const std::string number = std::to_string(i);
    document += "<track id=\"" + number + "\" name=\"" + (i % 5 == 4 ? "second" : "") + "\" lang_code=\"l" +
                number + "\" lang_original=\"Langue " + number + "\" lang_translated=\"Language " + number +
                "\"" + (i == 0 ? " lang_default=\"true\"" : "") + "/>";
  }
  return document += "</transcript_list>";
}
