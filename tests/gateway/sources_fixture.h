// Caption files, readable answers of sources, and a fake site.
#pragma once

#include <poll.h>

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/OpenedFile.h"

namespace gateway_test {

inline std::string Vtt(const std::string& words) {
  return "WEBVTT\n\n00:01.000 --> 00:02.000\n" + words + "\n";
}
inline std::string Srt(const std::string& words) {
  return "1\n00:00:01,000 --> 00:00:02,000\n" + words + "\n";
}
inline std::string Srv1(const std::string& words) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript><text start=\"1.000\" dur=\"1.000\">" +
         words + "</text></transcript>";
}

// The tracks as "language=name", with " *" if automatic; then the cause, if there is one.
inline std::vector<std::string> Listed(const gateway::TrackList& list) {
  std::vector<std::string> lines;
  for (const auto& track : list.tracks)
    lines.push_back(track.language + "=" + track.name + (track.automatic ? " *" : ""));
  if (!list.cause.empty()) lines.push_back(list.cause);
  return lines;
}

inline std::string BytesOf(const gateway::CaptionText& text) {
  if (!text.document) return text.cause;
  if (const auto* bytes = std::get_if<std::string>(&*text.document)) return *bytes;
  return ReadWhole(std::get<gateway::CaptionFile>(*text.document));
}

// Has the captions that a test gives it, or none and a cause. If requested, lists wait until their client
// leaves.
class FakeSite final : public gateway::CaptionSource {
 public:
  gateway::TrackList list;
  std::map<std::string, std::string> texts;
  std::string cause = "no network";
  std::atomic<bool> keepsWaiting = false;
  std::atomic<int> asked = 0, left = 0;

  gateway::TrackList Tracks(std::string_view, const gateway::Requester& requester) override {
    ++asked;
    pollfd client{requester.connection, POLLRDHUP, 0};
    if (keepsWaiting && ::poll(&client, 1, 30'000) == 1) ++left;
    return list;
  }
  gateway::CaptionText Text(std::string_view, std::string_view language, const gateway::Requester&) override {
    ++asked;
    const auto found = texts.find(std::string(language));
    if (found == texts.end()) return {std::nullopt, cause};
    return {found->second, ""};
  }
};

}  // namespace gateway_test
