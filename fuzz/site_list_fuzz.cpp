// A list of tracks from yt-dlp, of any bytes. Every track that is read can be shown and requested, and the
// input of the process that fetches its text contains that entry alone.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>

#include "gateway/sources/site_list.h"
#include "gateway/sources/yt_dlp.h"
#include "support/Harness.h"

namespace {

using nlohmann::json;

constexpr char kCode[] = "Qn3_tW8-yLc";

bool IsLine(const std::string& text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < ' ') return false;
  }
  return fuzz::IsValidUTF8(text);
}

bool IsLanguage(const std::string& language) {
  constexpr char kLetters[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz-";
  return !language.empty() && language.size() <= 64 + 5 &&
         language.find_first_not_of(kLetters) == std::string::npos;
}

void CheckTrack(const gateway::SiteTrack& track) {
  HOLDS(IsLanguage(track.track.language));
  HOLDS(!track.track.name.empty() && IsLine(track.track.name) && IsLine(track.track.ownName));
  HOLDS(IsLine(track.entry));
  const json input = json::parse(gateway::TextInput(track.entry));
  const json& entries = input["subtitles"]["c"];
  HOLDS(input.size() == 3 && entries.size() == 1 && entries[0]["ext"] == std::string(track.format));
  const std::string url = entries[0]["url"];
  HOLDS(url.starts_with("http://") || url.starts_with("https://"));
  const std::size_t query = std::min(url.find('?'), url.size());
  HOLDS(!track.track.automatic || url.find("&tlang=", query) == std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto list = gateway::ReadSiteList(text, kCode, gateway::SiteLimits{});
  const json whole = json::parse(text, nullptr, false);
  const bool isList = whole.is_object() && whole.contains("id") && whole["id"] == kCode;
  const auto opened = std::count(text.begin(), text.end(), '[') + std::count(text.begin(), text.end(), '{');
  // A deeper list is refused; half a surrogate pair is repaired.
  HOLDS(list.has_value() ? isList || text.find("\\u") != text.npos : !isList || opened > 32);
  if (!list) return 0;
  HOLDS(list->expires <= std::chrono::system_clock::now() + gateway::SiteLimits{}.longestList);
  std::set<std::string> languages;
  for (const gateway::SiteTrack& track : list->tracks) {
    HOLDS(languages.insert(track.track.language).second);
    HOLDS(list->Find(track.track.language) == &track);
    CheckTrack(track);
  }
  return 0;
}
