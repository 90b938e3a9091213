// Processes that tests start and wait for.
#pragma once

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "runtime/await.h"
#include "support/TemporaryFolder.h"

// The process whose number a command writes into Path().
class NamedProcess {
 public:
  NamedProcess() { ::mkfifo(Path().c_str(), 0600); }
  ~NamedProcess() {
    if (process_ >= 0) ::close(process_);
  }
  NamedProcess(const NamedProcess&) = delete;
  NamedProcess& operator=(const NamedProcess&) = delete;

  std::string Path() const { return folder_ / "number"; }
  // Waits until it is named, while it still runs.
  void Await() {
    int number = -1;
    std::ifstream(Path()) >> number;
    process_ = static_cast<int>(::syscall(SYS_pidfd_open, number, 0));
  }
  bool EndsWithin(int milliseconds) const { return IsReadyWithin(milliseconds, {process_, true, false}); }

 private:
  TemporaryFolder folder_;
  int process_ = -1;
};

// A ping of the test's own, found before the system's.
class OwnPing {
 public:
  explicit OwnPing(const std::string& script) {
    WriteFile(folder_ / "ping", "#!/bin/sh\n" + script + "\n");
    ::chmod((folder_ / "ping").c_str(), 0700);
    ::setenv("PATH", (folder_.Path() + ":" + path_).c_str(), 1);
  }
  ~OwnPing() { ::setenv("PATH", path_.c_str(), 1); }
  OwnPing(const OwnPing&) = delete;
  OwnPing& operator=(const OwnPing&) = delete;

 private:
  const std::string path_ = std::getenv("PATH");
  TemporaryFolder folder_;
};
