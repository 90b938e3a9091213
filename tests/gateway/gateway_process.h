// The gateway as a process of its own.
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>

#include <string>
#include <utility>
#include <vector>

#include "gateway_fixture.h"
#include "support/processes.h"

namespace gateway_test {

inline std::string Address(const std::string& startLine) { return startLine.substr(0, startLine.find("/ ")); }

class Process {
 public:
  // Runs `script` in a shell, where "$@" is the gateway with `arguments`. `handed` becomes descriptor 3,
  // `input` standard input.
  Process(const std::string& script, std::vector<std::string> arguments, int handed = -1,
          const Descriptor& input = Descriptor()) {
    int out[2];
    EXPECT_EQ(::pipe2(out, O_CLOEXEC), 0);
    output_ = Descriptor(out[0]);
    const Descriptor writing(out[1]);
    std::vector<std::string> words = {"sh", "-c", script, "sh", RAVELYN_GATEWAY_PATH};
    words.insert(words.end(), arguments.begin(), arguments.end());
    pid_ = Spawn(std::move(words), {input ? input.Number() : -1, writing.Number(), writing.Number(), handed});
  }
  explicit Process(std::vector<std::string> arguments, const Descriptor& input = Descriptor())
      : Process("exec \"$@\"", std::move(arguments), -1, input) {}
  ~Process() {
    if (pid_ > 0) End(SIGTERM);  // SIGKILL would leave the folder of a waiting child
  }

  std::string ReadLine() {
    std::string line;
    for (char c = 0; ::read(output_.Number(), &c, 1) == 1 && c != '\n';) line += c;
    return line;
  }
  void Send(int signal) const { ::kill(pid_, signal); }
  // The exit status, or -1 if a signal ended it. `signal` 0 only waits for its end.
  int End(int signal = 0) {
    int status = 0;
    if (signal != 0) ::kill(pid_, signal);
    ::waitpid(std::exchange(pid_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t pid_ = -1;
  Descriptor output_;
};

}  // namespace gateway_test
