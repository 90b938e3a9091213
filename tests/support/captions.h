// Videos with caption tracks, as the program's two servers send them.
#pragma once

#include <string>
#include <vector>

#include "app/Endpoints.h"
#include "support/LoopbackServer.h"

struct Cue {
  std::string start, dur, text;
};

struct Track {
  std::string code, name;
  std::string document;
};

// A well-formed timed-text document; the texts are not escaped.
inline std::string Document(const std::vector<Cue>& cues) {
  std::string xml = R"(<?xml version="1.0" encoding="utf-8" ?><transcript>)";
  for (const Cue& cue : cues)
    xml += "<text start=\"" + cue.start + "\" dur=\"" + cue.dur + "\">" + cue.text + "</text>";
  return xml + "</transcript>";
}

// The list of these tracks; the first is the default.
inline std::string TrackList(const std::vector<Track>& tracks) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"utf-8\"?><transcript_list docid=\"7\">";
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    xml += "<track id=\"" + std::to_string(i) + "\" name=\"\" lang_code=\"" + tracks[i].code +
           "\" lang_original=\"?\" lang_translated=\"" + tracks[i].name +
           (i == 0 ? "\" lang_default=\"true\"/>" : "\"/>");
  }
  return xml + "</transcript_list>";
}

inline std::string ListPath(const std::string& video) { return "/timedtext?type=list&v=" + video; }
inline std::string TrackPath(const std::string& video, const std::string& language) {
  return "/api/timedtext?&v=" + video + "&lang=" + language;
}

// Puts this video on the server.
inline void Offer(LoopbackServer& server, const std::string& video, const std::vector<Track>& tracks) {
  server.AnswerAt(ListPath(video), {Page(TrackList(tracks))});
  for (const Track& track : tracks) server.AnswerAt(TrackPath(video, track.code), {Page(track.document)});
}

inline Endpoints EndpointsAt(const std::string& server) {
  Endpoints endpoints;
  endpoints.TrackListEndpoint = endpoints.TimedTextEndpoint = server;
  endpoints.ProbeAddress = "127.0.0.1";
  return endpoints;
}
