// The timecodes of a track's cues. Nearly all times are plain decimal seconds, stored in hundredths of a
// second, four bytes each; any other is stored as its timecode text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/exceptions.h"
#include "runtime/pieces.h"
#include "timedtext/TimedText.h"
#include "timedtext/timecode.h"

// A timecode as a piece of a text (see runtime/pieces.h): the comma form, or the same with a point for the
// comma.
struct ListedTimecode {
  std::uint32_t hundredths;
  std::string_view text;  // if there are no hundredths
  char point;
};
inline std::size_t MostBytes(const ListedTimecode& time) { return kMostTimecode + time.text.size(); }
inline char* Put(char* to, const ListedTimecode& time) {
  char* end = time.text.data() ? Put(to, time.text) : Put(PutTimecode(to, time.hundredths), "0");
  end[-4] = time.point;
  return end;
}

class TimecodeList {
 public:
  void Reserve(std::size_t count) { times_.reserve(count); }
  void AppendStart(const TimedTextCue& cue);
  // Start plus duration of the cue itself, whatever the start of the next one.
  void AppendEnd(const TimedTextCue& cue);
  // OutOfBoundsException for an index that is not there. Requires: the list outlives the result.
  ListedTimecode At(std::size_t index) const { return At(index, ','); }
  ListedTimecode WithPointAt(std::size_t index) const { return At(index, '.'); }

 private:
  static constexpr std::uint32_t kAsText = 1u << 31;
  bool AppendHundredths(std::optional<std::int64_t> hundredths);
  void AppendSeconds(double seconds);
  ListedTimecode At(std::size_t index, char point) const {
    if (index >= times_.size()) throw OutOfBoundsException("The list has no timecode at that index.");
    const std::uint32_t time = times_[index];
    if (time < kAsText) return {time, {}, point};
    return {0, texts_[time - kAsText], point};
  }

  std::vector<std::uint32_t> times_;  // hundredths, or kAsText and an index in texts_
  std::vector<std::string> texts_;    // comma timecodes
};
