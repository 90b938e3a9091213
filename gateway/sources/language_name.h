// Names of languages, from the Unicode project's tables.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

// The name of a language code ("pt-BR", "pt_BR") in English: "Portuguese (Brazil)". UTF-8, never empty for a
// code that is not. A code that the tables don't know is its own name.
std::string EnglishName(std::string_view language);

// The same in the language itself: "português (Brasil)".
std::string OwnName(std::string_view language);

}  // namespace gateway
