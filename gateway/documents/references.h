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
// amp lt gt, which occur in SRT files
std::span<const NamedCharacter> PlainCharacters();

// Appends the character of the reference at the start of text, and returns the reference's length. Appends
// nothing and returns 0 if text starts with neither a number nor one of these names.
// Requires: text starts with "&".
std::size_t AppendReference(std::string& to, std::string_view text, std::span<const NamedCharacter> names);

// Appends text with its references resolved once: "&amp;lt;" becomes "&lt;".
void AppendResolved(std::string& to, std::string_view text, std::span<const NamedCharacter> names);

}  // namespace gateway
