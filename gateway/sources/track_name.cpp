#include "gateway/sources/track_name.h"

#include <algorithm>
#include <optional>

#include "gateway/documents/ascii.h"
#include "gateway/documents/convert.h"
#include "gateway/sources/language_name.h"

namespace gateway {
namespace {

constexpr std::size_t kIdLength = 11;

struct Translation {
  std::string_view target, source;
};

bool IsLowercase(char c) { return c >= 'a' && c <= 'z'; }

// Whether `part` is the language from which `target` was translated, and not a region.
bool IsSource(std::string_view target, std::string_view part) {
  const std::string_view language = part.substr(0, part.find('-'));
  const bool hasForm = language.size() >= 2 && language.size() <= 3 &&
                       std::all_of(language.begin(), language.end(), IsLowercase);
  return hasForm && part != target && IsKnownLanguage(part) && part != Lowercase(HomeRegion(target));
}

std::optional<Translation> SplitTranslation(std::string_view code) {
  for (std::size_t at = code.find('-'); at != code.npos; at = code.find('-', at + 1)) {
    const Translation parts{code.substr(0, at), code.substr(at + 1)};
    if (IsKnownLanguage(parts.target) && IsSource(parts.target, parts.source)) return parts;
  }
  return std::nullopt;
}

// "English" becomes "English (automatic)", "Portuguese (Brazil)" becomes "Portuguese (Brazil, automatic)".
std::string WithNote(std::string name, const std::string& note) {
  if (!name.ends_with(')')) return name + " (" + note + ")";
  name.pop_back();
  return name + ", " + note + ")";
}

TrackName NameOfLanguage(std::string_view code, const std::string& note, bool automatic) {
  const std::string name = EnglishName(code);
  return {note.empty() ? name : WithNote(name, note), OwnName(code), automatic};
}

// nullopt for a code of another form. The note is not added to a translation.
std::optional<TrackName> NameWithoutId(std::string_view code, const std::string& note) {
  if (const auto parts = SplitTranslation(code))
    return NameOfLanguage(parts->target, "translated from " + EnglishName(parts->source), false);
  if (IsKnownLanguage(code)) return NameOfLanguage(code, note, false);
  return std::nullopt;
}

}  // namespace

TrackName NameOfTrack(std::string_view code) {
  if (code.size() > kOriginal.size() && code.ends_with(kOriginal))
    return NameOfLanguage(code.substr(0, code.size() - kOriginal.size()), "automatic", true);
  auto name = NameWithoutId(code, "");
  const std::size_t dash = code.size() - std::min(code.size(), kIdLength + 1);
  if (!name && code.substr(dash).starts_with('-'))
    name = NameWithoutId(code.substr(0, dash), "another version");
  return name ? *std::move(name) : TrackName{std::string(code), std::string(code)};
}

}  // namespace gateway
