// The sources that the options ask for, put together.
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
  // With fetch, yt-dlp is looked for and asked for its version, which takes it some tenths of a second; it is
  // not waited for once stop can be read, -1 for none. Requires: what SiteSource requires.
  explicit AllSources(const Options& options, int stop = -1);

  CaptionSource& Whole();

  // What there is, for the start line: "1 video with 2 tracks from DIR; fetches nothing".
  std::string Summary(const Options& options) const;

 private:
  FolderSource folders_;
  std::string fetching_;
  // Each uses the one above it, and ends before it.
  std::optional<SiteSource> site_;
  std::optional<CacheSource> cache_;
  std::optional<JoinedSource> joined_;
};

}  // namespace gateway
