#include "gateway/server/track_list.h"

#include <algorithm>
#include <tuple>

#include "gateway/sources/caption_name.h"
#include "gateway/sources/language_name.h"

namespace gateway {
namespace {

struct Track {
  std::string name;
  std::string language;
};

std::string Quoted(std::string_view value) {
  std::string out = "\"";
  for (const char c : value) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out + '"';
}

int EnglishRank(const Track& track) {
  if (track.language == "en") return 0;
  return track.language.starts_with("en-") || track.language.starts_with("en_") ? 1 : 2;
}

std::vector<Track> Sorted(const std::vector<std::string>& languages) {
  std::vector<Track> tracks;
  tracks.reserve(languages.size());
  for (const auto& language : languages) tracks.push_back({EnglishName(language), language});
  const auto byName = [](const Track& a, const Track& b) {
    return std::tie(a.name, a.language) < std::tie(b.name, b.language);
  };
  std::sort(tracks.begin(), tracks.end(), byName);
  const auto first = std::min_element(tracks.begin(), tracks.end(), [](const Track& a, const Track& b) {
    return EnglishRank(a) < EnglishRank(b);
  });
  if (first != tracks.end()) std::rotate(tracks.begin(), first, first + 1);
  return tracks;
}

std::string Element(size_t id, const Track& track) {
  return "<track id=" + Quoted(std::to_string(id)) + " name=\"\" lang_code=" + Quoted(track.language) +
         " lang_original=" + Quoted(OwnName(track.language)) + " lang_translated=" + Quoted(track.name) +
         (id == 0 ? " lang_default=\"true\"/>" : "/>");
}

}  // namespace

std::string TrackListDocument(std::string_view code, const std::vector<std::string>& languages) {
  std::string document = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript_list docid=" +
                         Quoted(IsVideoCode(code) ? code : "") + ">";
  const std::vector<Track> tracks = Sorted(languages);
  for (size_t id = 0; id < tracks.size(); ++id) document += Element(id, tracks[id]);
  return document + "</transcript_list>";
}

}  // namespace gateway
