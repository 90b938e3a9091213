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
  std::vector<std::string> folders;   // in the given order; not empty unless fetch, help or version is set
  std::uint16_t port = kDefaultPort;  // 0: any free one
  bool asIs = false;                  // only .srv1 files, byte for byte
  bool fetch = false;                 // ask the site
  std::string ytdlp;                  // the program; "": search for it
  std::string ytdlpConfig;            // the user's file of options for it; "": none
  std::string cache;                  // the folder of fetched texts; "": the default
  bool keepsTexts = true;             // in the cache
  bool stopsWithInput = false;        // stops at the end of standard input
  bool help = false;
  bool version = false;
};

// An unknown option, or one whose value is missing or invalid. what() is one line for the user.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// `arguments` are those after the program name. Throws UsageError.
Options ParseOptions(std::span<const char* const> arguments);

// One line, to print after a UsageError.
extern const char* const kUsage;

// The whole text of --help.
std::string HelpText();

}  // namespace gateway
