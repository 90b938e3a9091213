// Documents of any size, the same bytes at every run and on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Sound timed text of so many cues, in document order and some 100 bytes each. Times are in
// hundredths of a second. Words are Latin, Greek and Japanese; some cues hold an apostrophe, a
// quotation mark, a line break or "&amp;". One cue in a hundred holds kRareWord.
// Another seed gives other words and times of the same kind.
std::string TimedTextDocument(std::size_t cues, std::uint64_t seed = 1);
// The cues' words as the word search sees them, clean.
std::vector<std::string> CueTextsOf(std::size_t cues);
inline constexpr char kRareWord[] = "orchestra";

// A list of so many caption tracks, the first of them the default one.
std::string TrackListDocument(std::size_t tracks);
