#include "gateway/documents/encoding.h"

#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace gateway {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

Converter OpenConverter(const std::string& encoding) {
  UErrorCode error = U_ZERO_ERROR;
  return Converter(ucnv_open(encoding.c_str(), &error));
}

// Whether the first eight bytes are ASCII.
bool AreEightAscii(const std::uint8_t* bytes) {
  std::uint64_t eight;
  std::memcpy(&eight, bytes, sizeof eight);
  return (eight & 0x8080808080808080u) == 0;
}

bool IsUtf8(std::string_view text) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  for (std::size_t i = 0; i < text.size();) {
    UChar32 character = bytes[i];
    if (i + 8 <= text.size() && AreEightAscii(bytes + i)) {
      i += 8;
    } else if (character < 0x80) {
      ++i;
    } else {
      U8_NEXT(bytes, i, text.size(), character);
      if (character < 0) return false;
    }
  }
  return true;
}

// Recognises only the byte order marks of UTF-8, UTF-16 and UTF-32. The first bytes of other encodings' marks
// are more likely to be plain text.
std::string EncodingOfMark(std::string_view bytes, std::size_t& markSize) {
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t size = 0;
  const auto length = static_cast<std::int32_t>(std::min<std::size_t>(bytes.size(), 4));
  const char* name = ucnv_detectUnicodeSignature(bytes.data(), length, &size, &error);
  const std::string_view found = name ? name : "";
  if (!found.starts_with("UTF-8") && !found.starts_with("UTF-16") && !found.starts_with("UTF-32")) return "";
  markSize = static_cast<std::size_t>(size);
  return std::string(found);
}

// `<?xml ... encoding="NAME" ... ?>` at the very start. A declaration that was readable byte by byte can't be
// in UTF-16 or UTF-32, and UTF-8 is recognised anyway, so these names are ignored.
std::string DeclaredEncoding(std::string_view bytes) {
  if (!bytes.starts_with("<?xml")) return "";
  const std::string_view head = bytes.substr(0, std::min(bytes.find("?>"), std::size_t{400}));
  std::size_t at = head.find("encoding");
  if (at != std::string_view::npos) at = head.find_first_not_of(" \t\r\n=", at + 8);
  if (at == std::string_view::npos || (head[at] != '"' && head[at] != '\'')) return "";
  const std::size_t end = head.find(head[at], at + 1);
  if (end == std::string_view::npos) return "";
  std::string name(head.substr(at + 1, end - at - 1));
  const bool isUnicode = name.size() > 3 && ucnv_compareNames(name.substr(0, 3).c_str(), "utf") == 0;
  return isUnicode ? "" : name;
}

std::optional<std::string> Converted(std::string_view bytes, UConverter* converter) {
  const auto convert = [&](char* to, std::size_t capacity) {
    UErrorCode error = U_ZERO_ERROR;
    const std::int32_t size =
        ucnv_toAlgorithmic(UCNV_UTF8, converter, to, static_cast<std::int32_t>(capacity), bytes.data(),
                           static_cast<std::int32_t>(bytes.size()), &error);
    return static_cast<std::size_t>(size);
  };
  const std::size_t size = convert(nullptr, 0);
  if (size > kLargestText) return std::nullopt;
  std::string text(size, '\0');
  convert(text.data(), size);
  return text;
}

std::string WithoutNul(std::string text) {
  if (text.find('\0') == std::string::npos) return text;
  std::string clean;
  for (const char c : text) c == '\0' ? clean += kReplacement : clean += c;
  return clean;
}

}  // namespace

std::optional<std::string> ToUtf8(std::string bytes, bool isXml) {
  std::size_t markSize = 0;
  std::string encoding = EncodingOfMark(bytes, markSize);
  if (encoding.empty() && isXml) encoding = DeclaredEncoding(bytes);
  Converter converter = encoding.empty() ? nullptr : OpenConverter(encoding);
  const std::string_view unmarked = std::string_view(bytes).substr(markSize);
  const bool mayBeUtf8 = !converter || encoding == "UTF-8";
  if (mayBeUtf8 && IsUtf8(unmarked)) {
    bytes.erase(0, markSize);
  } else {
    if (!converter) converter = OpenConverter("windows-1252");
    auto text = converter ? Converted(unmarked, converter.get()) : std::nullopt;
    if (!text) return std::nullopt;
    bytes = *std::move(text);
  }
  std::string text = WithoutNul(std::move(bytes));
  if (text.size() > kLargestText) return std::nullopt;
  return text;
}

}  // namespace gateway
