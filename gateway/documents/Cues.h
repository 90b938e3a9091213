// What a reader finds in a caption file: cues in plain text.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

// Times are milliseconds from the start of the video. Later ones count as this.
inline constexpr std::int64_t kLatestTime = 999'999'999'999;
// The end of a cue of which the file only says when it starts: it lasts until the next one.
inline constexpr std::int64_t kUntilNext = -1;

struct Cue {
  std::int64_t start = 0;
  std::int64_t end = 0;  // not before the start, or kUntilNext
  std::uint32_t at = 0;  // of its words in Cues::words
  std::uint32_t length = 0;
  bool timesWords = false;  // single words of it have times of their own
};

class Cues {
 public:
  static constexpr std::size_t kMost = 1'500'000;

  // Words and cues of a text of so many bytes find room without being moved.
  explicit Cues(std::size_t textSize) {
    words.reserve(textSize);
    list.reserve(std::min(kMost, textSize / 16 + 1));
  }

  // Makes a cue of the words that were appended since the last one.
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
  // Forgets the words that were appended since the last cue.
  void Drop() { words.resize(closed_); }

  std::string_view WordsOf(const Cue& cue) const { return {words.data() + cue.at, cue.length}; }

  std::string words;  // of all cues, one after the other; UTF-8
  std::vector<Cue> list;
  bool overflowed = false;  // there were more than kMost

 private:
  std::uint32_t closed_ = 0;
};

}  // namespace gateway
