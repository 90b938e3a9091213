// The result of a command in numbers. Commands count in it; the screen shows it in words after their end.
#pragma once

#include <cstdint>
#include <string>

struct Progress {
  std::int64_t begun = 0;                             // Ticks, plus the time that the user spent at dialogs
  std::int64_t languages = -1;                        // listed by a search; -1 if none ran
  std::int64_t saved = 0, cancelled = 0, failed = 0;  // files
  std::string folder = {};                            // path; "" unless all saved files are in it
  std::string item = {};                              // language of the file being saved
  std::int64_t place = 0, of = 0;           // that file is number `place`, from 1, of `of` requested
  std::int64_t searched = 0, withHits = 0;  // tracks
  std::int64_t hits = 0;

  // "Spanish, 3 of 8", or "Spanish" if it is the only one; "" before the first.
  std::string Step() const;
  // Counts a file that has been written to path.
  void CountSaved(const std::string& path);
  // "8 languages", "3 files saved in Documents", "2 saved, 1 cancelled", "10 hits in 2 tracks", followed by
  // the time since `begun` if that is more than two seconds. Begins with "Stopped" if the user stopped the
  // command. "" if there is nothing to report.
  std::string Words(bool wasStopped, std::int64_t now) const;
};
