// A child process with limited resources. It gets an argument vector, descriptors 0 to 2, a session and a
// folder of its own, and no blocked signals. Destroying the object kills the child and its process group, and
// waits for the child alone: the others of the group may take a moment to die.
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
  std::string output;    // from standard output
  std::string messages;  // from standard error
};

class Child {
 public:
  // Starts command[0], a path, in folder. Each file that it writes is limited to fileBytes; the limit takes
  // effect before the child gets its input. Requires: descriptors 0 to 2 of this process are open.
  Child(const std::vector<std::string>& command, const std::string& folder, std::uint64_t fileBytes);
  Child(Child&& other) noexcept;
  Child& operator=(Child&&) = delete;
  ~Child();

  // Whether it has ended by itself or was never started.
  bool HasEnded() const;
  // A descriptor that is readable once the child has ended; -1 if it was never started.
  int Process() const { return process_.Number(); }

  // Sends input to its standard input and waits for its end. A child that writes more than these limits, or
  // exceeds patience, is killed with its process group. Requires: not called before.
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
