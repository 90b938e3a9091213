// Names of languages, from the Unicode project's tables.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

// Whether the tables know this language and every part of its code: "pt-BR", "pt_BR", "zh-Hant".
bool IsKnownLanguage(std::string_view code);

// The name of a language in English: "Portuguese (Brazil)". UTF-8; the code itself if the tables don't know
// it.
std::string EnglishName(std::string_view code);

// The same in the language itself: "português (Brasil)".
std::string OwnName(std::string_view code);

// The region with most speakers, "BR" for "pt"; "" if the tables don't know it.
std::string HomeRegion(std::string_view code);

}  // namespace gateway
