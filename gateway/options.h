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
  std::vector<std::string> folders;   // in the order given, at least one unless help or version is asked for
  std::uint16_t port = kDefaultPort;  // 0: any free one
  bool help = false;
  bool version = false;
};

// An option that is unknown, wants a value or has a bad one. what() is one line for the person.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// `arguments` are those behind the program's name. Throws UsageError.
Options ParseOptions(std::span<const char* const> arguments);

// One line, for behind a UsageError; then the whole text of --help.
extern const char* const kUsage;
extern const char* const kHelp;

}  // namespace gateway
