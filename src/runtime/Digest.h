// MD5 (RFC 1321) and Base64 (RFC 4648) for HTTP authentication.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The 16 raw bytes of the digest of text.
std::string MD5(std::string_view text);

// text in Base64 with padding, in lines of lineLength characters with CR LF between them; 0 gives one line.
std::string EncodeBase64(std::string_view text, std::int64_t lineLength);
