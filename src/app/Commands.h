// The commands, as App and the windows call them. ravelyn/ fills the record, so that app/ does not depend on
// the rooms that define them.
#pragma once

#include <cstdint>
#include <string>

class Window1;
enum class Output;

struct Commands {
  void (*Search)(Window1& form);
  void (*Download)(Window1& form);
  void (*SearchWords)(Window1& form);

  // Each handles one row of Listbox1, counted from 0, and shows a message on failure. SearchTrack returns
  // false if the term can't be searched for, so that trying another row is pointless.
  void (*DownloadTrack)(Window1& form, std::int64_t row, Output output);
  bool (*SearchTrack)(Window1& form, std::int64_t row);

  void (*getPrefs)();
  void (*savePrefs)();

  std::string (*SecsToTimecode)(double seconds);
  std::string (*returnTimecodeSRT)(double seconds);
  std::string (*timecodeToSecs)(const std::string& timecode);
};
