// Fetched captions, kept on the disk.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

struct CacheLimits {
  std::uint64_t bytes = 256u << 20;              // of all files together; the oldest go first
  std::chrono::seconds age{30 * 24 * 60 * 60L};  // of a file; an older one counts as absent
};

// Where the user's programs keep what they can fetch again: ravelyn/captions in $XDG_CACHE_HOME, else in
// ~/.cache. "" if the environment names neither.
std::string UsualCacheFolder();

// A folder with one file for each text and one for each video's list:
//
//   [CODE].LANG.captions     the document in the form that the program reads
//   [CODE].list.json         { "tracks": [ { "language", "name", "ownName", "automatic" }, ... ] }
//
// Files are written aside and renamed, so that none is ever seen half. What a failing machine left of one
// counts as absent. Any number of threads and of processes may share the folder. What can't be written is not
// kept; the log says why.
class CaptionCache {
 public:
  // The folder is made, 0700, when something is kept. One that is another user's, or that others may write
  // to, is not used.
  explicit CaptionCache(std::string folder, const CacheLimits& limits = {});

  std::optional<CaptionFile> FindText(std::string_view code, std::string_view language) const;
  void KeepText(std::string_view code, std::string_view language, std::string_view document);
  void DropText(std::string_view code, std::string_view language) const;
  // Whether there is a text of the video in any language.
  bool HasTextOf(std::string_view code) const;

  std::optional<TrackList> FindList(std::string_view code) const;
  void KeepList(std::string_view code, const TrackList& list);

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<CaptionFile> Open(const std::string& fileName) const;
  void Keep(const std::string& fileName, std::string_view bytes);
  bool Write(const std::string& fileName, std::string_view bytes) const;
  bool IsUsable() const;
  void Sweep();

  const std::string folder_;
  const CacheLimits limits_;
  std::mutex mutex_;
  std::uint64_t bytes_ = 0;      // in the folder, so far as this process knows
  Clock::time_point nextSweep_;  // at once
  int lastError_ = 0;            // what the log has said already
};

}  // namespace gateway
