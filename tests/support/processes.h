// Processes that tests start and wait for.
#pragma once

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "runtime/await.h"
#include "support/TemporaryFolder.h"

// Starts a program found in PATH with these arguments. These become its descriptors 0, 1, ...; -1 skips one.
inline pid_t Spawn(std::vector<std::string> words, const std::vector<int>& descriptors) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (std::size_t i = 0; i < descriptors.size(); ++i)
    if (descriptors[i] >= 0) posix_spawn_file_actions_adddup2(&actions, descriptors[i], static_cast<int>(i));
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t process = -1;
  EXPECT_EQ(::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  return process;
}

// The process whose id a command writes to Path().
class NamedProcess {
 public:
  NamedProcess() { ::mkfifo(Path().c_str(), 0600); }
  ~NamedProcess() {
    if (process_ >= 0) ::close(process_);
  }
  NamedProcess(const NamedProcess&) = delete;
  NamedProcess& operator=(const NamedProcess&) = delete;

  std::string Path() const { return folder_ / "number"; }
  // Waits for the id. Requires: the process is still running.
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

// A script that PATH finds as ping instead of the system's.
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
