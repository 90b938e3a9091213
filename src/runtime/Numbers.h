// Numbers and their decimal text. A Number is a double, an Integer is signed and 64 bits wide.
// The decimal separator is a point whatever the locale says, and no text has an exponent.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The number that stands at the very start of text: a sign, decimal digits and a point, nothing
// else; 0 if there is none (white space in front included). A number too large for a double
// is the largest double of its sign.
double Val(std::string_view text);
double CDbl(std::string_view text);

// Plain decimal text of at most 15 significant digits, without zeros at the end of its fraction:
// "3.5", "60", "0". A decimal of up to 15 digits comes back from Val and Str as it was, and so does a
// sum of two of them as long as it has no more: 0.1 + 0.2 gives "0.3". Infinity stands as the largest double,
// no number as "0".
std::string Str(double value);
std::string Str(std::int64_t value);
inline std::string Str(int value) { return Str(static_cast<std::int64_t>(value)); }

// value by a picture such as "00.00": each "0" is a digit that is always printed. A value with
// more digits before the point prints them all; places behind the point are rounded, the exact
// double half away from zero. A result of zero has no sign.
std::string Format(double value, std::string_view pattern);
inline std::string Str(double value, std::string_view pattern) { return Format(value, pattern); }

double Floor(double value);
// Towards zero; beyond the range of an Integer its nearest end, and 0 for no number.
std::int64_t ToInteger(double value);

// A count that grows by 60 every second and never goes back. The host's clock gives it
// (Platform.h), so that a test can move it by hand.
std::int64_t Ticks();
