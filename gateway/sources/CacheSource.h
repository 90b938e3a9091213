// Another source with its texts kept on the disk.
#pragma once

#include <string>

#include "gateway/sources/CaptionCache.h"
#include "gateway/sources/CaptionSource.h"

namespace gateway {

// A text that was fetched once is not asked for again. A list is always asked for, so that the cache never
// shortens it; where the source has none, the last one of a video with texts in the cache is given, beside
// the cause. A text goes when the list gives its track another name or kind. No failure is kept.
class CacheSource final : public CaptionSource {
 public:
  // `source` must outlive this.
  CacheSource(CaptionSource& source, std::string folder, const CacheLimits& limits = {})
      : source_(source), cache_(std::move(folder), limits) {}

  TrackList Tracks(std::string_view code, const Asker& asker) override;
  CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) override;

 private:
  void DropWhatChanged(std::string_view code, const TrackList& now) const;

  CaptionSource& source_;
  CaptionCache cache_;
};

}  // namespace gateway
