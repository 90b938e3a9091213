// Documents of any size; the same bytes in every run and on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Well-formed timed text of `cues` cues, about 100 bytes each, with times in hundredths of a second. Words
// are Latin, Greek and Japanese; some cues have an apostrophe, a quotation mark, a line break or "&amp;", and
// one in a hundred has kRareWord. The seed varies words and times.
std::string TimedTextDocument(std::size_t cues, std::uint64_t seed = 1);
// The texts of the cues as the word search sees them.
std::vector<std::string> CueTextsOf(std::size_t cues);
inline constexpr char kRareWord[] = "orchestra";

// A list of `tracks` caption tracks, the first of them the default one.
std::string TrackListDocument(std::size_t tracks);
