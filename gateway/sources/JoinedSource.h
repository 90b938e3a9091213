// Combines the user's folders and the site in one source.
#pragma once

#include <chrono>

#include "gateway/sources/BackgroundLists.h"
#include "gateway/sources/CaptionSource.h"

namespace gateway {

inline constexpr std::chrono::seconds kSitePatience{5};

// For one language a folder's file wins. If a folder has tracks of a video, its list waits for the site no
// longer than patience; then it contains only the folder's tracks, and the site's answer serves the next
// request. A cause is that of a file that can't be served, followed by the site's.
class JoinedSource final : public CaptionSource {
 public:
  // Requires: both outlive this.
  JoinedSource(CaptionSource& folders, CaptionSource& site,
               std::chrono::milliseconds patience = kSitePatience);

  TrackList Tracks(std::string_view code, const Requester& requester) override;
  CaptionText Text(std::string_view code, std::string_view language, const Requester& requester) override;

 private:
  CaptionSource& folders_;
  CaptionSource& site_;
  const std::chrono::milliseconds patience_;
  BackgroundLists lists_;
};

}  // namespace gateway
