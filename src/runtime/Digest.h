// MD5 (RFC 1321) and Base64 (RFC 4648), as HTTP authentication needs them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The 16 raw bytes of the digest of text.
std::string MD5(std::string_view text);

// text in Base64 with padding. A lineLength above 0 puts CR LF behind every so many characters
// but the last; 0 gives one unbroken line.
std::string EncodeBase64(std::string_view text, std::int64_t lineLength);
