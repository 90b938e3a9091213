// Text operations. A String is a run of bytes (std::string). Lengths and positions count bytes, positions
// from 1. Nothing here depends on the locale, and nothing fails: an absent occurrence gives the source, an
// absent field "". The program itself does not use RuntimeAddString, RuntimeStringCompare, CreateArray and
// ReplaceLineEndings.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using StringArray = std::vector<std::string>;

// a followed by b, byte for byte.
std::string RuntimeAddString(std::string a, std::string_view b);
// 0 if the bytes are equal; otherwise negative or positive, in byte order.
std::int64_t RuntimeStringCompare(std::string_view a, std::string_view b);

// source with the first, or with every, occurrence of find replaced, byte for byte. ReplaceAll goes from left
// to right and never scans a replacement. An empty find changes nothing. An unchanged source that was moved
// in is not copied.
std::string Replace(std::string source, std::string_view find, std::string_view replacement);
std::string ReplaceAll(std::string source, std::string_view find, std::string_view replacement);
// CR LF, CR and LF each become lineEnding.
std::string ReplaceLineEndings(std::string source, std::string_view lineEnding);

// The pieces between the occurrences of delimiter, empty ones included: n delimiters give n + 1 pieces, so ""
// gives one empty piece. An empty delimiter never occurs.
StringArray Split(std::string_view source, std::string_view delimiter);

// New array with indexes 0 to upperBound; empty for -1. Throws std::bad_alloc if it is too large.
StringArray CreateArray(std::int64_t upperBound);
template <typename T>
std::int64_t Ubound(const std::vector<T>& array) {
  return static_cast<std::int64_t>(array.size()) - 1;
}
template <typename T>
void Append(std::vector<T>& array, T item) {
  array.push_back(std::move(item));
}

// The character with this code as UTF-8 ("" for a code that is no character), and one raw byte.
std::string Chr(std::int64_t code);
std::string ChrB(std::int64_t value);
// The code of the first character, read as UTF-8; if that is invalid, the first byte. 0 for "".
std::int64_t Asc(std::string_view text);
// Upper-case hexadecimal digits without leading zeros; a negative value in two's complement.
std::string Hex(std::int64_t value);

struct TextEncoding {};
namespace Encodings {
inline constexpr TextEncoding UTF8{};
}
// The same bytes: a String carries no encoding, so the call only documents it.
std::string DefineEncoding(std::string source, TextEncoding encoding);

// The line end of the platform: that of UNIX wherever the program runs.
struct EndOfLineText {
  std::string_view UNIX = "\n";
  operator std::string_view() const { return UNIX; }
};
inline constexpr EndOfLineText EndOfLine{};

// Position of find in source, at or after position start (0 and 1 both mean the beginning); 0 if absent.
// Ignores the case of ASCII letters.
std::int64_t InStr(std::int64_t start, std::string_view source, std::string_view find);
inline std::int64_t LenB(std::string_view text) { return static_cast<std::int64_t>(text.size()); }
inline std::int64_t Len(std::string_view text) { return LenB(text); }
// From position start to the end, or at most length bytes. A start below 1 counts as 1, a length or count
// below 0 as 0.
std::string Mid(std::string_view text, std::int64_t start, std::int64_t length = INT64_MAX);
std::string Left(std::string_view text, std::int64_t count);
std::string Right(std::string_view text, std::int64_t count);
// The n-th field, from 1, between the occurrences of delimiter; "" if there is none.
std::string NthField(std::string_view text, std::string_view delimiter, std::int64_t n);
// Removes space, tab, LF, VT, FF and CR.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
// ASCII letters only; every other byte stays the same.
inline char LowerByte(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
inline char UpperByte(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
std::string Lowercase(std::string_view text);
std::string Uppercase(std::string_view text);

// Length in bytes of the UTF-8 character at the start of text; 0 if there is no valid one.
std::size_t CharacterLength(std::string_view text);
// name without anything that leads to another folder or disguises it: separators, control characters,
// invisible and bidirectional ones, bytes that are not UTF-8 and leading dots become "_", and so does an
// empty base. At most 200 bytes, cut at a character, with the extension kept.
std::string PlainFileName(const std::string& name);
