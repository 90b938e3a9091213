// The quick way through the cues of a document, with the same result as the table in normalise.cpp. Without
// it, conversion would miss its time in docs/speed.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct QuickCues {
  std::size_t taken = 0;            // bytes of the document that are done; 0 without a well-formed head
  std::size_t length = 0;           // bytes at its front that they have become
  std::vector<std::uint32_t> ends;  // of the fields in those
};

// Normalises the cues that follow a well-formed head, for as long as they keep to the pattern, and moves them
// to the front of the document. The bytes between `length` and `taken` then mean nothing.
QuickCues MoveQuickCues(std::string& document);
