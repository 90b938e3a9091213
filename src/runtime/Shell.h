// Runs one command in the system's shell and discards its output. The destructor kills a running command with
// all processes that it started. The program itself uses the interactive mode only.
#pragma once

#include <string>

#include "runtime/await.h"

class Shell {
 public:
  Shell() = default;
  ~Shell();
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  // 2 is the interactive mode, in which Execute returns at once; in any other it waits for the end.
  int Mode = 0;
  // Longest wait of Execute in milliseconds, after which it kills the command; -1 for no limit.
  int TimeOut = -1;

  // Starts command, after killing one that is running.
  void Execute(const std::string& command);
  bool IsRunning();
  // Ready at the end of the running command. Without a descriptor, if the system provides none, only
  // IsRunning reports it.
  Awaited End() const { return {ended_, ended_ >= 0, false}; }
  // The exit status of the last command: 0 for success, 128 plus the signal that ended it, 127 if it could
  // not be started.
  int ErrorCode() const { return errorCode_; }
  // Kills the command if it is running.
  void Close();

 private:
  void Collect(int options);
  int process_ = -1;
  int ended_ = -1;  // readable once the process has ended
  int errorCode_ = 0;
};
