#include "gateway/server/track_list.h"

#include <algorithm>
#include <tuple>

#include "gateway/sources/caption_name.h"

namespace gateway {
namespace {

std::string Quoted(std::string_view value) { return '"' + std::string(value) + '"'; }

void ReplaceEach(std::string& text, std::string_view find, std::string_view by) {
  for (std::size_t at = 0; (at = text.find(find, at)) != std::string::npos; at += by.size() - 1)
    text.replace(at, find.size(), by);
}

// The user sees a name as it is written here, so nothing in it is escaped. But nothing at which clients split
// may remain: quotation marks become apostrophes. Control characters become blanks, since a name is one line.
std::string QuotedName(std::string name) {
  std::replace_if(
      name.begin(), name.end(), [](char c) { return (c >= 0 && c < ' ') || c == 0x7f; }, ' ');
  std::replace(name.begin(), name.end(), '"', '\'');
  ReplaceEach(name, "::", ": :");
  ReplaceEach(name, "lang_code=", "lang_code =");
  if (name.starts_with('>') || name.starts_with('/')) name.insert(0, " ");
  return Quoted(name);
}

int EnglishRank(const Track& track) {
  if (track.language == "en") return 0;
  return track.language.starts_with("en-") || track.language.starts_with("en_") ? 1 : 2;
}

void Sort(std::vector<Track>& tracks) {
  const auto byName = [](const Track& a, const Track& b) {
    return std::tie(a.name, a.language) < std::tie(b.name, b.language);
  };
  std::sort(tracks.begin(), tracks.end(), byName);
  const auto first = std::min_element(tracks.begin(), tracks.end(), [](const Track& a, const Track& b) {
    return EnglishRank(a) < EnglishRank(b);
  });
  if (first != tracks.end()) std::rotate(tracks.begin(), first, first + 1);
}

std::string Element(std::size_t id, const Track& track) {
  return "<track id=" + Quoted(std::to_string(id)) + " name=\"\" lang_code=" + Quoted(track.language) +
         " lang_original=" + QuotedName(track.ownName) + " lang_translated=" + QuotedName(track.name) +
         (id == 0 ? " lang_default=\"true\"/>" : "/>");
}

}  // namespace

std::string TrackListDocument(std::string_view code, std::vector<Track> tracks) {
  std::string document = "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript_list docid=" +
                         Quoted(IsVideoCode(code) ? code : "") + ">";
  Sort(tracks);
  for (std::size_t id = 0; id < tracks.size(); ++id) document += Element(id, tracks[id]);
  return document + "</transcript_list>";
}

}  // namespace gateway
