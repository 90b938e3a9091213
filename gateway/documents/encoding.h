// The encoding of a caption file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace gateway {

// The largest text of a caption file, in bytes of UTF-8.
inline constexpr std::size_t kLargestText = 64u << 20;

// The text in UTF-8, without a byte order mark and with U+FFFD for NUL; nullopt if it is larger than
// kLargestText. The encoding of the bytes is given by the byte order mark; else, for XML, by the declaration;
// else it is UTF-8 if the bytes are valid UTF-8, and Windows-1252 if not.
std::optional<std::string> ToUtf8(std::string bytes, bool isXml);

}  // namespace gateway
