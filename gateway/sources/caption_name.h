// Parses the names of caption files. A name of another form is not an error: a folder may hold any files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/documents/convert.h"

namespace gateway {

// file name = [ TITLE " " ] "[" CODE "]." LANG "." EXT
// CODE      = one or more of A-Z a-z 0-9 - . _ ~     the characters that a query needs not escape
// LANG      = 1 to 64 of A-Z a-z 0-9 - _             "pt-BR"; compared to requests with regard to case
// EXT       = the ending of a caption format, in any case
//
// TITLE may be any bytes, but not empty. The name is read from the right, so a title may contain brackets and
// dots. "live_chat" is not a LANG.
struct CaptionName {
  std::string_view title;  // these three point into the file name; "" if it has no title
  std::string_view code;
  std::string_view language;
  const CaptionFormat* format;
};

// nullopt if fileName (without folders) has another form.
std::optional<CaptionName> ParseCaptionName(std::string_view fileName);

// Whether the name has the ending of a caption format.
bool HasCaptionEnding(std::string_view fileName);

// Whether text has the form of CODE, and of LANG.
bool IsVideoCode(std::string_view text);
bool IsTrackLanguage(std::string_view text);

}  // namespace gateway
