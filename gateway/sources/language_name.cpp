#include "gateway/sources/language_name.h"

#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>

namespace gateway {
namespace {

using Locale = std::array<char, ULOC_FULLNAME_CAPACITY>;

// The name by which the tables know the language, "" if they don't.
std::string LocaleOf(std::string_view code) {
  std::string tag(code);
  std::replace(tag.begin(), tag.end(), '_', '-');
  Locale locale{};
  int32_t understood = 0;
  UErrorCode status = U_ZERO_ERROR;
  uloc_forLanguageTag(tag.c_str(), locale.data(), static_cast<int32_t>(locale.size()), &understood, &status);
  const bool whole = status == U_ZERO_ERROR && static_cast<std::size_t>(understood) == tag.size();
  return whole ? locale.data() : "";
}

using NameReader = int32_t (*)(const char*, const char*, UChar*, int32_t, UErrorCode*);

// "" if the tables have no such name; the warning tells a name from a code that was handed back.
std::string Read(NameReader read, const std::string& locale, const char* inLanguage) {
  std::array<UChar, 256> name{};
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length =
      read(locale.c_str(), inLanguage, name.data(), static_cast<int32_t>(name.size()), &status);
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING || length >= static_cast<int32_t>(name.size()))
    return "";
  std::string utf8;
  icu::UnicodeString(name.data(), length).toUTF8String(utf8);
  return utf8;
}

bool IsKnown(const std::string& locale) {
  return !locale.empty() && !Read(uloc_getDisplayLanguage, locale, "en").empty();
}

std::string NameIn(std::string_view code, const std::string& locale, const char* inLanguage) {
  const std::string name = IsKnown(locale) ? Read(uloc_getDisplayName, locale, inLanguage) : "";
  return name.empty() ? std::string(code) : name;
}

}  // namespace

bool IsKnownLanguage(std::string_view code) { return IsKnown(LocaleOf(code)); }

std::string EnglishName(std::string_view code) { return NameIn(code, LocaleOf(code), "en"); }

std::string OwnName(std::string_view code) {
  const std::string locale = LocaleOf(code);
  return NameIn(code, locale, locale.c_str());
}

std::string HomeRegion(std::string_view code) {
  Locale full{}, region{};
  UErrorCode status = U_ZERO_ERROR;
  const auto size = static_cast<int32_t>(full.size());
  uloc_addLikelySubtags(LocaleOf(code).c_str(), full.data(), size, &status);
  uloc_getCountry(full.data(), region.data(), size, &status);
  return U_SUCCESS(status) ? region.data() : "";
}

}  // namespace gateway
