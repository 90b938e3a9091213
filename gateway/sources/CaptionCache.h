// Fetched captions, kept on disk.
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
  std::uint64_t bytes = 256u << 20;                  // of all files together; the oldest are removed first
  std::chrono::seconds age = std::chrono::days{30};  // of a file; an older one counts as absent
};

// ravelyn/captions in $XDG_CACHE_HOME, else in ~/.cache; "" if the environment gives neither.
std::string UsualCacheFolder();

// A folder with a file for each text and a file for each video's list:
//
//   [CODE].LANG.captions     the document in the form that the program reads
//   [CODE].list.json         { "tracks": [ { "language", "name", "ownName", "automatic" }, ... ] }
//
// Files are written under a temporary name and then renamed, so that readers never see part of one. A file
// that a crash of the machine left incomplete counts as absent. Any number of threads and processes may share
// the folder. If a file can't be written, it is not kept, and the log says why.
class CaptionCache {
 public:
  // The folder is created with mode 0700 when the first file is kept. A folder that belongs to another user,
  // or that others may write to, is not used.
  explicit CaptionCache(std::string folder, const CacheLimits& limits = {});

  std::optional<CaptionFile> FindText(std::string_view code, std::string_view language) const;
  void KeepText(std::string_view code, std::string_view language, std::string_view document);
  void DropText(std::string_view code, std::string_view language) const;
  // Whether a text of the video is kept in any language.
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
  std::uint64_t bytes_ = 0;      // in the folder, as far as this process knows
  Clock::time_point nextSweep_;  // the first: at once
  int lastError_ = 0;            // logged last, so that it is not logged again
};

}  // namespace gateway
