// The stage that all users of a caption track begin with: fetches one track and takes it apart into
// cues, by literal replacements and one split.
//
//   document    = declaration "<transcript>" *cue "</transcript>"
//   declaration = `<?xml version="1.0" encoding="utf-8" ?>`        this spelling only
//   cue         = `<text start="` S `" dur="` D `">` T `</text>`   S and D decimal seconds
//
// The separators are placed before any entity is decoded, so that a quotation mark which decoding
// gives never forms one. In a document that breaks the pattern the fields shift; the lists are then
// read as far as both the times and the texts go.
#pragma once

#include <optional>
#include <string>

#include "runtime/Text.h"

class Window1;

struct TimedTextCue {
  std::string start;  // decimal seconds, as the document has them
  std::string dur;
  std::string text;
};

// One fetched track.
struct TimedText {
  std::string trackTitle;  // the language's name, the base of the default file name
  StringArray fields;      // start, dur, text, start, ..., and one last field behind the last separator

  // The cues that have a start, and those that have a text as well.
  std::size_t Starts() const;
  std::size_t Cues() const;
  // start and dur of cue i below Starts(), without its text.
  TimedTextCue Times(std::size_t i) const;
  // The words of cue i below Cues(), cleaned.
  std::string Text(std::size_t i) const;
};

// Fetches the track in this row of Listbox1, leaves the normalised document in TextArea1 and cuts it.
// nullopt after a failed connection, which the person has been told.
std::optional<TimedText> FetchTimedText(Window1& form, std::int64_t row);

// The replacements of the stage, on a whole document.
std::string NormaliseTimedText(std::string document);
// Line ends, and the byte pair FD FF, become blanks; nothing is trimmed.
std::string CleanCueText(std::string text);
// Start plus duration, by way of its decimal text.
double CueEndSeconds(const TimedTextCue& cue);
