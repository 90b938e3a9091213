// Cleans the cues of a reader before the document is written. A file that is not automatic and does not roll
// keeps all words, times and overlaps; only a cue with the same start and words as the one before is dropped.
#pragma once

#include <string_view>

namespace gateway {

class Cues;

// Runs all steps in order. The result is sorted by start, and each cue has an end and words.
void Clean(Cues& cues, std::string_view language, bool automatic);

// Its steps:

// Cues with the same start keep their order.
void SortByStart(Cues& cues);
// A missing end becomes the start of the next cue that starts later; without a later cue, the start plus
// three seconds.
void CloseOpenEnds(Cues& cues);
// In each line, a run of blanks (also U+00A0 and U+202F) and ASCII control characters becomes one blank, none
// at either end. U+FEFF is removed, and so is U+200B, except inside a line of a language that writes no
// blanks between words (Khmer, Lao, Burmese, Thai). Empty lines are removed, then cues without words.
void TidyWords(Cues& cues, std::string_view language);
// Drops each cue with the same start and words as the one before.
void DropRepeats(Cues& cues);
// Ends each cue at the latest when one with a later start begins.
void CutOverlaps(Cues& cues);

// Rolling captions show each line several times: as it is spoken, held for a moment, and above the next
// line. A hold cue shows only lines that the previous cue ended with, starts within 50 ms of that cue's end,
// and either lasts at most 50 ms or has no word times while the previous cue has. If there are at least two
// hold cues, and they are at least a fifth of all, then each cue loses its longest run of first lines that
// the previous cue ended with. A cue with nothing left is removed, and the previous cue lasts until its end;
// but after a pause of more than 50 ms the lines were spoken again, and such a cue keeps them.
// Returns whether the file rolls. Requires: TidyWords has run.
bool Unroll(Cues& cues);

}  // namespace gateway
