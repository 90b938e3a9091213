#include "gateway/sources/language_name.h"

#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace gateway {
namespace {

using Locale = std::array<char, ULOC_FULLNAME_CAPACITY>;

// The tables' name for the language, "" if they don't know it.
std::string LocaleOf(std::string_view code) {
  std::string tag(code);
  std::replace(tag.begin(), tag.end(), '_', '-');
  Locale locale{};
  std::int32_t parsed = 0;
  UErrorCode status = U_ZERO_ERROR;
  const auto capacity = static_cast<std::int32_t>(locale.size());
  uloc_forLanguageTag(tag.c_str(), locale.data(), capacity, &parsed, &status);
  const bool whole = status == U_ZERO_ERROR && static_cast<std::size_t>(parsed) == tag.size();
  return whole ? locale.data() : "";
}

using NameReader = std::int32_t (*)(const char*, const char*, UChar*, std::int32_t, UErrorCode*);

// "" if the tables have no such name: with this warning, the result is only the code.
std::string Read(NameReader read, const std::string& locale, const char* inLanguage) {
  std::array<UChar, 256> name{};
  UErrorCode status = U_ZERO_ERROR;
  const auto capacity = static_cast<std::int32_t>(name.size());
  const std::int32_t length = read(locale.c_str(), inLanguage, name.data(), capacity, &status);
  if (U_FAILURE(status) || status == U_USING_DEFAULT_WARNING || length >= capacity) return "";
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
  const auto capacity = static_cast<std::int32_t>(full.size());
  uloc_addLikelySubtags(LocaleOf(code).c_str(), full.data(), capacity, &status);
  uloc_getCountry(full.data(), region.data(), capacity, &status);
  return U_SUCCESS(status) ? region.data() : "";
}

}  // namespace gateway
