// Seconds and timecode text. Values go through decimal text several times on their way, and those
// round trips are part of the result.
//
//   plain  "HH:MM:SS.hh"   at least two digits of hours, no upper limit
//   three  "HH:MM:SS.hhh"
//   comma  "HH:MM:SS,hh0"  the plain one with a third decimal that is always 0
#pragma once

#include <string>
#include <string_view>

// Seconds are rounded once, and a 60 that rounding makes is carried: 59.996 gives "00:01:00.00",
// since WebVTT knows no second 60.
std::string SecsToTimecode(double seconds);
std::string returnTimecodeSRT(double seconds);
std::string ToCommaTimecode(std::string plain);
// Seconds as text. A part that is missing counts as 0; in the comma form the fraction is cut off.
std::string timecodeToSecs(const std::string& timecode);

// What SecsToTimecode(Val(start)), and SecsToTimecode of Val(Str(Val(start) + Val(dur))), give, by
// whole numbers where start and dur are decimal digits with at most three behind the point.
std::string StartTimecode(std::string_view start);
std::string EndTimecode(std::string_view start, std::string_view dur);
