// The request for one caption track.
#pragma once

#include <cstdint>
#include <optional>

#include "timedtext/TimedText.h"

class Window1;

// Fetches the track in this row of Listbox1, from 0, and leaves the normalised document in TextArea1. Shows a
// message after a failed connection; nullopt then.
std::optional<TimedText> FetchTimedText(Window1& form, std::int64_t row);
