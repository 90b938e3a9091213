// The cost of this process so far, all threads together.
#pragma once

#include <sys/resource.h>

struct Usage {
  double milliseconds = 0;  // of processor time
  double wakeUps = 0;       // ends of a sleep in the kernel

  static Usage Now() {
    rusage used{};
    ::getrusage(RUSAGE_SELF, &used);
    const auto inMs = [](const timeval& t) {
      return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_usec) / 1e3;
    };
    return {inMs(used.ru_utime) + inMs(used.ru_stime), static_cast<double>(used.ru_nvcsw)};
  }
  Usage operator-(const Usage& other) const {
    return {milliseconds - other.milliseconds, wakeUps - other.wakeUps};
  }
};
