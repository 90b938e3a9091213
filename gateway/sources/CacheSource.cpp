#include "gateway/sources/CacheSource.h"

namespace gateway {

TrackList CacheSource::Tracks(std::string_view code, const Requester& requester) {
  TrackList list = source_.Tracks(code, requester);
  if (!list.tracks.empty()) {
    DropChangedTexts(code, list);
    cache_.KeepList(code, list);
  } else if (auto last = cache_.FindList(code); last && cache_.HasTextOf(code)) {
    last->cause = std::move(list.cause);
    return *std::move(last);
  }
  return list;
}

void CacheSource::DropChangedTexts(std::string_view code, const TrackList& now) const {
  const auto last = cache_.FindList(code);
  if (!last) return;
  for (const Track& track : now.tracks) {
    for (const Track& before : last->tracks) {
      const bool changed = before.name != track.name || before.automatic != track.automatic;
      if (before.language == track.language && changed) cache_.DropText(code, track.language);
    }
  }
}

CaptionText CacheSource::Text(std::string_view code, std::string_view language, const Requester& requester) {
  if (auto file = cache_.FindText(code, language)) return {*std::move(file), ""};
  CaptionText text = source_.Text(code, language, requester);
  if (const auto* document = text.document ? std::get_if<std::string>(&*text.document) : nullptr)
    cache_.KeepText(code, language, *document);
  return text;
}

}  // namespace gateway
