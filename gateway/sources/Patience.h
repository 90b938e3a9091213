// Waiting for a descriptor, and what ends the waiting early.
#pragma once

#include <poll.h>

#include <chrono>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/Descriptor.h"

namespace gateway {

// The descriptor Number() is readable from Set() to Clear().
class Event {
 public:
  Event();  // throws std::system_error if the process has no descriptor left
  void Set();
  void Clear();
  int Number() const { return counter_.Number(); }

 private:
  Descriptor counter_;
};

// How long to wait: until the deadline, or until one of stopEvents occurs on the descriptor `stop`.
struct Patience {
  std::chrono::steady_clock::time_point deadline;
  int stop = -1;  // stays its owner's; -1 for none
  short stopEvents = POLLIN;

  // Also ends when the client closes its connection, or its half of it.
  static Patience Of(const Requester& requester, std::chrono::steady_clock::time_point deadline);
};

enum class Waited { Ready, TooLate, GivenUp };

// Ready once descriptor is readable; -1 waits until patience ends.
Waited WaitFor(int descriptor, const Patience& patience);

// For poll(): rounded up, 0 if the deadline is past.
int MillisecondsUntil(std::chrono::steady_clock::time_point deadline);

}  // namespace gateway
