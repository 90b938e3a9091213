// Numbers and their decimal text. A Number is a double, an Integer is signed and 64 bits wide.
// The decimal separator is a point in every locale, and no text has an exponent.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The number at the very start of text: a sign, decimal digits and a point, nothing else. 0 if there is none,
// also after white space. A number too large for a double becomes the largest double of its sign.
double Val(std::string_view text);
double CDbl(std::string_view text);

// Plain decimal text of at most 15 significant digits, without trailing zeros in the fraction: "3.5", "60",
// "0". Val and Str keep a decimal of up to 15 digits, and the sum of two of them if it has no more: 0.1 + 0.2
// gives "0.3". Infinity gives the largest double, not-a-number "0".
std::string Str(double value);
std::string Str(std::int64_t value);
inline std::string Str(int value) { return Str(static_cast<std::int64_t>(value)); }

// value in a pattern such as "00.00": each "0" is a digit that is always printed. All digits before the point
// are printed; the fraction is rounded, exact halves away from zero. A result of zero has no sign.
std::string Format(double value, std::string_view pattern);
inline std::string Str(double value, std::string_view pattern) { return Format(value, pattern); }

double Floor(double value);
// Rounds towards zero. A value out of range becomes the nearest Integer, not-a-number 0.
std::int64_t ToInteger(double value);
