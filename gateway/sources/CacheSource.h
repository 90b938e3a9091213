// Keeps the texts of another source on disk.
#pragma once

#include <string>

#include "gateway/sources/CaptionCache.h"
#include "gateway/sources/CaptionSource.h"

namespace gateway {

// A text is fetched only once. A list is always requested, so that the cache never hides new tracks; if the
// source has none, the last list of a video with texts in the cache is returned together with the cause. A
// text is dropped when the list shows its track with another name or kind. Failures are not kept.
class CacheSource final : public CaptionSource {
 public:
  // Requires: `source` outlives this.
  CacheSource(CaptionSource& source, std::string folder, const CacheLimits& limits = {})
      : source_(source), cache_(std::move(folder), limits) {}

  TrackList Tracks(std::string_view code, const Requester& requester) override;
  CaptionText Text(std::string_view code, std::string_view language, const Requester& requester) override;

 private:
  void DropChangedTexts(std::string_view code, const TrackList& now) const;

  CaptionSource& source_;
  CaptionCache cache_;
};

}  // namespace gateway
