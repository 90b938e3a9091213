// The word search: tests a term against each cue of the selected tracks. The term is a regular expression, as
// typed; case is ignored.
#pragma once

#include <cstdint>

class Window1;

// The command: checks the form, then searches each selected track.
void SearchWords(Window1& form);

// Searches the track in this row of Listbox1, counted from 0, and shows hits as they are found. Shows a
// message on failure or if there is no hit. False if the term can't be searched for in any track.
bool SearchTrack(Window1& form, std::int64_t row);
