// Text as characters: codes, UTF-8 and plain file names.

#include <algorithm>

#include "runtime/Text.h"

namespace {

std::int64_t ByteAt(std::string_view text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

constexpr std::size_t kLongestName = 200;
// A longer extension is part of the base.
constexpr std::size_t kLongestExtension = 16;

// Separators, and the characters that control, hide, turn or break text.
bool IsDisguise(std::string_view character) {
  if (character.size() == 1) {
    const std::int64_t c = ByteAt(character, 0);
    return c < 0x20 || c == 0x7F || c == '/' || c == '\\' || c == ':';
  }
  if (character.size() == 2)
    return character < "\xC2\xA0" || character == "\xD8\x9C" || character == "\xC2\xAD";
  if (character.size() != 3) return false;
  const bool marks = character >= "\xE2\x80\x8B" && character <= "\xE2\x80\x8F";     // U+200B to U+200F
  const bool breaks = character >= "\xE2\x80\xA8" && character <= "\xE2\x80\xAE";    // U+2028 to U+202E
  const bool isolates = character >= "\xE2\x81\xA0" && character <= "\xE2\x81\xAF";  // U+2060 to U+206F
  return marks || breaks || isolates || character == "\xEF\xBB\xBF";
}

std::string WithoutDisguises(std::string_view name) {
  std::string plain;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t length = CharacterLength(name.substr(at));
    const std::string_view character = name.substr(at, std::max<std::size_t>(length, 1));
    plain += length == 0 || IsDisguise(character) ? "_" : character;
    at += character.size();
  }
  return plain;
}

// Requires: text is valid UTF-8.
void CutAtCharacter(std::string& text, std::size_t most) {
  std::size_t end = 0;
  for (std::size_t next = 0; next <= most && end < text.size();
       next += CharacterLength(std::string_view(text).substr(next)))
    end = next;
  text.resize(end);
}

}  // namespace

std::string Chr(std::int64_t code) {
  if (code < 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return "";
  if (code < 0x80) return ChrB(code);
  if (code < 0x800) return ChrB(0xC0 | code >> 6) + ChrB(0x80 | (code & 0x3F));
  const std::string tail = ChrB(0x80 | (code >> 6 & 0x3F)) + ChrB(0x80 | (code & 0x3F));
  if (code < 0x10000) return ChrB(0xE0 | code >> 12) + tail;
  return ChrB(0xF0 | code >> 18) + ChrB(0x80 | (code >> 12 & 0x3F)) + tail;
}

std::string ChrB(std::int64_t value) { return std::string(1, static_cast<char>(value & 0xFF)); }

std::int64_t Asc(std::string_view text) {
  if (text.empty()) return 0;
  const std::size_t length = CharacterLength(text);
  if (length <= 1) return ByteAt(text, 0);
  std::int64_t code = ByteAt(text, 0) & (0x7F >> length);
  for (std::size_t i = 1; i < length; ++i) code = code << 6 | (ByteAt(text, i) & 0x3F);
  return code;
}

std::size_t CharacterLength(std::string_view text) {
  if (text.empty()) return 0;
  const std::int64_t first = ByteAt(text, 0);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((ByteAt(text, i) & 0xC0) != 0x80) return 0;
  }
  const std::int64_t second = ByteAt(text, 1);
  const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool beyond = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
  return overlong || beyond ? 0 : length;
}

std::string PlainFileName(const std::string& name) {
  std::string plain = WithoutDisguises(name);
  for (std::size_t i = 0; i < plain.size() && plain[i] == '.' && plain.find_last_of('.') != i; ++i)
    plain[i] = '_';
  std::size_t dot = plain.find_last_of('.');
  if (dot == std::string::npos || plain.size() - dot > kLongestExtension) dot = plain.size();
  const std::string extension = plain.substr(dot);
  std::string base = plain.substr(0, dot);
  if (base.starts_with('.')) base[0] = '_';  // the only dot, before a tail too long for an extension
  CutAtCharacter(base, kLongestName - extension.size());
  return (base.empty() ? "_" : base) + extension;
}
