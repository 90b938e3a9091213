#include "gateway/sources/Patience.h"

#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <system_error>

namespace gateway {

using Clock = std::chrono::steady_clock;

Event::Event() : counter_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!counter_) throw std::system_error(errno, std::system_category(), "can't make an event counter");
}

void Event::Set() { ::eventfd_write(counter_.Number(), 1); }

void Event::Clear() {
  eventfd_t ignored = 0;
  ::eventfd_read(counter_.Number(), &ignored);
}

Patience Patience::Of(const Requester& requester, Clock::time_point deadline) {
  return {deadline, requester.connection, POLLRDHUP};
}

int MillisecondsUntil(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<int>(std::clamp<std::int64_t>(left, 0, std::numeric_limits<int>::max()));
}

Waited WaitFor(int descriptor, const Patience& patience) {
  for (;;) {
    std::array<pollfd, 2> waiting{{{descriptor, POLLIN, 0}, {patience.stop, patience.stopEvents, 0}}};
    const int left = MillisecondsUntil(patience.deadline);
    const int count = ::poll(waiting.data(), waiting.size(), left);
    if (count > 0 && waiting[0].revents != 0) return Waited::Ready;
    if (count > 0) return Waited::GivenUp;
    if (count == 0 && left == 0) return Waited::TooLate;
  }
}

}  // namespace gateway
