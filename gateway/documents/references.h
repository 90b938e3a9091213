// Character references in the words of a cue.
//
//   reference = "&" NAME ";" | "&#" 1*DIGIT ";" | "&#" ("x" | "X") 1*HEXDIGIT ";"
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace gateway {

struct NamedCharacter {
  std::string_view name;
  std::string_view character;  // UTF-8
};

// amp lt gt quot apos nbsp lrm rlm
std::span<const NamedCharacter> WebCharacters();
// Its first three, which SRT files hold now and then.
std::span<const NamedCharacter> PlainCharacters();

// Appends the character that the reference at the start of text, an "&", stands for, and gives the
// reference's length; 0, with nothing appended, where no reference of these names or of a number stands.
std::size_t AppendReference(std::string& to, std::string_view text, std::span<const NamedCharacter> names);

// Appends text with its references resolved, each once.
void AppendResolved(std::string& to, std::string_view text, std::span<const NamedCharacter> names);

}  // namespace gateway
