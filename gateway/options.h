// The command line.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace gateway {

inline constexpr std::uint16_t kDefaultPort = 17733;

struct Option {
  std::string_view name;
  std::string_view value;  // its value's name in --help; "" if it takes none
  std::string_view help;   // lines
};

// An unknown option, or one whose value is missing or invalid. what() is one line for the user.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The options given. At least one of them selects a source, or is --help or --version.
class Options {
 public:
  // `arguments` are those after the program name. Throws UsageError.
  explicit Options(std::span<const char* const> arguments);

  // Requires: `name` is in the table of a source kind, or one of the general options.
  bool Has(std::string_view name) const { return !Values(name).empty(); }
  // The last one given, "" if none; and all, in the given order.
  std::string Value(std::string_view name) const { return Has(name) ? Values(name).back() : ""; }
  const std::vector<std::string>& Values(std::string_view name) const { return given_.at(name); }

  std::uint16_t Port() const;  // 0: any free one

 private:
  // The values of every option; "" for each time that one without a value was given.
  std::map<std::string_view, std::vector<std::string>> given_;
};

// One line, to print after a UsageError.
inline constexpr const char* kUsage =
    "Usage: ravelyn-gateway [--folder DIR ...] [--fetch] [OPTION ...], see --help";

// The whole text of --help.
std::string HelpText();

}  // namespace gateway
