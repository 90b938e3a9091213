// The files that a track is saved as: for each type of app/output_types.h its extension and its writer.
#pragma once

#include <functional>

#include "runtime/Streams.h"
#include "timedtext/TimecodeList.h"
#include "timedtext/TimedText.h"

class Window1;
enum class Output;

// Writes one file; raises IOException from the stream.
using FileWriter = std::function<void(TextOutputStream&)>;

// One kind of file.
struct FileFormat {
  Output output;
  const char* extension;
  const char* fileType;  // filter of the save dialog, see FileTypes1; "" for none
  // Prepares the contents, yielding after each cue, before the user is asked for a file name.
  FileWriter (*Form)(Window1& form, const TimedText& track);
  bool clearsDocument;  // whether TextArea1 is emptied afterwards
};

const FileFormat& FormatOf(Output output);

// The three parallel lists of one track, one entry for each cue; the texts are in the track.
struct Captions {
  TimecodeList starts;
  TimecodeList ends;
  TimedText track;
  // A document that breaks the pattern may have more times than texts; the shorter list counts.
  std::size_t Count() const { return track.Cues(); }
};

// Yields after each cue, as the writers do.
Captions FormCaptions(TimedText track);
void WriteSRT(TextOutputStream& out, const Captions& captions);
void WriteVTT(TextOutputStream& out, const Captions& captions);
