// What a command came to, in numbers. The commands count in it; the screen puts it into words when one has
// ended.
#pragma once

#include <cstdint>
#include <string>

struct Progress {
  std::int64_t begun = 0;                             // Ticks, later by what the user took for answers
  std::int64_t languages = -1;                        // that a search has listed; -1 where none was
  std::int64_t saved = 0, cancelled = 0, failed = 0;  // files
  std::string folder;                                 // of those saved, as long as it is one; its path
  bool inSeveralFolders = false;
  std::string item;                         // the language that is being saved
  std::int64_t place = 0, of = 0;           // of that file among those that were asked for, from 1
  std::int64_t searched = 0, withHits = 0;  // tracks
  std::int64_t hits = 0;

  // "Spanish, 3 of 8", or "Spanish" where it is the only one; "" before the first.
  std::string Step() const;
  // A file stands at path.
  void CountSaved(const std::string& path);
  // "8 languages", "3 files saved in Documents", "2 saved, 1 cancelled", "10 hits in 2 tracks", with the time
  // where it took more than two seconds until now; "Stopped" in front of it where the command was. "" for
  // nothing to say.
  std::string Words(bool wasStopped, std::int64_t now) const;
};
