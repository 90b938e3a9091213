// Starts a program on the X display of DISPLAY and measures from outside when its first window appears.
#pragma once

#include <sys/types.h>

#include <string>

class StartedProgram {
 public:
  // Returns when the first pixels of the program's first window are drawn. Throws std::runtime_error if that
  // takes half a minute, or if there is no display.
  explicit StartedProgram(const std::string& path);
  // Ends it.
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  // Milliseconds from the start until the window is mapped, and until its first pixels are drawn.
  double ShownAfter() const { return shown_; }
  double DrawnAfter() const { return drawn_; }
  // Bytes in memory, and those of them that the program shares with no other.
  double Resident() const;
  double Private() const;

 private:
  pid_t process_ = -1;
  double shown_ = 0;
  double drawn_ = 0;
};
