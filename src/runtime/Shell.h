// One command run by the system's shell. Its output is thrown away. A command that still runs
// when its Shell goes is ended, with everything that it started.
#pragma once

#include <string>

#include "runtime/await.h"

class Shell {
 public:
  Shell() = default;
  ~Shell();
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  // 2 is the interactive mode, in which Execute returns at once; any other waits for the end.
  int Mode = 0;
  // Milliseconds that Execute waits at most in a waiting mode; the command is ended then. -1 is no limit.
  int TimeOut = -1;

  // Starts command; one that still runs is ended first.
  void Execute(const std::string& command);
  bool IsRunning();
  // The end of a command that runs. Without a descriptor, where the system gives none, only IsRunning tells.
  Awaited End() const { return {ended_, ended_ >= 0, false}; }
  // The exit status of the command that ended, 0 for success; 128 and the signal if a signal ended
  // it; 127 if it could not be started.
  int ErrorCode() const { return errorCode_; }
  // Ends the command if it runs.
  void Close();

 private:
  void Collect(int options);
  int process_ = -1;
  int ended_ = -1;  // can be read once the process has ended
  int errorCode_ = 0;
};
