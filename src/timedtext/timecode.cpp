#include "timedtext/timecode.h"

#include <cmath>

#include "app/Window1.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"

namespace {

struct Fields {
  std::string hours = "00";
  std::string minutes = "00";
  std::string secs;
};

void MoveHoursOut(Fields& fields) {
  if (Val(fields.minutes) < 60.0) return;
  fields.hours = Format(Val(Str(Floor(Val(fields.minutes) / 60.0))), "0");
  fields.minutes = Str(Val(fields.minutes) - Val(fields.hours) * 60.0);
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
    fields.secs = Str(seconds - Val(fields.minutes) * 60.0);
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

}  // namespace

std::string SecsToTimecode(double seconds) { return Timecode(seconds, "00.00"); }

std::string returnTimecodeSRT(double seconds) { return Timecode(seconds, "00.000"); }

std::string ToCommaTimecode(const std::string& plain) { return Replace(plain, ".", ",") + "0"; }

std::string timecodeToSecs(const std::string& timecode) {
  StringArray parts = Split(timecode, ":");
  parts.resize(3);
  return Str(Val(parts[0]) * 3600.0 + Val(parts[1]) * 60.0 + Val(parts[2]));
}

std::string Window1::SecsToTimecode(double seconds) const { return ::SecsToTimecode(seconds); }
std::string Window1::returnTimecodeSRT(double seconds) const { return ::returnTimecodeSRT(seconds); }
std::string Window1::timecodeToSecs(const std::string& timecode) const { return ::timecodeToSecs(timecode); }
