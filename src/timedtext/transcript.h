// The text transcript: a paragraph, or lines with or without timecodes.
//
//   paragraph = *( text " " )
//   lines     = *( [ "[" timecode "]" TAB ] text eol )
#pragma once

#include <functional>
#include <string>

class TimedText;

struct TranscriptForm {
  bool byLines, withTimecodes;  // the latter counts for lines alone
};

// The transcript of a track; asks for the form of each cue as it comes to it, and yields after each.
std::string Transcript(const TimedText& track, const std::function<TranscriptForm()>& form);
