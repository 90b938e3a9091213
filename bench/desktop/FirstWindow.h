// Starts a program on the X display of DISPLAY and watches from outside when its first window is there.
#pragma once

#include <sys/types.h>

#include <string>

class StartedProgram {
 public:
  // Returns when the first pixels of the program's first window are drawn. Raises std::runtime_error
  // where that takes half a minute, or where there is no display.
  explicit StartedProgram(const std::string& path);
  // Ends it.
  ~StartedProgram();
  StartedProgram(const StartedProgram&) = delete;
  StartedProgram& operator=(const StartedProgram&) = delete;

  // From the start to the moment when the window is shown, and to its first pixels.
  double ShownAfter() const { return shown_; }
  double DrawnAfter() const { return drawn_; }
  // Bytes in memory, and those of them that the program shares with nobody.
  double Resident() const;
  double Private() const;

 private:
  pid_t process_ = -1;
  double shown_ = 0;  // milliseconds
  double drawn_ = 0;
};
