#include "runtime/Text.h"

#include <algorithm>
#include <charconv>
#include <new>

#include "runtime/byte_search.h"

namespace {

constexpr std::string_view kWhite = " \t\n\v\f\r";

std::size_t Clamped(std::int64_t count, std::size_t most) {
  return count <= 0 ? 0 : std::min(static_cast<std::size_t>(count), most);
}

// A position that counts from 1 as an index into a text of this size.
std::size_t IndexOf(std::int64_t position, std::size_t size) {
  return Clamped(std::max<std::int64_t>(position, 1) - 1, size);
}

template <char (*change)(char)>
std::string EachByte(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), change);
  return out;
}

}  // namespace

std::string RuntimeAddString(std::string a, std::string_view b) { return std::move(a.append(b)); }

std::int64_t RuntimeStringCompare(std::string_view a, std::string_view b) { return a.compare(b); }

std::string Replace(std::string source, std::string_view find, std::string_view replacement) {
  const std::size_t at = find.empty() ? std::string::npos : source.find(find);
  if (at != std::string::npos) source.replace(at, find.size(), replacement);
  return source;
}

std::string ReplaceAll(std::string source, std::string_view find, std::string_view replacement) {
  std::size_t at = find.empty() ? std::string::npos : FindText(source, find);
  if (at == std::string::npos) return source;
  // The result is written over the source. If it is longer, the rest of the source makes way first.
  std::size_t longer = 0;
  if (replacement.size() > find.size()) {
    for (std::size_t each = at; each != std::string::npos; each = FindText(source, find, each + find.size()))
      longer += replacement.size() - find.size();
    source.insert(at, longer, '\0');
  }
  char* to = source.data() + at;
  const auto put = [&](std::string_view piece) { to = std::copy(piece.begin(), piece.end(), to); };
  for (at += longer; at != std::string::npos;) {
    put(replacement);
    const std::size_t from = at + find.size();
    at = FindText(source, find, from);
    put(std::string_view(source).substr(from, at - from));
  }
  source.resize(static_cast<std::size_t>(to - source.data()));
  return source;
}

std::string ReplaceLineEndings(std::string source, std::string_view lineEnding) {
  source = ReplaceAll(ReplaceAll(std::move(source), "\r\n", "\n"), "\r", "\n");
  return ReplaceAll(std::move(source), "\n", lineEnding);
}

StringArray Split(std::string_view source, std::string_view delimiter) {
  if (delimiter.empty()) return {std::string(source)};
  StringArray pieces;
  std::size_t from = 0;
  for (std::size_t at; (at = source.find(delimiter, from)) != std::string_view::npos;
       from = at + delimiter.size())
    pieces.emplace_back(source.substr(from, at - from));
  pieces.emplace_back(source.substr(from));
  return pieces;
}

StringArray CreateArray(std::int64_t upperBound) {
  const std::size_t count = upperBound < 0 ? 0 : static_cast<std::size_t>(upperBound) + 1;
  if (count > StringArray().max_size()) throw std::bad_alloc();
  return StringArray(count);
}

std::string Hex(std::int64_t value) {
  char digits[16];
  const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint64_t>(value), 16).ptr;
  return Uppercase({digits, static_cast<std::size_t>(end - digits)});
}

std::string DefineEncoding(std::string source, TextEncoding) { return source; }

std::int64_t InStr(std::int64_t start, std::string_view source, std::string_view find) {
  const std::size_t from = IndexOf(start, source.size());
  const auto at = std::search(source.begin() + static_cast<std::ptrdiff_t>(from), source.end(), find.begin(),
                              find.end(), [](char a, char b) { return LowerByte(a) == LowerByte(b); });
  if (find.empty() || at == source.end()) return 0;
  return at - source.begin() + 1;
}

std::string Mid(std::string_view text, std::int64_t start, std::int64_t length) {
  const std::size_t from = IndexOf(start, text.size());
  return std::string(text.substr(from, Clamped(length, text.size())));
}

std::string Left(std::string_view text, std::int64_t count) {
  return std::string(text.substr(0, Clamped(count, text.size())));
}

std::string Right(std::string_view text, std::int64_t count) {
  return std::string(text.substr(text.size() - Clamped(count, text.size())));
}

std::string NthField(std::string_view text, std::string_view delimiter, std::int64_t n) {
  if (n < 1) return "";
  if (delimiter.empty()) return n == 1 ? std::string(text) : "";
  std::size_t from = 0;
  for (; n > 1; --n) {
    const std::size_t at = text.find(delimiter, from);
    if (at == std::string_view::npos) return "";
    from = at + delimiter.size();
  }
  return std::string(text.substr(from, text.find(delimiter, from) - from));
}

std::string Trim(std::string_view text) {
  const std::size_t last = text.find_last_not_of(kWhite);
  return last == std::string_view::npos ? "" : LTrim(text.substr(0, last + 1));
}

std::string LTrim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhite);
  return first == std::string_view::npos ? "" : std::string(text.substr(first));
}

std::string Lowercase(std::string_view text) { return EachByte<LowerByte>(text); }

std::string Uppercase(std::string_view text) { return EachByte<UpperByte>(text); }
