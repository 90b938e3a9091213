#include "gateway/sources/caption_name.h"

#include <algorithm>

#include "gateway/documents/ascii.h"

namespace gateway {
namespace {

constexpr std::size_t kLongestLanguage = 64;

bool ConsistsOf(std::string_view text, std::string_view marks) {
  const auto allowed = [marks](char c) { return IsLetter(c) || IsDigit(c) || marks.find(c) != marks.npos; };
  return !text.empty() && std::all_of(text.begin(), text.end(), allowed);
}

// Removes the last `mark` and all after it from `rest`, and returns what followed the mark.
std::optional<std::string_view> TakeAfterLast(std::string_view mark, std::string_view& rest) {
  const std::size_t at = rest.rfind(mark);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view taken = rest.substr(at + mark.size());
  rest = rest.substr(0, at);
  return taken;
}

// Removes the blank after the title. False if `rest` is neither empty nor a title with a blank.
bool TakeBlank(std::string_view& rest) {
  if (rest.empty()) return true;
  if (rest.size() < 2 || !rest.ends_with(' ')) return false;
  rest.remove_suffix(1);
  return true;
}

}  // namespace

bool IsVideoCode(std::string_view text) { return ConsistsOf(text, "-._~"); }

bool IsTrackLanguage(std::string_view text) {
  return text.size() <= kLongestLanguage && ConsistsOf(text, "-_") && text != "live_chat";
}

bool HasCaptionEnding(std::string_view fileName) {
  const auto ending = TakeAfterLast(".", fileName);
  return ending && FormatWithEnding(*ending) != nullptr;
}

std::optional<CaptionName> ParseCaptionName(std::string_view fileName) {
  std::string_view rest = fileName;
  const auto ending = TakeAfterLast(".", rest);
  const CaptionFormat* format = ending ? FormatWithEnding(*ending) : nullptr;
  if (format == nullptr) return std::nullopt;
  const auto language = TakeAfterLast("].", rest);
  const auto code = TakeAfterLast("[", rest);
  if (!language || !code || !TakeBlank(rest)) return std::nullopt;
  if (!IsTrackLanguage(*language) || !IsVideoCode(*code)) return std::nullopt;
  return CaptionName{rest, *code, *language, format};
}

}  // namespace gateway
