// What is put right between a reader and the document. A file that is not automatic and does not roll
// keeps each of its words, times and overlaps; only a cue that repeats start and words of the one before
// is dropped.
#pragma once

#include <string_view>

namespace gateway {

class Cues;

// All steps, in order. Afterwards the cues are sorted by start, each has an end and words.
void Clean(Cues& cues, std::string_view language, bool automatic);

// Its steps:

// By start; cues of one start keep their order.
void SortByStart(Cues& cues);
// An end that was left open is the start of the next cue that starts later; the last ones last three seconds.
void CloseOpenEnds(Cues& cues);
// Of each line: blanks of any kind, and control characters, become one blank in a row, none at its ends;
// U+FEFF goes, and so does U+200B, which stays inside a line of a language that writes no blanks between
// words (Khmer, Lao, Burmese, Thai). Empty lines go, then cues without words.
void TidyWords(Cues& cues, std::string_view language);
void DropRepeats(Cues& cues);
// No cue lasts longer than to the next start that is later than its own.
void CutOverlaps(Cues& cues);

// Rolling captions show each line several times: as it is spoken, held for a moment, and above the next
// line. A hold cue shows only lines that the cue before ended with, starts where that one ended (up to
// 50 ms beside it), and either lasts no more than 50 ms or times no words while the cue before does. Where
// such cues are at least two and at least a fifth of all, each cue loses the longest run of its first lines
// that the cue before ended with; one with nothing left goes, and the cue before lasts until its end. After a
// pause of more than 50 ms the same lines have been said again: one that would have nothing left keeps them.
// True if it was such a file. Requires: TidyWords.
bool Unroll(Cues& cues);

}  // namespace gateway
