// Combines the sources that the options select.
#pragma once

#include <optional>
#include <string>

#include "gateway/options.h"
#include "gateway/sources/CacheSource.h"
#include "gateway/sources/FolderSource.h"
#include "gateway/sources/JoinedSource.h"
#include "gateway/sources/SiteSource.h"

namespace gateway {

class AllSources {
 public:
  // With Options::fetch, finds yt-dlp and asks for its version, which takes a few tenths of a second. Stops
  // waiting for it once the descriptor `stop` is readable; -1 for none. Requires: what SiteSource requires.
  explicit AllSources(const Options& options, int stop = -1);

  CaptionSource& Whole();

  // The contents, for the start line: "1 video with 2 tracks from DIR; fetches nothing".
  std::string Summary(const Options& options) const;

 private:
  FolderSource folders_;
  std::string fetching_;
  // Each uses those above it, and is destroyed before them.
  std::optional<SiteSource> site_;
  std::optional<CacheSource> cache_;
  std::optional<JoinedSource> joined_;
};

}  // namespace gateway
