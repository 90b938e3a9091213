// What a wait looks for: a descriptor that is ready. Hosts turn it into their own way of waiting.
#pragma once

#include <climits>

struct Awaited {
  int descriptor = -1;  // -1 for none: only time and the host's events end the wait
  bool reading = false;
  bool writing = false;
};

// Milliseconds that no wait reaches.
inline constexpr int kForever = INT_MAX;

// Sleeps in the kernel until the descriptor is ready or so many milliseconds are over; below 1 it only
// looks. False when the time is over; a failure, and a signal, count as ready.
bool IsReadyWithin(int milliseconds, const Awaited& awaited);
