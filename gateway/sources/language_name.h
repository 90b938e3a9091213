// Names of languages, from the Unicode project's tables.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

// Whether the tables know the language of this code, and every part of the code: "pt-BR", "pt_BR", "zh-Hant".
bool IsKnownLanguage(std::string_view code);

// The name of a language in English: "Portuguese (Brazil)". UTF-8, never empty for a code that is not. A code
// that the tables don't know is its own name.
std::string EnglishName(std::string_view code);

// The same in the language itself: "português (Brasil)".
std::string OwnName(std::string_view code);

// The region where most who speak it live, "BR" for "pt"; "" if the tables don't say.
std::string HomeRegion(std::string_view code);

}  // namespace gateway
