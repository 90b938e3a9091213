// The caption files, SRT and WebVTT. WebVTT is SRT with a header and with points in its timecodes.
//
//   cue = number LF start " --> " end LF text LF eol      eol is the stream's own line end
#pragma once

#include <string>

#include "runtime/Streams.h"
#include "runtime/TextList.h"
#include "timedtext/TimedText.h"

// The three parallel lists of one track, one entry for each cue; times in the comma form.
struct Captions {
  TextList starts;
  TextList ends;
  CueTexts texts;
  // A document that breaks the pattern may have more times than texts: the shorter list counts.
  std::size_t Count() const;
};

// Yields after each cue of each loop, as the two writers do.
Captions FormCaptions(TimedText track);
// Raise IOException from the stream.
void WriteSRT(TextOutputStream& out, const Captions& captions);
void WriteVTT(TextOutputStream& out, const Captions& captions);
