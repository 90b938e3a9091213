#include "gateway/sources/log.h"

#include <unicode/unistr.h>

#include <cstdint>
#include <cstdio>
#include <string>

namespace gateway {
namespace {

constexpr std::size_t kLongestText = 1000;
constexpr char32_t kReplacement = 0xFFFD;

bool IsPrintable(char32_t c) { return c >= 0x20 && (c < 0x7F || c > 0x9F) && c != kReplacement; }

std::string Printable(std::string_view text) {
  const icu::StringPiece piece(text.data(), static_cast<std::int32_t>(text.size()));
  icu::UnicodeString line = icu::UnicodeString::fromUTF8(piece);
  for (std::int32_t i = 0; i < line.length(); ++i) {
    if (!IsPrintable(line[i])) line.setCharAt(i, '?');
  }
  std::string utf8;
  return line.toUTF8String(utf8);
}

}  // namespace

void Log(std::string_view text) {
  const std::string line = "ravelyn-gateway: " + Printable(text.substr(0, kLongestText)) + "\n";
  std::fputs(line.c_str(), stderr);
}

}  // namespace gateway
