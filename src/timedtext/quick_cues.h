// The quick way through the cues of a document, with the same result as the table in normalise.cpp. Without
// it, conversion would miss its time in docs/speed.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct QuickCues {
  std::size_t taken = 0;            // bytes of the document that are done; 0 if its head is not a sound one
  std::size_t length = 0;           // bytes at its front that they have become
  std::vector<std::uint32_t> ends;  // of the fields in those
};

// Normalises the cues that follow a sound head, for as long as they keep to the pattern, and moves them to
// the front of the document. What stands between `length` and `taken` means nothing then.
QuickCues MoveQuickCues(std::string& document);
