// Caption files, converted by the gateway and read by the program.
#pragma once

#include <string>
#include <vector>

#include "gateway/documents/convert.h"
#include "runtime/Text.h"
#include "support/cues.h"

inline gateway::Conversion Convert(const std::string& ending, std::string bytes,
                                   const gateway::TrackFacts& facts = {"en"}) {
  return gateway::ToDocument(std::move(bytes), *gateway::FormatWithEnding(ending), facts);
}

// The cues of a file, or the fault.
inline std::vector<std::string> CuesOf(const std::string& ending, std::string bytes,
                                       const gateway::TrackFacts& facts = {"en"}) {
  const auto conversion = Convert(ending, std::move(bytes), facts);
  return conversion.fault.empty() ? CuesIn(conversion.document) : std::vector{conversion.fault};
}
