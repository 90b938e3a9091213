#include "gateway/sources/SiteSource.h"

#include <utility>

#include "gateway/sources/ScratchFolder.h"
#include "gateway/sources/SharedJobs.h"
#include "gateway/sources/SiteFetcher.h"
#include "gateway/sources/SiteMemory.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {

using Clock = std::chrono::steady_clock;

constexpr char kNotInThisLanguage[] = "This video has no captions in this language.";

class SiteSource::Inner {
 public:
  Inner(SiteSettings settings, const SiteLimits& bounds)
      : limits(bounds), memory_(bounds), fetcher_(std::move(settings), bounds) {}

  SiteAnswer List(const std::string& code, const Patience& patience) {
    if (auto known = memory_.Find(code)) return *std::move(known);
    return jobs_.Ask("list " + code, patience, [this, code](int stop) {
      if (auto known = memory_.Find(code)) return *std::move(known);  // from a job that has just ended
      SiteAnswer answer = fetcher_.List(code, {Clock::now() + limits.list, stop});
      memory_.Keep(code, answer);
      return answer;
    });
  }

  SiteAnswer Text(const std::string& code, const std::string& language, const Patience& patience) {
    const auto deadline = patience.deadline;
    return jobs_.Ask("text " + code + " " + language, patience, [=, this](int stop) {
      const Patience bounded{deadline, stop};
      SiteAnswer answer = TryText(code, language, bounded);
      return answer.cause.effect == Effect::Relist ? TryText(code, language, bounded) : answer;
    });
  }

  const SiteLimits limits;

 private:
  SiteAnswer TryText(const std::string& code, const std::string& language, const Patience& patience) {
    const SiteAnswer listed = List(code, patience);
    if (!listed.list || listed.list->tracks.empty()) return {nullptr, "", {listed.cause.sentence}};
    const SiteTrack* track = listed.list->Find(language);
    if (!track) return {nullptr, "", {kNotInThisLanguage}};
    SiteAnswer answer = fetcher_.Text(code, *track, patience);
    if (answer.cause.effect == Effect::Relist) memory_.Forget(code, *listed.list);
    return answer;
  }

  SiteMemory memory_;
  SiteFetcher fetcher_;
  SharedJobs jobs_;  // destroyed first: its jobs use the others
};

SiteSource::SiteSource(SiteSettings settings, const SiteLimits& limits) {
  ScratchFolder::RemoveStale(settings.scratch);
  inner_ = std::make_unique<Inner>(std::move(settings), limits);
}

SiteSource::~SiteSource() = default;

TrackList SiteSource::Tracks(std::string_view code, const Requester& requester) {
  if (!IsSiteCode(code)) return {{}, "This is not the code of a video of the site."};
  const SiteAnswer answer =
      inner_->List(std::string(code), Patience::Of(requester, Clock::time_point::max()));
  TrackList list{{}, answer.cause.sentence};
  if (!answer.list) return list;
  for (const SiteTrack& track : answer.list->tracks) list.tracks.push_back(track.track);
  return list;
}

CaptionText SiteSource::Text(std::string_view code, std::string_view language, const Requester& requester) {
  if (!IsSiteCode(code)) return {std::nullopt, "This is not the code of a video of the site."};
  if (!IsTrackLanguage(language)) return {std::nullopt, kNotInThisLanguage};
  SiteAnswer answer = inner_->Text(std::string(code), std::string(language),
                                   Patience::Of(requester, requester.arrival + inner_->limits.text));
  if (answer.document.empty()) return {std::nullopt, std::move(answer.cause.sentence)};
  return {Document(std::move(answer.document)), ""};
}

}  // namespace gateway
