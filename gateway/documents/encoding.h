// The encoding of a caption file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace gateway {

// The largest text of a caption file, in bytes of UTF-8.
inline constexpr std::size_t kLargestText = 64u << 20;

// The text in UTF-8, without a byte order mark and with U+FFFD for NUL; nullopt if it is larger than
// kLargestText. Its encoding is that of the byte order mark; else, for XML, the one that the declaration
// names; else UTF-8 where the bytes are that; else Windows-1252.
std::optional<std::string> ToUtf8(std::string bytes, bool isXml);

}  // namespace gateway
