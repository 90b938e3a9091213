#include "gateway/documents/references.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace gateway {
namespace {

constexpr std::size_t kLongest = 12;  // "&#x0010FFFF;"

constexpr NamedCharacter kCharacters[] = {
    {"amp", "&"},
    {"lt", "<"},
    {"gt", ">"},
    {"quot", "\""},
    {"apos", "'"},
    {"nbsp", "\xC2\xA0"},
    {"lrm", "\xE2\x80\x8E"},
    {"rlm", "\xE2\x80\x8F"},
};

// False if the number is not a character that may occur in a text.
bool AppendNumbered(std::string& to, std::string_view number) {
  const bool isHex = number.starts_with('x') || number.starts_with('X');
  if (isHex) number.remove_prefix(1);
  std::uint32_t code = 0;
  const char* end = number.data() + number.size();
  const auto [stop, error] = std::from_chars(number.data(), end, code, isHex ? 16 : 10);
  const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
  if (error != std::errc() || stop != end || isControl || code > 0x10FFFF || U_IS_SURROGATE(code))
    return false;
  char bytes[U8_MAX_LENGTH];
  std::size_t size = 0;
  U8_APPEND_UNSAFE(bytes, size, code);
  to.append(bytes, size);
  return true;
}

}  // namespace

std::span<const NamedCharacter> WebCharacters() { return kCharacters; }
std::span<const NamedCharacter> PlainCharacters() { return std::span(kCharacters).first(3); }

std::size_t AppendReference(std::string& to, std::string_view text, std::span<const NamedCharacter> names) {
  const std::size_t end = text.substr(0, kLongest).find(';');
  if (end == std::string_view::npos) return 0;
  const std::string_view name = text.substr(1, end - 1);
  if (name.starts_with('#')) return AppendNumbered(to, name.substr(1)) ? end + 1 : 0;
  for (const NamedCharacter& known : names) {
    if (known.name != name) continue;
    to += known.character;
    return end + 1;
  }
  return 0;
}

void AppendResolved(std::string& to, std::string_view text, std::span<const NamedCharacter> names) {
  for (;;) {
    const std::size_t at = std::min(text.find('&'), text.size());
    to += text.substr(0, at);
    text.remove_prefix(at);
    if (text.empty()) return;
    const std::size_t length = AppendReference(to, text, names);
    if (length == 0) to += '&';
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
}

}  // namespace gateway
