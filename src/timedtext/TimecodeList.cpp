#include "timedtext/TimecodeList.h"

#include "runtime/Numbers.h"

void TimecodeList::AppendStart(const TimedTextCue& cue) {
  if (!AppendHundredths(StartHundredths(cue.start))) AppendSeconds(Val(cue.start));
}

void TimecodeList::AppendEnd(const TimedTextCue& cue) {
  if (!AppendHundredths(EndHundredths(cue.start, cue.dur))) AppendSeconds(CueEndSeconds(cue));
}

bool TimecodeList::AppendHundredths(std::optional<std::int64_t> hundredths) {
  if (!hundredths || *hundredths >= kAsText) return false;
  times_.push_back(static_cast<std::uint32_t>(*hundredths));
  return true;
}

void TimecodeList::AppendSeconds(double seconds) {
  times_.push_back(kAsText | static_cast<std::uint32_t>(texts_.size()));
  texts_.push_back(ToCommaTimecode(SecsToTimecode(seconds)));
}
