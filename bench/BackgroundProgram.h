// A program that runs during the measures and ends at the end of its standard input.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class BackgroundProgram {
 public:
  // Starts words[0], a path or a name in PATH, and waits for its first line; raises std::runtime_error if it
  // prints none. It shares our standard error.
  explicit BackgroundProgram(std::vector<std::string> words);
  // Closes its standard input and waits until it ends.
  ~BackgroundProgram();
  BackgroundProgram(const BackgroundProgram&) = delete;
  BackgroundProgram& operator=(const BackgroundProgram&) = delete;

  const std::string& FirstLine() const { return firstLine_; }
  pid_t Process() const { return process_; }

 private:
  std::string firstLine_;
  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;  // stays open, so that the program can continue to write
};
