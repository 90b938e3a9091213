// Text operations. A String is a run of bytes (std::string); lengths and positions count bytes,
// and positions count from 1. Nothing here reads the locale, and nothing fails: an absent
// occurrence or field gives the source or "".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using StringArray = std::vector<std::string>;

// a followed by b, byte for byte.
std::string RuntimeAddString(std::string a, std::string_view b);
// 0 when both hold the same bytes; else negative or positive in byte order.
std::int64_t RuntimeStringCompare(std::string_view a, std::string_view b);

// source with the first, or with every, occurrence of find replaced. ReplaceAll scans source
// from left to right and never looks at what it has put in. An empty find changes nothing.
// Exact bytes count. A source that is handed over by move and not changed comes back uncopied.
std::string Replace(std::string source, std::string_view find, std::string_view replacement);
std::string ReplaceAll(std::string source, std::string_view find, std::string_view replacement);
// CR LF, CR and LF alike become lineEnding.
std::string ReplaceLineEndings(std::string source, std::string_view lineEnding);

// The pieces between the occurrences of delimiter, empty ones too: n delimiters give n + 1
// pieces, so "" gives one empty piece. An empty delimiter does not occur.
StringArray Split(std::string_view source, std::string_view delimiter);

// New array with indexes 0 to upperBound; empty for -1. Raises std::bad_alloc where memory can't hold it.
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
// The code of the first character, read as UTF-8; of the first byte where that is no UTF-8. 0 for "".
std::int64_t Asc(std::string_view text);
// Upper-case hexadecimal digits without leading zeros; a negative value in two's complement.
std::string Hex(std::int64_t value);

struct TextEncoding {};
namespace Encodings {
inline constexpr TextEncoding UTF8{};
}
// The same bytes: a String carries no tag here, so this only says how they are meant.
std::string DefineEncoding(std::string source, TextEncoding encoding);

// The line end of the platform, which is that of UNIX on every platform we build for.
struct EndOfLineText {
  std::string_view UNIX = "\n";
  operator std::string_view() const { return UNIX; }
};
inline constexpr EndOfLineText EndOfLine{};

// Position of find in source, looking from position start (0 and 1 both mean the beginning);
// 0 if it does not occur. Ignores the case of ASCII letters.
std::int64_t InStr(std::int64_t start, std::string_view source, std::string_view find);
inline std::int64_t LenB(std::string_view text) { return static_cast<std::int64_t>(text.size()); }
inline std::int64_t Len(std::string_view text) { return LenB(text); }
// From position start, to the end or at most length bytes. A start below 1 counts as 1, a
// length or count below 0 as 0.
std::string Mid(std::string_view text, std::int64_t start);
std::string Mid(std::string_view text, std::int64_t start, std::int64_t length);
std::string Left(std::string_view text, std::int64_t count);
std::string Right(std::string_view text, std::int64_t count);
// The n-th field, from 1, between occurrences of delimiter; "" if there is none.
std::string NthField(std::string_view text, std::string_view delimiter, std::int64_t n);
// White space is blank, tab, LF, VT, FF and CR.
std::string Trim(std::string_view text);
std::string LTrim(std::string_view text);
// ASCII letters only; every other byte stays.
std::string Lowercase(std::string_view text);
std::string Uppercase(std::string_view text);
