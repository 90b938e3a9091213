// The settings and limits of SiteSource.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace gateway {

struct SiteSettings {
  std::string program;     // the path of yt-dlp; "": not installed
  std::string version;     // "2023.03.04"; "": unknown
  std::string config;      // the user's file of options for yt-dlp; "": none
  std::string scratch;     // the parent of the children's folders; "": the system's temporary folder
  std::string named = {};  // the program that the user named, searched for each time; "": none
};

struct SiteLimits {
  std::chrono::milliseconds text{25'000};         // from the request's arrival, including queue and list
  std::chrono::milliseconds list{60'000};         // from the first request for it, including queue
  std::chrono::milliseconds betweenLists{1'000};  // from the start of one to the start of the next
  std::chrono::milliseconds warm{60'000};         // before a child started ahead is ended unused
  std::chrono::milliseconds pause{900'000};       // after a bot check or HTTP 429, without children
  std::chrono::milliseconds keepNoCaptions{3'600'000};  // how long "no captions" is remembered
  std::chrono::milliseconds keepVerdict{600'000};  // how long "private", "removed" and so on are remembered
  std::chrono::seconds beforeExpiry{600};          // how long before its links expire a list is dropped
  std::chrono::seconds longestList{6 * 3'600};     // how long a list is kept at most
  std::chrono::seconds unknownList{600};           // how long a list is kept if its links have no expiry
  std::size_t lists = 64;                          // kept at a time
  std::size_t children = 2;              // at a time, besides the warm one; lists leave one place free
  std::uint64_t fileBytes = 8u << 20;    // of each file that a child writes
  std::size_t outputBytes = 64u << 20;   // on standard output
  std::size_t messageBytes = 64u << 10;  // on standard error
};

}  // namespace gateway
