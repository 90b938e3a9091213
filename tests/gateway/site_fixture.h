// Requests to the source that runs the real yt-dlp with the site on the loopback.
#pragma once

#include <string>
#include <thread>
#include <vector>

#include "Site.h"
#include "descriptors.h"
#include "gateway/sources/SiteSource.h"
#include "gateway/sources/yt_dlp.h"

namespace site_test {

using namespace gateway_test;

// No wait between lists, and enough time on a busy machine.
inline gateway::SiteLimits Quick() {
  gateway::SiteLimits limits;
  limits.betweenLists = 0ms;
  limits.text = limits.list = limits.warm = 200s;
  return limits;
}

// Calls ask with each number below count, all at the same time.
template <typename Ask>
void AllAtOnce(std::size_t count, Ask ask) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < count; ++i) threads.emplace_back(ask, i);
  for (auto& thread : threads) thread.join();
}

// "en=English, fr-orig=French (automatic)"
inline std::string Shown(const gateway::TrackList& list) {
  std::string shown;
  for (const auto& track : list.tracks)
    shown += (shown.empty() ? "" : ", ") + track.language + "=" + track.name;
  return shown;
}

inline std::string TextOf(const gateway::CaptionText& text) {
  if (!text.document) return "no text: " + text.cause;
  return std::get<std::string>(*text.document);
}

}  // namespace site_test
