#include "timedtext/timecode.h"

#include <algorithm>
#include <cmath>

#include "runtime/Numbers.h"
#include "runtime/Text.h"
#include "runtime/pieces.h"

namespace {

struct Fields {
  std::string hours = "00";
  std::string minutes = "00";
  std::string secs;
};

void MoveHoursOut(Fields& fields) {
  if (Val(fields.minutes) < 60.0) return;
  fields.hours = Format(Val(Str(Floor(Val(fields.minutes) / 60.0))), "0");
  fields.minutes = Str(std::max(Val(fields.minutes) - Val(fields.hours) * 60.0, 0.0));
}

// Rounding has made the seconds 60: they become the next minute, and that perhaps the next hour.
void Carry(Fields& fields, std::string_view secondsPattern) {
  if (Val(fields.secs) < 60.0) return;
  fields.secs = Format(Val(fields.secs) - 60.0, secondsPattern);
  fields.minutes = Str(Val(fields.minutes) + 1.0);
  if (Val(fields.minutes) < 60.0) return;
  fields.hours = Format(Val(fields.hours) + 1.0, "00");
  fields.minutes = "0";
}

std::string Timecode(double seconds, std::string_view secondsPattern) {
  Fields fields;
  if (seconds >= 60.0) {
    const std::string whole = Split(Str(seconds / 60.0), ".").front();
    fields.minutes = Format(Val(whole), "00");
    // Str may have rounded the minutes up; then no seconds are left, rather than a negative number.
    fields.secs = Str(std::max(seconds - Val(fields.minutes) * 60.0, 0.0));
  } else {
    fields.secs = Str(seconds);
  }
  MoveHoursOut(fields);
  if (fields.hours != "00" && Val(fields.hours) < 10.0) fields.hours = "0" + fields.hours;
  fields.secs = Format(Val(fields.secs), secondsPattern);
  Carry(fields, secondsPattern);
  fields.minutes = Format(Val(fields.minutes), "00");
  return fields.hours + ":" + fields.minutes + ":" + fields.secs;
}

// Thousandths of a second that a text such as "83.33" means, exactly; nullopt for any other form.
std::optional<std::int64_t> Thousandths(std::string_view text) {
  constexpr std::size_t kMostDigits = 9;
  constexpr std::int64_t kScale[] = {1000, 100, 10, 1};
  const auto isDigit = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '9'; };
  std::int64_t value = 0;
  std::size_t end = 0;
  for (; end < kMostDigits && isDigit(end); ++end) value = value * 10 + (text[end] - '0');
  if (end == 0) return std::nullopt;
  std::size_t places = 0;
  if (end < text.size() && text[end] == '.') {
    for (++end; places < 3 && isDigit(end); ++end, ++places) value = value * 10 + (text[end] - '0');
  }
  if (end < text.size()) return std::nullopt;
  return value * kScale[places];
}

// Thousandths of a second as SecsToTimecode rounds them to hundredths. A third decimal of 5 is rounded like
// the double that Format gets, the seconds within their minute after a passage through text, which may lie
// on either side of the half. fma gives the exact sign of that double minus the decimal.
std::int64_t Rounded(std::int64_t thousandths) {
  const std::int64_t digit = thousandths % 10;
  if (digit != 5) return (thousandths + 5) / 10;
  const std::int64_t inMinute = thousandths % 60'000;
  const std::int64_t minutes = thousandths / 60'000;
  const double seconds =
      Val(Str(static_cast<double>(thousandths) / 1000.0 - static_cast<double>(minutes) * 60.0));
  return thousandths / 10 + (std::fma(seconds, 1000.0, -static_cast<double>(inMinute)) >= 0 ? 1 : 0);
}

}  // namespace

std::string SecsToTimecode(double seconds) { return Timecode(seconds, "00.00"); }

std::string returnTimecodeSRT(double seconds) { return Timecode(seconds, "00.000"); }

std::string ToCommaTimecode(std::string plain) { return Replace(std::move(plain), ".", ",").append("0"); }

std::string timecodeToSecs(const std::string& timecode) {
  StringArray parts = Split(timecode, ":");
  parts.resize(3);
  return Str(Val(parts[0]) * 3600.0 + Val(parts[1]) * 60.0 + Val(parts[2]));
}

std::optional<std::int64_t> StartHundredths(std::string_view start) {
  const auto exact = Thousandths(start);
  return exact ? std::optional(Rounded(*exact)) : std::nullopt;
}

char* PutTimecode(char* to, std::int64_t hundredths) {
  const auto putTwoDigits = [&to](std::uint32_t number) {
    *to++ = static_cast<char>('0' + number / 10);
    *to++ = static_cast<char>('0' + number % 10);
  };
  const std::int64_t hours = hundredths / 360000;
  const auto inHour = static_cast<std::uint32_t>(hundredths % 360000);
  if (hours < 100) {
    putTwoDigits(static_cast<std::uint32_t>(hours));
  } else {
    to = Put(to, hours);
  }
  *to++ = ':';
  putTwoDigits(inHour / 6000);
  *to++ = ':';
  putTwoDigits(inHour / 100 % 60);
  *to++ = '.';
  putTwoDigits(inHour % 100);
  return to;
}

std::string StartTimecode(std::string_view start) {
  const auto hundredths = StartHundredths(start);
  if (!hundredths) return SecsToTimecode(Val(start));
  char text[kMostTimecode];
  return std::string(text, PutTimecode(text, *hundredths));
}

std::optional<std::int64_t> EndHundredths(std::string_view start, std::string_view dur) {
  const auto from = Thousandths(start);
  const auto length = Thousandths(dur);
  if (!from || !length) return std::nullopt;
  // For a sum of so few digits, Str gives the exact decimal.
  return Rounded(*from + *length);
}
