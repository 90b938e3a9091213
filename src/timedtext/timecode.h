// Converts between seconds and timecode text. Values pass through decimal text several times, and those round
// trips are part of the result.
//
//   plain  "HH:MM:SS.hh"   at least two digits of hours, no upper limit
//   three  "HH:MM:SS.hhh"
//   comma  "HH:MM:SS,hh0"  the plain one with a third decimal that is always 0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Rounds once, and carries a 60 that rounding makes: 59.996 gives "00:01:00.00", since WebVTT has no
// second 60.
std::string SecsToTimecode(double seconds);
std::string returnTimecodeSRT(double seconds);
std::string ToCommaTimecode(std::string plain);
// Returns seconds as text. A missing part counts as 0; the fraction of a comma form is dropped.
std::string timecodeToSecs(const std::string& timecode);

// A cue's start and end in hundredths of a second, if its times are decimal digits with at most three after
// the point; nullopt for any other text. They equal the results of the plain way:
//   StartHundredths   SecsToTimecode(Val(start))
//   EndHundredths     SecsToTimecode(Val(Str(Val(start) + Val(dur))))
std::optional<std::int64_t> StartHundredths(std::string_view start);
std::optional<std::int64_t> EndHundredths(std::string_view start, std::string_view dur);
// Writes the plain timecode, of at most kMostTimecode bytes, and returns its end.
inline constexpr std::size_t kMostTimecode = 24;
char* PutTimecode(char* to, std::int64_t hundredths);
// SecsToTimecode(Val(start)), of any text.
std::string StartTimecode(std::string_view start);
