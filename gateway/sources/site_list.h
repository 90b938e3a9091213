// The tracks of a video as yt-dlp lists them.
//
//   list  = { "id": CODE, "subtitles": keys, "automatic_captions": keys }
//   keys  = { KEY: [ entry, ... ], ... }
//   entry = { "ext": FORMAT, "url": URL, "name": TEXT, ... }
//
// What is empty is absent. KEY names a track: "en", "en-orig", "en-nP7-2PuUl7o".
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/SiteSettings.h"

namespace gateway {

struct SiteTrack {
  Track track;
  std::string_view format;  // one of kTextFormats
  std::string entry;        // JSON, one line
};

struct SiteList {
  std::vector<SiteTrack> tracks;  // each language once
  std::chrono::system_clock::time_point expires;

  const SiteTrack* Find(std::string_view language) const;
};

// nullopt if this is no list of that video. Left out are translations, one of two keys for the same automatic
// track, and what has none of kTextFormats or a name that no language has. An automatic track whose language
// is a written one's too is listed as LANGUAGE-orig.
std::optional<SiteList> ReadSiteList(std::string_view json, std::string_view code, const SiteLimits& limits);

}  // namespace gateway
