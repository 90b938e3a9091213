// The caption files, SRT and WebVTT. WebVTT is SRT with a header and with points in its timecodes.
//
//   cue = number LF start " --> " end LF text LF eol      eol is the stream's own line end
#pragma once

#include <string>

#include "runtime/Streams.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/TimedText.h"

// The three parallel lists of one track, one entry for each cue; the texts stand in the track.
struct Captions {
  TimecodeList starts;
  TimecodeList ends;
  TimedText track;
  // A document that breaks the pattern may have more times than texts: the shorter list counts.
  std::size_t Count() const { return track.Cues(); }
};

// Yields after each cue, as the two writers do.
Captions FormCaptions(TimedText track);
// Raise IOException from the stream.
void WriteSRT(TextOutputStream& out, const Captions& captions);
void WriteVTT(TextOutputStream& out, const Captions& captions);
