// Lines, tags and references of the two plain-text formats, VTT and SRT.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "gateway/documents/references.h"

namespace gateway {

// Replaces CR LF and CR with LF.
void UnifyLineEnds(std::string& text);

// Takes the first line from text, without its line feed.
std::string_view TakeLine(std::string_view& text);

// The markup of a format.
struct Markup {
  // The kind of a tag; `inside` is the text between its brackets. None: not a tag.
  enum class Tag { None, Mark, Time, Break };
  Tag (*tagOf)(std::string_view inside);
  bool hasBraces;  // "{\an8}" is a tag too
  std::span<const NamedCharacter> names;
};

// Appends a cue's words without tags and with references resolved. Returns whether a word has a time of its
// own.
bool AppendMarkedUp(std::string& to, std::string_view text, const Markup& markup);

}  // namespace gateway
