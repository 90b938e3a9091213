// A descriptor that a host waits for.
#pragma once

#include <climits>

struct Awaited {
  int descriptor = -1;  // -1 for none: only time and events of the host end the wait
  bool reading = false;
  bool writing = false;
};

// A time in milliseconds that no wait reaches.
inline constexpr int kForever = INT_MAX;

// Sleeps in the kernel until the descriptor is ready or `milliseconds` have passed; below 1 it only looks.
// False after the whole time; a failure and a signal count as ready.
bool IsReadyWithin(int milliseconds, const Awaited& awaited);
