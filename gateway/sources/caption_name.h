// What the name of a caption file says. Names that say nothing are ordinary: a folder may hold anything.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/documents/convert.h"

namespace gateway {

// file name = [ TITLE " " ] "[" CODE "]." LANG "." EXT
// CODE      = one or more of A-Z a-z 0-9 - . _ ~     what a query carries without an escape
// LANG      = 1 to 64 of A-Z a-z 0-9 - _             "pt-BR"; case counts when a request is compared
// EXT       = the ending of a caption format, whatever the case of its letters
//
// TITLE is bytes of any kind, not empty. The name is read from the right, so a title may hold brackets and
// dots of its own. A LANG of "live_chat" names no captions.
struct CaptionName {
  std::string_view title;  // these three point into the file name; "" if it has no title
  std::string_view code;
  std::string_view language;
  const CaptionFormat* format;
};

// nullopt if fileName (no folders in front) has another form.
std::optional<CaptionName> ParseCaptionName(std::string_view fileName);

// Whether the name ends as a caption file's does, whatever stands in front.
bool HasCaptionEnding(std::string_view fileName);

// Whether text could be the CODE of a caption file, or the LANG.
bool IsVideoCode(std::string_view text);
bool IsTrackLanguage(std::string_view text);

}  // namespace gateway
