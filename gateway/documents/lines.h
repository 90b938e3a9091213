// Lines, tags and references of the two formats that are plain text, VTT and SRT.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "gateway/documents/references.h"

namespace gateway {

// CR LF and CR become LF.
void UnifyLineEnds(std::string& text);

// Takes the first line from text, without its line feed.
std::string_view TakeLine(std::string_view& text);

// How a format marks its words up.
struct Markup {
  // The kind of a tag by what stands between its brackets, which are no part of it.
  enum class Tag { None, Mark, Time, Break };
  Tag (*tagOf)(std::string_view inside);
  bool hasBraces;  // "{\an8}" is a mark
  std::span<const NamedCharacter> names;
};

// Appends a cue's words without their tags and with their references resolved. True if a word has a time
// of its own.
bool AppendMarkedUp(std::string& to, std::string_view text, const Markup& markup);

}  // namespace gateway
