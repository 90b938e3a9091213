#include "gateway/sources/Child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

extern char** environ;

namespace gateway {
namespace {

struct Ends {
  Descriptor ours = Descriptor();
  Descriptor theirs = Descriptor();
};

// A socket, since a write to it need not raise SIGPIPE.
Ends InputEnds() {
  std::array<int, 2> both{-1, -1};
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, both.data()) != 0) return Ends();
  return {Descriptor(both[0]), Descriptor(both[1])};
}

Ends OutputEnds() {
  std::array<int, 2> both{-1, -1};
  if (::pipe2(both.data(), O_CLOEXEC) != 0) return Ends();
  ::fcntl(both[0], F_SETFL, O_NONBLOCK);  // only our end: the child expects writes to block
  return {Descriptor(both[0]), Descriptor(both[1])};
}

// The setup of a child before its program runs.
class Preparation {
 public:
  Preparation(const std::string& folder, const std::array<int, 3>& descriptors) {
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    for (int i = 0; i < 3; ++i)
      posix_spawn_file_actions_adddup2(&actions, descriptors[static_cast<std::size_t>(i)], i);
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
  }
  ~Preparation() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  Preparation(const Preparation&) = delete;
  Preparation& operator=(const Preparation&) = delete;

  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
};

std::vector<char*> Pointers(std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Uses the system call directly: on some systems the header of its wrapper does not compile as C++.
Descriptor OpenProcess(pid_t pid) { return Descriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0))); }

// Reads all available bytes, and closes `from` at its end. False once there are more than `most`.
bool Drain(Descriptor& from, std::string& into, std::size_t most) {
  std::array<char, 65536> bytes;
  while (from) {
    const ssize_t count = ::read(from.Number(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return true;
    if (count <= 0) {
      from = Descriptor();
      return true;
    }
    into.append(bytes.data(), static_cast<std::size_t>(count));
    if (into.size() > most) return false;
  }
  return true;
}

}  // namespace

Child::Child(const std::vector<std::string>& command, const std::string& folder, std::uint64_t fileBytes) {
  Ends in = InputEnds(), out = OutputEnds(), messages = OutputEnds();
  if (!in.ours || !out.ours || !messages.ours) {
    error_ = EMFILE;
    return;
  }
  const Preparation preparation(folder, {in.theirs.Number(), out.theirs.Number(), messages.theirs.Number()});
  std::vector<std::string> arguments = command;
  error_ = ::posix_spawn(&pid_, arguments[0].c_str(), &preparation.actions, &preparation.attributes,
                         Pointers(arguments).data(), environ);
  if (error_ != 0) {
    pid_ = -1;
    return;
  }
  const rlimit limit{fileBytes, fileBytes};
  ::prlimit(pid_, RLIMIT_FSIZE, &limit, nullptr);
  process_ = OpenProcess(pid_);
  input_ = std::move(in.ours);
  output_ = std::move(out.ours);
  messages_ = std::move(messages.ours);
  if (process_) return;
  error_ = errno;
  KillAndReap();
}

Child::Child(Child&& other) noexcept
    : pid_(std::exchange(other.pid_, -1)),
      error_(other.error_),
      process_(std::move(other.process_)),
      input_(std::move(other.input_)),
      output_(std::move(other.output_)),
      messages_(std::move(other.messages_)) {}

Child::~Child() { KillAndReap(); }

bool Child::HasEnded() const {
  pollfd waiting{process_.Number(), POLLIN, 0};
  return pid_ < 0 || ::poll(&waiting, 1, 0) > 0;
}

// Killed before it is reaped: until then its process id can't be reused.
int Child::KillAndReap() {
  if (pid_ < 0) return 0;
  ::kill(-pid_, SIGKILL);
  int status = 0;
  while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
  }
  pid_ = -1;
  return status;
}

// It is not a failure if the child does not read its input: its exit status decides.
void Child::Feed(std::string_view& input) {
  while (input_ && !input.empty()) {
    const ssize_t count = ::send(input_.Number(), input.data(), input.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) return;
    if (count < 0) break;
    input.remove_prefix(static_cast<std::size_t>(count));
  }
  input_ = Descriptor();
}

ChildEnd::How Child::Converse(std::string_view input, std::size_t outputBytes, std::size_t messageBytes,
                              const Patience& patience, ChildEnd& end) {
  for (;;) {
    Feed(input);
    std::array<pollfd, 5> waiting{{{process_.Number(), POLLIN, 0},
                                   {output_.Number(), POLLIN, 0},
                                   {messages_.Number(), POLLIN, 0},
                                   {input_.Number(), POLLOUT, 0},
                                   {patience.stop, patience.stopEvents, 0}}};
    const int left = MillisecondsUntil(patience.deadline);
    if (::poll(waiting.data(), waiting.size(), left) < 0) continue;
    if (waiting[4].revents != 0) return ChildEnd::How::GivenUp;
    if (!Drain(output_, end.output, outputBytes) || !Drain(messages_, end.messages, messageBytes))
      return ChildEnd::How::TooMuch;
    if (waiting[0].revents != 0) return ChildEnd::How::Exited;
    if (MillisecondsUntil(patience.deadline) == 0) return ChildEnd::How::TooLate;
  }
}

ChildEnd Child::Finish(std::string_view input, std::size_t outputBytes, std::size_t messageBytes,
                       const Patience& patience) {
  ChildEnd end;
  end.code = error_;
  if (pid_ < 0) return end;
  end.how = Converse(input, outputBytes, messageBytes, patience, end);
  const int status = KillAndReap();
  if (end.how != ChildEnd::How::Exited) return end;
  if (WIFSIGNALED(status)) end.how = ChildEnd::How::Crashed;
  end.code = WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
  return end;
}

}  // namespace gateway
