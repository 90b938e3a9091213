// What the name of a caption file tells. Names that tell nothing are ordinary: a folder may hold anything.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gateway {

// The ending that makes a file a caption file, in exactly these letters.
inline constexpr std::string_view kCaptionEnding = ".srv1";

// file name = TITLE " [" CODE "]." LANG ".srv1"
// CODE      = one or more of A-Z a-z 0-9 - . _ ~     what a query carries without an escape
// LANG      = one or more of A-Z a-z 0-9 - _         "pt-BR"; case counts when a request is compared
//
// TITLE is bytes of any kind, not empty. The name is read from the right, so a title may hold
// brackets and dots of its own.
struct CaptionName {
  std::string title;
  std::string code;
  std::string language;
};

// nullopt if `fileName` (no folders in front) has another form.
std::optional<CaptionName> ParseCaptionName(std::string_view fileName);

// Whether `text` could be the CODE of a caption file.
bool IsVideoCode(std::string_view text);

}  // namespace gateway
