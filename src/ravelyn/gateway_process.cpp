#include "ravelyn/gateway_process.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>

extern char** environ;

namespace {

constexpr int kHandedOver = 3;
constexpr char kProcess[] = "LISTEN_PID=";
constexpr std::size_t kMostDigits = 20;

// Our variables without those that a service manager passed to us, and with space for the new process's
// number, which only that process can fill in.
std::vector<std::string> EnvironmentOf() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable) {
    if (std::string_view(*variable).substr(0, 7) != "LISTEN_") variables.emplace_back(*variable);
  }
  variables.emplace_back("LISTEN_FDS=1");
  variables.push_back(kProcess + std::string(kMostDigits, '\0'));
  return variables;
}

std::vector<char*> PointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Runs in the new process, which may have copied locks held by other threads: nothing here allocates.
[[noreturn]] void Become(char* const* arguments, char* const* variables, char* number,
                         const std::array<int, 4>& descriptors) {
  ::setpgid(0, 0);
  for (const int signal : {SIGPIPE, SIGHUP, SIGINT, SIGTERM}) ::signal(signal, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  // Copied first, since one may have the number that another one gets.
  std::array<int, 4> aside{};
  for (std::size_t i = 0; i < aside.size(); ++i) aside[i] = ::fcntl(descriptors[i], F_DUPFD, 10);
  for (std::size_t i = 0; i < aside.size(); ++i) ::dup2(aside[i], static_cast<int>(i));
  ::syscall(SYS_close_range, kHandedOver + 1, ~0U, 0);
  std::to_chars(number, number + kMostDigits, ::getpid());
  ::execve(arguments[0], arguments, variables);
  ::_exit(127);
}

}  // namespace

pid_t StartGateway(const std::vector<std::string>& command, int input, int listener) {
  std::vector<std::string> words = command, variables = EnvironmentOf();
  const std::vector<char*> arguments = PointersTo(words), environment = PointersTo(variables);
  char* const number = variables.back().data() + sizeof kProcess - 1;
  const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
  const pid_t process = ::fork();
  if (process == 0)
    Become(arguments.data(), environment.data(), number, {input, nowhere, STDERR_FILENO, listener});
  ::close(nowhere);
  return process;
}
