// Waiting for a descriptor, and what ends the waiting early.
#pragma once

#include <poll.h>

#include <chrono>

#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/Descriptor.h"

namespace gateway {

// Something that happened. Number() can be read from Set() to Clear().
class Event {
 public:
  Event();  // throws std::system_error where the process has no descriptor left
  void Set();
  void Clear();
  int Number() const { return counter_.Number(); }

 private:
  Descriptor counter_;
};

// Until when somebody waits, and the descriptor that says that nobody does any more.
struct Patience {
  std::chrono::steady_clock::time_point deadline;
  int stop = -1;  // its owner's; -1 for none
  short stopEvents = POLLIN;

  // Of one who asks: ends when the client closes its connection, or its half of it.
  static Patience Of(const Asker& asker, std::chrono::steady_clock::time_point deadline);
};

enum class Waited { Ready, TooLate, GivenUp };

// Ready once descriptor can be read; -1 for a wait that only its patience ends.
Waited WaitFor(int descriptor, const Patience& patience);

// For poll(): in milliseconds, rounded up, 0 for what is past.
int MillisecondsUntil(std::chrono::steady_clock::time_point deadline);

}  // namespace gateway
