// The commands of the rooms above, as App and the windows call them. ravelyn/ fills the record, so that no
// room knows one above it.
#pragma once

#include <cstdint>
#include <string>

class Window1;
enum class Output;

struct Commands {
  void (*Search)(Window1& form);
  void (*Download)(Window1& form);
  void (*SearchWords)(Window1& form);

  // Each does one row of Listbox1, from 0, and shows a message for a failure. SearchTrack gives false where
  // the term can't be searched for, so that no other row is worth a try.
  void (*DownloadTrack)(Window1& form, std::int64_t row, Output output);
  bool (*SearchTrack)(Window1& form, std::int64_t row);

  void (*getPrefs)();
  void (*savePrefs)();

  std::string (*SecsToTimecode)(double seconds);
  std::string (*returnTimecodeSRT)(double seconds);
  std::string (*timecodeToSecs)(const std::string& timecode);
};
