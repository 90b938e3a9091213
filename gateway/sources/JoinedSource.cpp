#include "gateway/sources/JoinedSource.h"

#include <algorithm>

#include "gateway/sources/FolderSource.h"

namespace gateway {
namespace {

// Once the site was asked, it is not mentioned that no folder has a file.
std::string BothCauses(const std::string& folders, const std::string& site) {
  if (folders == kNoFile || folders.empty()) return site;
  return site.empty() ? folders : folders + " " + site;
}

void Add(TrackList& list, TrackList more) {
  const std::size_t own = list.tracks.size();
  for (Track& track : more.tracks) {
    const auto end = list.tracks.begin() + static_cast<std::ptrdiff_t>(own);
    const bool known = std::any_of(list.tracks.begin(), end,
                                   [&](const Track& each) { return each.language == track.language; });
    if (!known) list.tracks.push_back(std::move(track));
  }
  list.cause = BothCauses(list.cause, more.cause);
}

}  // namespace

JoinedSource::JoinedSource(CaptionSource& folders, CaptionSource& site, std::chrono::milliseconds patience)
    : folders_(folders), site_(site), patience_(patience), lists_(site) {}

TrackList JoinedSource::Tracks(std::string_view code, const Requester& requester) {
  TrackList list = folders_.Tracks(code, requester);
  if (list.tracks.empty()) {
    Add(list, site_.Tracks(code, requester));
  } else if (auto more = lists_.Ask(code, requester, patience_)) {
    Add(list, *std::move(more));
  }
  return list;
}

CaptionText JoinedSource::Text(std::string_view code, std::string_view language, const Requester& requester) {
  CaptionText text = folders_.Text(code, language, requester);
  if (text.document) return text;
  CaptionText other = site_.Text(code, language, requester);
  if (!other.document) other.cause = BothCauses(text.cause, other.cause);
  return other;
}

}  // namespace gateway
