// The word search: tests a term against every cue of the selected tracks by itself. The term is a
// regular expression, taken as it stands in the field; case doesn't matter.
#pragma once

#include <cstdint>

class Window1;

// The command: checks the form, then searches each selected track.
void SearchWords(Window1& form);

// Searches the track in this row of Listbox1, from 0, and shows the hits as they are found. Shows a message
// for a failure, or where there is none; false where the term can't be searched for, so that no other row is
// worth a try.
bool SearchTrack(Window1& form, std::int64_t row);
