#include "gateway/documents/times.h"

#include <algorithm>

#include "gateway/documents/Cues.h"
#include "gateway/documents/ascii.h"

namespace gateway {
namespace {

constexpr std::string_view kBlanks = " \t";

// A whole number, at most kLatestTime.
std::optional<std::int64_t> TakeDigits(std::string_view& text) {
  if (text.empty() || !IsDigit(text.front())) return std::nullopt;
  std::int64_t value = 0;
  for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1))
    value = std::min(value * 10 + (text.front() - '0'), kLatestTime);
  return value;
}

// The digits of a fraction, in thousandths.
std::int64_t TakeFraction(std::string_view& text) {
  std::int64_t value = 0;
  for (std::int64_t weight = 100; !text.empty() && IsDigit(text.front()); text.remove_prefix(1), weight /= 10)
    value += weight * (text.front() - '0');
  return value;
}

bool TakeOne(std::string_view& text, std::string_view marks) {
  if (text.empty() || marks.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

void SkipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
}

// Each number is at most kLatestTime, so that the sum fits.
std::int64_t Total(std::int64_t hours, std::int64_t minutes, std::int64_t seconds, std::int64_t thousandths) {
  return std::min(((hours * 60 + minutes) * 60 + seconds) * 1000 + thousandths, kLatestTime);
}

}  // namespace

std::optional<std::int64_t> Milliseconds(std::string_view text) {
  const bool isNegative = TakeOne(text, "-");
  const auto value = TakeDigits(text);
  if (!value || !text.empty()) return std::nullopt;
  return isNegative ? 0 : *value;
}

std::optional<std::int64_t> Seconds(std::string_view text) {
  const bool isNegative = TakeOne(text, "-");
  const auto whole = TakeDigits(text);
  const bool hasPoint = TakeOne(text, ".");
  if (!whole && (!hasPoint || text.empty())) return std::nullopt;
  const std::int64_t fraction = hasPoint ? TakeFraction(text) : 0;
  if (!text.empty()) return std::nullopt;
  return isNegative ? 0 : Total(0, 0, whole.value_or(0), fraction);
}

std::optional<std::int64_t> TakeClock(std::string_view& text) {
  std::string_view left = text;
  std::int64_t hours = 0;
  auto minutes = TakeDigits(left);
  if (!minutes || !TakeOne(left, ":")) return std::nullopt;
  auto seconds = TakeDigits(left);
  if (!seconds) return std::nullopt;
  if (TakeOne(left, ":")) {
    hours = *minutes;
    minutes = seconds;
    seconds = TakeDigits(left);
    if (!seconds) return std::nullopt;
  }
  std::string_view fraction = left;
  std::int64_t thousandths = 0;
  if (TakeOne(fraction, ".,") && !fraction.empty() && IsDigit(fraction.front())) {
    thousandths = TakeFraction(fraction);
    left = fraction;
  }
  text = left;
  return Total(hours, *minutes, *seconds, thousandths);
}

std::optional<Times> ReadTimeLine(std::string_view line) {
  SkipBlanks(line);
  const auto start = TakeClock(line);
  SkipBlanks(line);
  if (!start || !line.starts_with("-->")) return std::nullopt;
  line.remove_prefix(3);
  SkipBlanks(line);
  const auto end = TakeClock(line);
  if (!end || (!line.empty() && kBlanks.find(line.front()) == std::string_view::npos)) return std::nullopt;
  return Times{*start, *end};
}

}  // namespace gateway
