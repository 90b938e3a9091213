// The captions of any video of the site, fetched on demand by yt-dlp.
#pragma once

#include <memory>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/SiteSettings.h"

namespace gateway {

// Lists are kept in memory until their links expire, "no captions" and the site's verdicts for a while; texts
// are not kept. Simultaneous requests for the same list or text share one fetch, which is stopped when all
// their clients have gone. After a bot check or too many requests, no child is started for a while.
//
// The destructor kills all children, removes their folders, and makes calls under way return.
//
// Requires: before it is made, main() blocks the signals that it waits for, since the threads of this class
// block none, and ignores SIGXFSZ. Descriptors 0 to 2 are open. SIGCHLD has its default action.
class SiteSource : public CaptionSource {
 public:
  explicit SiteSource(SiteSettings settings, const SiteLimits& limits = {});
  ~SiteSource() override;

  TrackList Tracks(std::string_view code, const Requester& requester) override;
  CaptionText Text(std::string_view code, std::string_view language, const Requester& requester) override;

 private:
  class Inner;
  std::unique_ptr<Inner> inner_;
};

}  // namespace gateway
