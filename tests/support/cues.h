// The cues of a document, as the program reads them.
#pragma once

#include <string>
#include <vector>

#include "timedtext/TimedText.h"

// "start+dur words" of each cue, with "?" for a start without words.
inline std::vector<std::string> CuesIn(const std::string& document) {
  const TimedText track = TimedText::From(document);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < track.Starts(); ++i)
    lines.push_back(std::string(track.Times(i).start) + "+" + std::string(track.Times(i).dur) + " " +
                    (i < track.Cues() ? TextOf(track.Text(i)) : "?"));
  return lines;
}
