// Caption files on their way through the gateway's converter and the program's own reading.
#pragma once

#include <string>
#include <vector>

#include "gateway/documents/convert.h"
#include "runtime/Text.h"
#include "timedtext/TimedText.h"

inline gateway::Conversion Convert(const std::string& ending, std::string bytes,
                                   const gateway::TrackFacts& facts = {"en"}) {
  return gateway::ToDocument(std::move(bytes), *gateway::FormatWithEnding(ending), facts);
}

// What the program reads in a document: "start+dur words" of each cue, and the starts that have no words.
inline std::vector<std::string> CuesIn(const std::string& document) {
  TimedTextFields fields = NormaliseTimedText(document);
  const TimedText track(std::make_shared<const std::string>(std::move(fields.document)),
                        std::move(fields.ends));
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < track.Starts(); ++i)
    lines.push_back(std::string(track.Times(i).start) + "+" + std::string(track.Times(i).dur) + " " +
                    (i < track.Cues() ? TextOf(track.Text(i)) : "?"));
  return lines;
}

// The cues of a file, or the fault.
inline std::vector<std::string> CuesOf(const std::string& ending, std::string bytes,
                                       const gateway::TrackFacts& facts = {"en"}) {
  const auto conversion = Convert(ending, std::move(bytes), facts);
  return conversion.fault.empty() ? CuesIn(conversion.document) : std::vector{conversion.fault};
}
