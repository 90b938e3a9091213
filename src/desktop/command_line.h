// The command line of the program.
#pragma once

#include <span>
#include <string>

struct CommandLine {
  std::string link;   // to search at once; "" if none was given
  std::string words;  // to print, by --help and --version; "" shows the window
  std::string fault;  // one line for the user; "" if all was understood
};

// The arguments after the program's name. Those that Qt takes for itself must be gone, unless only words
// matter.
CommandLine readCommandLine(std::span<char* const> arguments);
