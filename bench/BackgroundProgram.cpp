#include "BackgroundProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

extern char** environ;

BackgroundProgram::BackgroundProgram(std::vector<std::string> words) {
  std::array<int, 2> input{}, output{};
  if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
    throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input[0], 0);
  posix_spawn_file_actions_adddup2(&actions, output[1], 1);
  std::vector<char*> argv;
  for (auto& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const int error = ::posix_spawnp(&process_, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  ::close(input[0]);
  ::close(output[1]);
  input_ = input[1];
  output_ = output[0];
  if (error != 0) throw std::runtime_error(words[0] + " can't be started");
  for (char c = 0; ::read(output_, &c, 1) == 1 && c != '\n';) firstLine_ += c;
  if (firstLine_.empty()) throw std::runtime_error(words[0] + " ended at once");
}

BackgroundProgram::~BackgroundProgram() {
  ::close(input_);
  if (process_ > 0) ::waitpid(process_, nullptr, 0);
  ::close(output_);
}
