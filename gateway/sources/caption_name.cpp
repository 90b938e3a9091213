#include "gateway/sources/caption_name.h"

#include <algorithm>

namespace gateway {
namespace {

constexpr std::string_view kLettersAndDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";

bool ConsistsOf(std::string_view text, std::string_view marks) {
  const auto allowed = [marks](char c) {
    return kLettersAndDigits.find(c) != std::string_view::npos || marks.find(c) != std::string_view::npos;
  };
  return !text.empty() && std::all_of(text.begin(), text.end(), allowed);
}

// Takes from the end of `rest` what stands behind the last `mark`, and the mark too.
std::optional<std::string_view> TakeBehindLast(std::string_view mark, std::string_view& rest) {
  const std::size_t at = rest.rfind(mark);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view taken = rest.substr(at + mark.size());
  rest = rest.substr(0, at);
  return taken;
}

}  // namespace

bool IsVideoCode(std::string_view text) { return ConsistsOf(text, "-._~"); }

std::optional<CaptionName> ParseCaptionName(std::string_view fileName) {
  if (!fileName.ends_with(kCaptionEnding)) return std::nullopt;
  std::string_view rest = fileName.substr(0, fileName.size() - kCaptionEnding.size());
  const auto language = TakeBehindLast("].", rest);
  const auto code = TakeBehindLast(" [", rest);
  if (!language || !code || rest.empty()) return std::nullopt;
  if (!ConsistsOf(*language, "-_") || !IsVideoCode(*code)) return std::nullopt;
  return CaptionName{std::string(rest), std::string(*code), std::string(*language)};
}

}  // namespace gateway
