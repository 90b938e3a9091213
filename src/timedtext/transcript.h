// The text transcript: a paragraph, or lines with or without timecodes.
//
//   paragraph = *( text " " )
//   lines     = *( [ "[" timecode "]" TAB ] text eol )
#pragma once

#include <functional>
#include <string>

class TimedText;

struct TranscriptForm {
  bool byLines, withTimecodes;  // timecodes only apply to lines
};

// The transcript of a track. Calls `form` for each cue, and yields after each.
std::string Transcript(const TimedText& track, const std::function<TranscriptForm()>& form);
