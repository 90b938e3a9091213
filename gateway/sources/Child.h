// A child process, and all that it may take. It gets an argument vector, descriptors 0 to 2, a session and a
// folder of its own, and no blocked signal; it and its process group are gone when its owner is.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/sources/Descriptor.h"
#include "gateway/sources/Patience.h"

namespace gateway {

struct ChildEnd {
  enum class How { Exited, Crashed, TooLate, GivenUp, TooMuch, NotStarted };

  How how = How::NotStarted;
  int code = 0;          // Exited: its status. Crashed: the signal. NotStarted: errno
  std::string output;    // what it wrote to standard output until then
  std::string messages;  // and to standard error
};

class Child {
 public:
  // Starts command[0], a path, in folder. fileBytes bounds each file that it writes; the bound holds before
  // it gets its input. Requires: descriptors 0 to 2 of this process are open.
  Child(const std::vector<std::string>& command, const std::string& folder, std::uint64_t fileBytes);
  Child(Child&& other) noexcept;
  Child& operator=(Child&&) = delete;
  ~Child();

  // Whether there is nothing to wait for: it was never started, or has ended by itself.
  bool HasEnded() const;
  // Can be read once it has ended; -1 if it was never started.
  int Process() const { return process_.Number(); }

  // Gives it the whole of its standard input and waits for its end. One that says more than the bounds, in
  // bytes, or outlasts the patience is killed with its whole group. Only once.
  ChildEnd Finish(std::string_view input, std::size_t outputBytes, std::size_t messageBytes,
                  const Patience& patience);

 private:
  ChildEnd::How Converse(std::string_view input, std::size_t outputBytes, std::size_t messageBytes,
                         const Patience& patience, ChildEnd& end);
  void Feed(std::string_view& input);
  int KillAndReap();

  pid_t pid_ = -1;
  int error_ = 0;
  Descriptor process_;
  Descriptor input_;
  Descriptor output_;
  Descriptor messages_;
};

}  // namespace gateway
