// Processor time, which does not depend on what else the machine runs.
#pragma once

#include <ctime>

// Processor time of this thread, or of the whole process, in seconds.
inline double ProcessorSeconds(clockid_t clock = CLOCK_THREAD_CPUTIME_ID) {
  timespec used{};
  ::clock_gettime(clock, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}
