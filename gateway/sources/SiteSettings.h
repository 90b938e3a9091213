// What the site's source is made with.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace gateway {

struct SiteSettings {
  std::string program;     // the path of yt-dlp; "": not installed
  std::string version;     // what it said of itself, "2023.03.04"; "": unknown
  std::string config;      // the user's file of options for yt-dlp; "": none
  std::string scratch;     // the folder in which each child gets one of its own; "": the system's
  std::string named = {};  // the program that the user named, "" for none: looked for each time
};

// Every bound of the source.
struct SiteLimits {
  std::chrono::milliseconds text{25'000};           // from the request's arrival, queue and lists included
  std::chrono::milliseconds list{60'000};           // from the first request for it, queue included
  std::chrono::milliseconds betweenLists{1'000};    // from the start of one to the start of the next
  std::chrono::milliseconds warm{60'000};           // for a started child to wait for its document
  std::chrono::milliseconds pause{900'000};         // without a child after a bot check or HTTP 429
  std::chrono::milliseconds keepSilent{3'600'000};  // for "no captions"
  std::chrono::milliseconds keepVerdict{600'000};  // for what the site said of a video: private, removed, ...
  std::chrono::seconds beforeExpiry{600};          // how long before its links expire a list is dropped
  std::chrono::seconds longestList{6 * 3'600};     // for a list to be kept, whatever its links say
  std::chrono::seconds unknownList{600};           // for a list whose links say nothing
  std::size_t lists = 64;                          // kept at a time
  std::size_t children = 2;  // at a time, beside the warm one; lists leave one place free
  std::uint64_t fileBytes = 8u << 20;
  std::size_t outputBytes = 64u << 20;   // on standard output
  std::size_t messageBytes = 64u << 10;  // on standard error
};

}  // namespace gateway
