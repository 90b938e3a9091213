// The tracks of a video as yt-dlp lists them.
//
//   list  = { "id": CODE, "subtitles": keys, "automatic_captions": keys }
//   keys  = { KEY: [ entry, ... ], ... }
//   entry = { "ext": FORMAT, "url": URL, "name": TEXT, ... }
//
// Empty members are absent. KEY identifies a track: "en", "en-orig", "en-nP7-2PuUl7o".
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

// nullopt if this is not a list of that video. Leaves out translations, the second key of an automatic
// track, and tracks without any of kTextFormats or with a key that IsTrackLanguage rejects. An automatic
// track is listed as LANGUAGE-orig if there is also a written one in its language.
std::optional<SiteList> ReadSiteList(std::string_view json, std::string_view code, const SiteLimits& limits);

}  // namespace gateway
