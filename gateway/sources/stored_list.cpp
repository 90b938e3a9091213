#include "gateway/sources/stored_list.h"

#include <nlohmann/json.hpp>

#include "gateway/sources/caption_name.h"

namespace gateway {
namespace {

using Json = nlohmann::json;

Track TrackIn(const Json& stored) {
  return {stored.at("language"), stored.at("name"), stored.at("ownName"), stored.at("automatic")};
}

}  // namespace

std::string StoredList(const TrackList& list) {
  Json tracks = Json::array();
  for (const Track& track : list.tracks)
    tracks.push_back({{"language", track.language},
                      {"name", track.name},
                      {"ownName", track.ownName},
                      {"automatic", track.automatic}});
  const Json stored = {{"tracks", std::move(tracks)}};
  return stored.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::optional<TrackList> ReadStoredList(std::string_view json) try {
  const Json stored = Json::parse(json);
  TrackList list;
  for (const Json& each : stored.at("tracks")) {
    list.tracks.push_back(TrackIn(each));
    if (!IsTrackLanguage(list.tracks.back().language) || list.tracks.back().name.empty()) return std::nullopt;
  }
  return list.tracks.empty() ? std::nullopt : std::optional(std::move(list));
} catch (const Json::exception&) {
  return std::nullopt;
}

}  // namespace gateway
