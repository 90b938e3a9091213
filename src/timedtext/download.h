// The Download command.
#pragma once

#include <cstdint>

class Window1;
enum class Output;

// Checks the form, then saves each selected track as each kind of file that is chosen.
void Download(Window1& form);

// Saves the track in this row of Listbox1, from 0: from the request to the opened file. Shows a message for a
// failure.
void DownloadTrack(Window1& form, std::int64_t row, Output output);
