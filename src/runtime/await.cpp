#include "runtime/await.h"

#include <poll.h>

#include <algorithm>

bool IsReadyWithin(int milliseconds, const Awaited& awaited) {
  const int events = (awaited.reading ? POLLIN : 0) | (awaited.writing ? POLLOUT : 0);
  pollfd waiting{awaited.descriptor, static_cast<short>(events), 0};
  return ::poll(&waiting, 1, std::max(milliseconds, 0)) != 0;
}
