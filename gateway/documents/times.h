// Times as written in caption files. Results are in milliseconds, at most kLatestTime; decimals beyond the
// third are cut.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace gateway {

// "12", "12.5", ".5": seconds; 0 if negative, nullopt for any other text.
std::optional<std::int64_t> Seconds(std::string_view text);

// "1500": whole milliseconds; 0 if negative, nullopt for any other text.
std::optional<std::int64_t> Milliseconds(std::string_view text);

//   clock = [1*DIGIT ":"] 1*DIGIT ":" 1*DIGIT [("." | ",") 1*DIGIT]
//
// Takes a clock from the front of text; nullopt if there is none.
std::optional<std::int64_t> TakeClock(std::string_view& text);

struct Times {
  std::int64_t start = 0;
  std::int64_t end = 0;
};

//   time line = *blank clock *blank "-->" *blank clock [blank settings]
std::optional<Times> ReadTimeLine(std::string_view line);

}  // namespace gateway
