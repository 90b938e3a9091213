// The result of reading a caption file: cues in plain text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

// Times are milliseconds from the start of the video; later ones are cut to this.
inline constexpr std::int64_t kLatestTime = 999'999'999'999;
// The end of a cue for which the file gives only a start: it lasts until the next one.
inline constexpr std::int64_t kUntilNext = -1;

struct Cue {
  std::int64_t start = 0;
  std::int64_t end = 0;  // not before the start, or kUntilNext
  std::uint32_t at = 0;  // its words in Cues::words
  std::uint32_t length = 0;
  bool timesWords = false;  // single words have times of their own
};

class Cues {
 public:
  static constexpr std::size_t kMost = 1'500'000;

  // Reserves memory for the words and cues of a text of textSize bytes.
  explicit Cues(std::size_t textSize) {
    words.reserve(textSize);
    list.reserve(std::min(kMost, textSize / 16 + 1));
  }

  // Makes a cue of the words appended since the last one.
  void Close(std::int64_t start, std::int64_t end, bool timesWords = false) {
    if (list.size() == kMost) overflowed = true;
    if (!overflowed) {
      const std::int64_t from = std::clamp<std::int64_t>(start, 0, kLatestTime);
      const std::int64_t to = end == kUntilNext ? end : std::clamp(end, from, kLatestTime);
      list.push_back({from, to, closed_, static_cast<std::uint32_t>(words.size() - closed_), timesWords});
    }
    closed_ = static_cast<std::uint32_t>(words.size());
  }

  bool IsBlankSinceLast() const { return words.find_first_not_of(" \t\r\n", closed_) == std::string::npos; }
  // Discards the words appended since the last cue.
  void Drop() { words.resize(closed_); }

  std::string_view WordsOf(const Cue& cue) const { return {words.data() + cue.at, cue.length}; }

  std::string words;  // of all cues, concatenated; UTF-8
  std::vector<Cue> list;
  bool overflowed = false;  // there were more than kMost cues

 private:
  std::uint32_t closed_ = 0;
};

}  // namespace gateway
