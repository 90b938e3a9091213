// Seconds and timecode text. Values go through decimal text several times on their way, and those
// round trips are part of the result.
//
//   plain  "HH:MM:SS.hh"   at least two digits of hours, no upper limit
//   three  "HH:MM:SS.hhh"
//   comma  "HH:MM:SS,hh0"  the plain one with a third decimal that is always 0
#pragma once

#include <string>

// Seconds are rounded once, and a 60 that rounding makes is carried: 59.996 gives "00:01:00.00",
// since WebVTT knows no second 60.
std::string SecsToTimecode(double seconds);
std::string returnTimecodeSRT(double seconds);
std::string ToCommaTimecode(const std::string& plain);
// Seconds as text. A part that is missing counts as 0; in the comma form the fraction is cut off.
std::string timecodeToSecs(const std::string& timecode);
