// The captions of any video of the site, fetched on demand by yt-dlp.
#pragma once

#include <memory>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/SiteSettings.h"

namespace gateway {

// Lists are kept in memory until their links expire, "no captions" and the site's verdicts for a while; texts
// are not kept. What is asked for twice at the same time is fetched once. A request is stopped when all its
// clients are gone, and after a bot check or too many requests no child starts for a while.
//
// Tracks() gives the title and the tracks; where there are none, or some are missing, the cause. Text() gives
// a document in the form that the program reads.
//
// Nothing of it is left when it ends, no process and no folder, and its end waits for no child: all are
// killed, and calls under way return. Its threads block no signal, so:
//
// Requires: main() blocks the signals that it waits for, and ignores SIGXFSZ, before it makes one.
// Descriptors 0 to 2 are open. SIGCHLD has its default action.
class SiteSource : public CaptionSource {
 public:
  explicit SiteSource(SiteSettings settings, const SiteLimits& limits = {});
  ~SiteSource() override;

  TrackList Tracks(std::string_view code, const Asker& asker) override;
  CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) override;

 private:
  class Inner;
  std::unique_ptr<Inner> inner_;
};

}  // namespace gateway
