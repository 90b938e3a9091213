// Letters and digits of ASCII, whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace gateway {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Only A to Z change; all other bytes stay.
inline std::string Lowercase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

}  // namespace gateway
