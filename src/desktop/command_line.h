// The command line of the program.
#pragma once

#include <span>
#include <string>

struct CommandLine {
  std::string link;    // to search at once; "" if none was given
  std::string output;  // of --help or --version; "" if the window is to be shown
  std::string error;   // one line for the user; "" if all was understood
};

// Reads the arguments after the program's name.
// Requires: Qt has removed its own options, unless only output is of interest.
CommandLine readCommandLine(std::span<char* const> arguments);
