#include "gateway/sources/version.h"

#include <algorithm>
#include <charconv>

#include "gateway/documents/ascii.h"

namespace gateway {
namespace {

using std::chrono::sys_days;

constexpr std::size_t kDate = 10;     // of "2023.03.04"
constexpr std::size_t kLongest = 32;  // bytes; a longer text is not a version
constexpr sys_days kFirstWithTokens = sys_days{std::chrono::year{2025} / 5 / 22};
constexpr std::chrono::days kFresh{90};

unsigned Number(std::string_view digits) {
  unsigned number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}

sys_days Released(std::string_view version) {
  return sys_days{std::chrono::year{static_cast<int>(Number(version.substr(0, 4)))} /
                  static_cast<int>(Number(version.substr(5, 2))) /
                  static_cast<int>(Number(version.substr(8, 2)))};
}

}  // namespace

bool IsVersion(std::string_view text) {
  if (text.size() < kDate || text.size() > kLongest || text[4] != '.' || text[7] != '.') return false;
  if (text.size() > kDate && text[kDate] != '.') return false;
  const auto allowed = [](char c) { return IsDigit(c) || c == '.'; };
  return std::count(text.begin(), text.begin() + kDate, '.') == 2 &&
         std::all_of(text.begin(), text.end(), allowed);
}

bool IsTooOld(std::string_view version) { return IsVersion(version) && Released(version) < kFirstWithTokens; }

std::string DoubtAbout(std::string_view version, sys_days today) {
  if (!IsVersion(version) || Released(version) + kFresh >= today) return "";
  return "yt-dlp " + std::string(version) +
         (IsTooOld(version) ? " is too old for the site" : " is more than 90 days old");
}

}  // namespace gateway
