#include "desktop/command_line.h"

#include <string_view>

namespace {

constexpr char kHelp[] = R"(Usage: ravelyn [OPTION ...] [LINK]

Opens the window of Ravelyn. With LINK, which may be any link to a video or its code, it searches
for the captions of that video at once.

Options:
  --help       print this text
  --version    print the version
  and those of every program made with Qt, such as -style and -platform

Exit status:
  0  the user quit, or --help or --version
  1  there is no screen to show the window on, or the output can't be written
  2  wrong arguments
)";

void takeArgument(CommandLine& line, std::string_view argument, bool isOption) {
  if (isOption && argument == "--help") {
    line.output = kHelp;
  } else if (isOption && argument == "--version") {
    line.output = "ravelyn " RAVELYN_VERSION "\n";
  } else if (isOption) {
    line.error = "unknown option \"" + std::string(argument) + "\", see --help";
  } else if (!line.link.empty()) {
    line.error = "more than one link, see --help";
  } else {
    line.link = argument;
  }
}

}  // namespace

CommandLine readCommandLine(std::span<char* const> arguments) {
  CommandLine line;
  bool optionsEnded = false;
  for (const std::string_view argument : arguments) {
    if (!line.output.empty() || !line.error.empty()) break;
    if (!optionsEnded && argument == "--") {
      optionsEnded = true;
    } else {
      takeArgument(line, argument, !optionsEnded && argument.starts_with('-'));
    }
  }
  return line;
}
