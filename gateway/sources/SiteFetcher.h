// Fetches one list or one text from the site: waits for a place, runs a child, and reads its result.
#pragma once

#include <mutex>
#include <string_view>

#include "gateway/sources/CurrentYtDlp.h"
#include "gateway/sources/Places.h"
#include "gateway/sources/SharedJobs.h"
#include "gateway/sources/SiteSettings.h"
#include "gateway/sources/WarmChild.h"

namespace gateway {

// Any number of threads may call it.
class SiteFetcher {
 public:
  SiteFetcher(SiteSettings settings, const SiteLimits& limits);

  // Both require: IsSiteCode(code).
  SiteAnswer List(std::string_view code, const Patience& patience);
  SiteAnswer Text(std::string_view code, const SiteTrack& track, const Patience& patience);

 private:
  SiteAnswer Run(Places::Kind kind, const Patience& patience,
                 const std::function<SiteAnswer(const Patience&)>& run);
  SiteAnswer RunList(std::string_view code, const Patience& patience);
  SiteAnswer RunText(std::string_view code, const SiteTrack& track, const Patience& patience);
  Cause FaultOf(const ReadyChild& ready, const ChildEnd& end) const;
  SiteAnswer ReadText(const SiteTrack& track, const ReadyChild& ready, const ChildEnd& end) const;
  std::unique_ptr<ReadyChild> StartChild(const std::vector<std::string>& command) const;
  ChildEnd Finish(ReadyChild& ready, std::string_view input, const Patience& patience) const;
  void Prepare();
  Cause PauseCause();
  void PauseIfAsked(const Cause& cause);

  const SiteSettings settings_;
  const SiteLimits limits_;
  CurrentYtDlp ytDlp_;
  Places places_;
  std::mutex mutex_;
  std::chrono::steady_clock::time_point pausedUntil_{};
  Cause pauseCause_;
  WarmChild warm_;
};

}  // namespace gateway
