// The user's folders and the site, as one.
#pragma once

#include <chrono>
#include <memory>

#include "gateway/sources/BackgroundLists.h"
#include "gateway/sources/CaptionSource.h"

namespace gateway {

inline constexpr std::chrono::seconds kSitePatience{5};

// For one language the folder's file wins. A list waits for the site only so long where a folder has
// something: then it is the folder's part alone, and the site's answer is there for the next question. A
// cause is the site's, after that of a file that is no captions.
class JoinedSource final : public CaptionSource {
 public:
  // Both must outlive this.
  JoinedSource(CaptionSource& folders, CaptionSource& site,
               std::chrono::milliseconds patience = kSitePatience);

  TrackList Tracks(std::string_view code, const Asker& asker) override;
  CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) override;

 private:
  CaptionSource& folders_;
  CaptionSource& site_;
  const std::chrono::milliseconds patience_;
  BackgroundLists lists_;
};

}  // namespace gateway
