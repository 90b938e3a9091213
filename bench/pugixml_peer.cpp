#include <pugixml.hpp>

#include "CaptionText.h"
#include "conversion.h"

namespace {

// Entities are left alone, as in the files that the program writes.
constexpr unsigned kRaw = pugi::parse_minimal | pugi::parse_ws_pcdata_single;

}  // namespace

std::string ConvertByPugixml(std::string document, Form form) {
  pugi::xml_document tree;
  if (!tree.load_buffer_inplace(document.data(), document.size(), kRaw, pugi::encoding_utf8)) return "";
  CaptionText file(form, document.size());
  for (const pugi::xml_node cue : tree.child("transcript").children("text")) {
    file.AddCue(cue.attribute("start").value(), cue.attribute("dur").value(), cue.child_value(), "&amp;#39;",
                "&amp;quot;", false);
  }
  return file.Take();
}

std::vector<Track> TracksByPugixml(const std::string& document) {
  std::string buffer = document;
  pugi::xml_document tree;
  if (!tree.load_buffer_inplace(buffer.data(), buffer.size(), kRaw, pugi::encoding_utf8)) return {};
  std::vector<Track> tracks;
  for (const pugi::xml_node track : tree.first_child().children("track")) {
    tracks.push_back({track.attribute("lang_translated").value(), track.attribute("lang_code").value()});
  }
  return tracks;
}
