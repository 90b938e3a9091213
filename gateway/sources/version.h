// Versions of yt-dlp. They are dates: the site changes, so that each release works only for a while.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace gateway {

// YYYY.MM.DD, which a dot and more digits and dots may follow: "2026.10.26.232959".
bool IsVersion(std::string_view text);

// Released before the site required caption tokens, so it may miss captions.
bool IsTooOld(std::string_view version);

// Why this version may fail on this day: "yt-dlp 2023.03.04 is too old for the site", "yt-dlp 2026.01.02 is
// more than 90 days old", or "".
std::string DoubtAbout(std::string_view version, std::chrono::sys_days today);

}  // namespace gateway
