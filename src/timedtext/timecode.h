// Seconds and timecode text. Values go through decimal text several times on their way, and those
// round trips are part of the result.
//
//   plain  "HH:MM:SS.hh"   at least two digits of hours, no upper limit
//   three  "HH:MM:SS.hhh"
//   comma  "HH:MM:SS,hh0"  the plain one with a third decimal that is always 0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Seconds are rounded once, and a 60 that rounding makes is carried: 59.996 gives "00:01:00.00",
// since WebVTT knows no second 60.
std::string SecsToTimecode(double seconds);
std::string returnTimecodeSRT(double seconds);
std::string ToCommaTimecode(std::string plain);
// Seconds as text. A part that is missing counts as 0; in the comma form the fraction is cut off.
std::string timecodeToSecs(const std::string& timecode);

// The timecodes of a cue's times, where these are decimal digits with at most three behind the point,
// in hundredths of a second; nullopt for any other text. They are what the decimal text leads to:
//   StartHundredths   SecsToTimecode(Val(start))
//   EndHundredths     SecsToTimecode(Val(Str(Val(start) + Val(dur))))
std::optional<std::int64_t> StartHundredths(std::string_view start);
std::optional<std::int64_t> EndHundredths(std::string_view start, std::string_view dur);
// Writes the plain timecode, of at most kMostTimecode bytes, and gives the place behind it.
inline constexpr std::size_t kMostTimecode = 24;
char* PutTimecode(char* to, std::int64_t hundredths);
// SecsToTimecode(Val(start)), of any text.
std::string StartTimecode(std::string_view start);
