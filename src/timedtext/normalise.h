// The replacements that turn a timed-text document into fields with separators between them.
#pragma once

#include <string>
#include <string_view>

// Stands between two fields of a normalised document, and behind the last text.
inline constexpr std::string_view kSeparator = " ||| ";

// The table of replacements, each applied to the whole document in its turn. This is what
// normalising means.
std::string NormaliseStepByStep(std::string document);

// The same result, byte for byte, in one pass over a document in which the steps can't meet each
// other; any other document goes through them.
std::string NormaliseTimedText(std::string document);
