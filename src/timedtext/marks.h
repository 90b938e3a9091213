// The literal texts that a timed-text document is made of.
//
//   document = kDeclaration kRoot *cue kRootEnd
//   cue      = kStart S kDur D kTagEnd T kTextEnd      S and D decimal seconds, T the words
#pragma once

#include <string_view>

namespace marks {
inline constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"utf-8\" ?>";
inline constexpr std::string_view kRoot = "<transcript>";
inline constexpr std::string_view kRootEnd = "</transcript>";
inline constexpr std::string_view kStart = "<text start=\"";
inline constexpr std::string_view kDur = "\" dur=\"";
inline constexpr std::string_view kTagEnd = "\">";
inline constexpr std::string_view kTextEnd = "</text>";
inline constexpr std::string_view kApostrophe = "&amp;#39;";
inline constexpr std::string_view kQuote = "&amp;quot;";
}  // namespace marks
