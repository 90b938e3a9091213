// The command line.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace gateway {

inline constexpr std::uint16_t kDefaultPort = 17733;

struct Options {
  std::vector<std::string> folders;   // in the order given; at least one, or fetch, unless help or version
  std::uint16_t port = kDefaultPort;  // 0: any free one
  bool asIs = false;                  // .srv1 files alone, byte for byte
  bool fetch = false;                 // ask the site
  std::string ytdlp;                  // the program; "" looks for it
  std::string ytdlpConfig;            // the user's file of options for it; "" is none
  std::string cache;                  // the folder of fetched texts; "" is the usual one
  bool keepsTexts = true;             // in the cache
  bool stopsWithInput = false;        // ends at the end of standard input
  bool help = false;
  bool version = false;
};

// An option that is unknown, wants a value or has a bad one. what() is one line for the user.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// `arguments` are those after the program's name. Throws UsageError.
Options ParseOptions(std::span<const char* const> arguments);

// One line, to follow a UsageError.
extern const char* const kUsage;

// The whole text of --help.
std::string HelpText();

}  // namespace gateway
