#include "runtime/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

// Capacity for the digits of the largest double, a sign, a point and forty decimal places.
constexpr std::size_t kDigits = 400;
// As many as every double keeps; another digit would show the rounding errors of the arithmetic.
constexpr int kSignificantDigits = 15;
constexpr double kLargest = std::numeric_limits<double>::max();

double Finite(double value) { return std::isnan(value) ? 0 : std::clamp(value, -kLargest, kLargest); }

// A double that lies exactly between two results is an odd multiple of 1/2^(places+1).
bool IsHalfway(double value, int places) {
  const double scaled = std::ldexp(value, places + 1);
  return std::fabs(scaled) < 9007199254740992.0 && std::fmod(std::fabs(scaled), 2) == 1;
}

// The number d.ddd times ten to the power of exponent, for digits "dddd" that don't end in 0.
std::string PlainDecimal(std::string digits, int exponent) {
  if (exponent < 0) return "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) return digits.append(whole - digits.size(), '0');
  return digits.insert(whole, ".");
}

}  // namespace

double Val(std::string_view text) {
  std::size_t end = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
  const std::size_t start = end;
  const auto isDigit = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; };
  while (isDigit(end)) ++end;
  const std::size_t whole = end - start;
  if (end < text.size() && text[end] == '.') ++end;
  const std::size_t point = end;
  while (isDigit(end)) ++end;
  if (whole == 0 && end == point) return 0;
  double value = 0;
  const auto read = std::from_chars(text.data() + start, text.data() + end, value, std::chars_format::fixed);
  // Out of range means too large or too small; only digits before the point make it too large.
  if (read.ec == std::errc::result_out_of_range) {
    const std::string_view digits = text.substr(start, whole);
    value = digits.find_first_not_of('0') == std::string_view::npos ? 0 : kLargest;
  }
  return text[0] == '-' ? -value : value;
}

double CDbl(std::string_view text) { return Val(text); }

std::string Str(double value) {
  value = Finite(value);
  if (value == 0) return "0";
  char text[32];  // "d.dddddddddddddde-ddd"
  const auto end = std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific,
                                 kSignificantDigits - 1)
                       .ptr;
  std::string digits = text[0] + std::string(text + 2, kSignificantDigits - 1);
  digits.erase(digits.find_last_not_of('0') + 1);
  int exponent = 0;
  const char* afterE = text + kSignificantDigits + 2;
  std::from_chars(*afterE == '+' ? afterE + 1 : afterE, end, exponent);
  return (value < 0 ? "-" : "") + PlainDecimal(std::move(digits), exponent);
}

std::string Str(std::int64_t value) { return std::to_string(value); }

std::string Format(double value, std::string_view pattern) {
  const std::size_t point = std::min(pattern.find('.'), pattern.size());
  const int places =
      point == pattern.size() ? 0 : static_cast<int>(std::min<std::size_t>(pattern.size() - point - 1, 40));
  value = Finite(value);
  if (IsHalfway(value, places)) value = std::nextafter(value, std::copysign(kLargest, value));
  char digits[kDigits];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, std::fabs(value), std::chars_format::fixed, places).ptr;
  std::string text(digits, end);
  const std::size_t wholeDigits = std::min(text.find('.'), text.size());
  if (wholeDigits < point) text.insert(0, point - wholeDigits, '0');
  const bool isZero = text.find_first_not_of("0.") == std::string::npos;
  return value < 0 && !isZero ? "-" + text : text;
}

double Floor(double value) { return std::floor(value); }

std::int64_t ToInteger(double value) {
  constexpr double kEdge = 9223372036854775808.0;
  if (std::isnan(value)) return 0;
  if (value >= kEdge) return std::numeric_limits<std::int64_t>::max();
  if (value < -kEdge) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}
