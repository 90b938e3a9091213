// Versions of yt-dlp. They are dates, since the site changes and each release keeps up with it for a while.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace gateway {

// YYYY.MM.DD, and more digits and dots at will: "2026.10.26.232959".
bool IsVersion(std::string_view text);

// Released before the site began to ask for caption tokens, so what it doesn't find may well be there.
bool IsTooOld(std::string_view version);

// What speaks against a version on this day: "yt-dlp 2023.03.04 is too old for the site", "yt-dlp 2026.01.02
// is more than 90 days old", or "".
std::string DoubtAbout(std::string_view version, std::chrono::sys_days today);

}  // namespace gateway
