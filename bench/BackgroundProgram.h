// A program that runs beside the measures and ends with its standard input.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class BackgroundProgram {
 public:
  // Starts words[0], a path or a name in PATH, and waits for its first line. Raises std::runtime_error if
  // none comes. Its standard error is ours.
  explicit BackgroundProgram(std::vector<std::string> words);
  // Closes its standard input and waits for its end.
  ~BackgroundProgram();
  BackgroundProgram(const BackgroundProgram&) = delete;
  BackgroundProgram& operator=(const BackgroundProgram&) = delete;

  const std::string& FirstLine() const { return firstLine_; }
  pid_t Process() const { return process_; }

 private:
  std::string firstLine_;
  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;  // stays open, so that the program can go on writing
};
