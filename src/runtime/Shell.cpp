#include "runtime/Shell.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

extern char** environ;

namespace {

// Starts /bin/sh -c command in its own process group, without input, output or any other descriptor of ours;
// -1 on failure.
pid_t Spawn(const std::string& command) {
  posix_spawn_file_actions_t files;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&files);
  posix_spawnattr_init(&attributes);
  for (const int descriptor : {0, 1, 2}) {
    posix_spawn_file_actions_addopen(&files, descriptor, "/dev/null", descriptor ? O_WRONLY : O_RDONLY, 0);
  }
  posix_spawn_file_actions_addclosefrom_np(&files, 3);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  std::string shell = "sh", dash = "-c", text = command;
  char* arguments[] = {shell.data(), dash.data(), text.data(), nullptr};
  pid_t process = -1;
  if (posix_spawn(&process, "/bin/sh", &files, &attributes, arguments, environ) != 0) process = -1;
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  return process;
}

}  // namespace

Shell::~Shell() { Close(); }

void Shell::Execute(const std::string& command) {
  Close();
  process_ = Spawn(command);
  errorCode_ = process_ < 0 ? 127 : 0;
  if (process_ < 0) return;
  ended_ = static_cast<int>(::syscall(SYS_pidfd_open, process_, 0));
  if (Mode == 2) return;
  const bool isBounded = TimeOut >= 0 && ended_ >= 0;
  if (isBounded && !IsReadyWithin(TimeOut, End())) return Close();
  Collect(0);
}

bool Shell::IsRunning() {
  if (process_ >= 0) Collect(WNOHANG);
  return process_ >= 0;
}

void Shell::Close() {
  if (process_ < 0) return;
  ::kill(-process_, SIGKILL);
  Collect(0);
}

void Shell::Collect(int options) {
  int status = 0;
  pid_t ended;
  do {
    ended = ::waitpid(process_, &status, options);
  } while (ended < 0 && errno == EINTR);
  if (ended == 0) return;
  errorCode_ = ended < 0 ? 127 : WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  process_ = -1;
  if (ended_ >= 0) ::close(std::exchange(ended_, -1));
}
