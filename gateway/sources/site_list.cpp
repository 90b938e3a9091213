#include "gateway/sources/site_list.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <set>

#include "gateway/documents/convert.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/language_name.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {
namespace {

using nlohmann::json;
using std::chrono::system_clock;

constexpr std::size_t kLongestName = 200;

std::string TextOf(const json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

// One line of at most `longest` bytes, cut between characters. Requires: text is valid UTF-8, as JSON is.
std::string Plain(std::string text, std::size_t longest) {
  if (text.size() > longest) {
    while (longest > 0 && (text[longest] & 0xC0) == 0x80) --longest;
    text.resize(longest);
  }
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  const std::size_t first = text.find_first_not_of(' '), last = text.find_last_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

// The value of a parameter in a URL's query.
std::optional<std::string_view> QueryValue(std::string_view url, std::string_view name) {
  for (std::size_t at = url.find('?'); at < url.size(); at = url.find('&', at)) {
    std::string_view pair = url.substr(++at);
    pair = pair.substr(0, pair.find('&'));
    if (pair.starts_with(name) && pair.substr(name.size()).starts_with('='))
      return pair.substr(name.size() + 1);
  }
  return std::nullopt;
}

bool IsWebAddress(std::string_view url) { return url.starts_with("https://") || url.starts_with("http://"); }

// The entry of the best format; nullptr if there is none.
const json* BestEntry(const json& entries, std::string_view& format) {
  if (!entries.is_array()) return nullptr;
  for (const std::string_view wanted : kTextFormats) {
    for (const json& entry : entries) {
      if (!entry.is_object() || TextOf(entry, "ext") != wanted || !IsWebAddress(TextOf(entry, "url")))
        continue;
      format = wanted;
      return &entry;
    }
  }
  return nullptr;
}

std::string WithoutEnding(std::string text, std::string_view ending) {
  if (text.ends_with(ending)) text.resize(text.size() - ending.size());
  return text;
}

std::string NameOf(const json& entry, const Track& track) {
  std::string name = Plain(TextOf(entry, "name"), kLongestName);
  if (track.automatic) {
    for (const std::string_view ending : {" (Original)", " (auto-generated)"})
      name = WithoutEnding(name, ending);
    if (name.empty()) name = EnglishName(WithoutEnding(track.language, kOriginal));
    return name + " (automatic)";
  }
  return name.empty() ? EnglishName(track.language) : name;
}

class Reader {
 public:
  explicit Reader(const SiteLimits& limits)
      : now_(system_clock::now()), expires_(now_ + limits.longestList), limits_(limits) {}

  void Take(const json& keys, bool automatic) {
    if (!keys.is_object()) return;
    for (const auto& [key, entries] : keys.items()) {
      SiteTrack track{{key, "", "", automatic}, "", ""};
      const json* entry = IsTrackLanguage(key) ? BestEntry(entries, track.format) : nullptr;
      if (!entry || (automatic && !IsListed(keys, track.track.language, *entry))) continue;
      if (!taken_.insert(track.track.language).second) continue;
      track.track.name = NameOf(*entry, track.track);
      track.track.ownName = OwnName(WithoutEnding(key, automatic ? kOriginal : ""));
      track.entry = entry->dump(-1, ' ', true);
      NoteExpiry(QueryValue(TextOf(*entry, "url"), "expire").value_or(""));
      list.tracks.push_back(std::move(track));
    }
  }

  SiteList Done() {
    list.expires = anyExpiry_ ? expires_ - limits_.beforeExpiry : now_ + limits_.unknownList;
    return std::move(list);
  }

  SiteList list;

 private:
  // False for a translation, and for "en" if "en-orig", the same track, is listed. If there is a written
  // "en", `language` becomes "en-orig".
  bool IsListed(const json& keys, std::string& language, const json& entry) const {
    const std::string url = TextOf(entry, "url");
    if (QueryValue(url, "tlang")) return false;
    if (language.ends_with(kOriginal)) return true;
    const std::string original = language + std::string(kOriginal);
    std::string_view format;
    const auto twin = keys.find(original);
    if (twin != keys.end() && BestEntry(*twin, format)) return false;
    if (taken_.contains(language)) language = original;
    return true;
  }

  void NoteExpiry(std::string_view seconds) {
    std::int64_t count = 0;
    const auto [end, error] = std::from_chars(seconds.data(), seconds.data() + seconds.size(), count);
    constexpr std::int64_t kLatest = std::int64_t{1} << 33;  // a later time may not fit the clock
    if (error != std::errc() || count < 0 || count > kLatest) return;
    anyExpiry_ = true;
    expires_ = std::min(expires_, system_clock::time_point(std::chrono::seconds(count)));
  }

  system_clock::time_point now_;
  system_clock::time_point expires_;
  bool anyExpiry_ = false;
  std::set<std::string> taken_;  // languages
  const SiteLimits& limits_;
};

// Limits the nesting, since writing an entry needs stack for each level, and the number of values, and with
// it the memory of the tree to a few hundred MiB.
bool IsReasonable(std::string_view text) {
  constexpr int kDeepest = 32;
  constexpr std::size_t kMostValues = 1'000'000;  // a real list has up to about 50,000
  int depth = 0;
  std::size_t values = 1;
  bool inString = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') inString = !inString;
    if (inString && c == '\\') ++i;
    if (inString) continue;
    if (c == '[' || c == '{') ++depth;
    if (c == ']' || c == '}') --depth;
    if (c == '[' || c == '{' || c == ',') ++values;
    if (depth > kDeepest || values > kMostValues) return false;
  }
  return true;
}

// The code unit of an escape \uXXXX at this position; -1 if there is none. Requires: at <= text.size().
int EscapeAt(std::string_view text, std::size_t at) {
  constexpr std::size_t kDigits = 4;
  if (!text.substr(at).starts_with("\\u")) return -1;
  const std::string_view digits = text.substr(at + 2, kDigits);
  int unit = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
  return error == std::errc() && end == digits.data() + kDigits ? unit : -1;
}

// Replaces a lone surrogate with U+FFFD: the JSON parser would reject the whole list.
std::string WithWholeCharacters(std::string text) {
  constexpr std::size_t kEscape = 6;  // bytes
  const auto isHigh = [](int unit) { return unit >= 0xD800 && unit < 0xDC00; };
  const auto isLow = [](int unit) { return unit >= 0xDC00 && unit < 0xE000; };
  for (std::size_t at = 0; (at = text.find('\\', at)) != text.npos;) {
    const int unit = EscapeAt(text, at);
    const bool isPair = isHigh(unit) && isLow(EscapeAt(text, at + kEscape));
    if (!isPair && (isHigh(unit) || isLow(unit))) text.replace(at, kEscape, "\\ufffd");
    at += isPair ? 2 * kEscape : unit >= 0 ? kEscape : 2;
  }
  return text;
}

}  // namespace

const SiteTrack* SiteList::Find(std::string_view language) const {
  const auto found = std::find_if(tracks.begin(), tracks.end(), [language](const SiteTrack& track) {
    return track.track.language == language;
  });
  return found == tracks.end() ? nullptr : &*found;
}

std::optional<SiteList> ReadSiteList(std::string_view text, std::string_view code, const SiteLimits& limits) {
  if (!IsReasonable(text)) return std::nullopt;
  const json whole = json::parse(WithWholeCharacters(std::string(text)), nullptr, false);
  if (!whole.is_object() || TextOf(whole, "id") != code) return std::nullopt;
  Reader reader(limits);
  if (const auto written = whole.find("subtitles"); written != whole.end()) reader.Take(*written, false);
  if (const auto made = whole.find("automatic_captions"); made != whole.end()) reader.Take(*made, true);
  return reader.Done();
}

}  // namespace gateway
