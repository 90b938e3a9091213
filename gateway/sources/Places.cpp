#include "gateway/sources/Places.h"

#include <algorithm>

namespace gateway {

using Clock = std::chrono::steady_clock;

bool Places::IsFreeFor(Kind kind) const {
  const std::size_t forLists = std::max<std::size_t>(count_ - 1, 1);
  return taken_ < count_ && (kind == Kind::Text || takenByLists_ < forLists);
}

// Requires: mutex_ is held.
void Places::Grant() {
  queue_.remove_if([this](const std::shared_ptr<Ticket>& ticket) {
    if (!IsFreeFor(ticket->kind)) return false;
    ++taken_;
    if (ticket->kind == Kind::List) ++takenByLists_;
    ticket->isGranted = true;
    ticket->granted.Set();
    return true;
  });
}

void Places::Return(Kind kind) {
  const std::lock_guard lock(mutex_);
  --taken_;
  if (kind == Kind::List) --takenByLists_;
  Grant();
}

Waited Places::AwaitTurn(const std::shared_ptr<Ticket>& ticket, const Patience& patience) {
  {
    const std::lock_guard lock(mutex_);
    queue_.push_back(ticket);
    Grant();
  }
  const Waited waited = WaitFor(ticket->granted.Number(), patience);
  const std::lock_guard lock(mutex_);
  if (ticket->isGranted) return Waited::Ready;
  queue_.remove(ticket);
  return waited;
}

Waited Places::AwaitListStart(const Patience& patience) {
  for (;;) {
    Patience untilStart = patience;
    {
      const std::lock_guard lock(mutex_);
      const auto now = Clock::now();
      if (now >= nextList_) {
        nextList_ = now + betweenLists_;
        return Waited::Ready;
      }
      untilStart.deadline = std::min(nextList_, patience.deadline);
    }
    if (WaitFor(-1, untilStart) == Waited::GivenUp) return Waited::GivenUp;
    if (MillisecondsUntil(patience.deadline) == 0) return Waited::TooLate;
  }
}

std::optional<Places::Place> Places::Take(Kind kind, const Patience& patience) {
  if (AwaitTurn(std::make_shared<Ticket>(Ticket{kind, {}}), patience) != Waited::Ready) return std::nullopt;
  Place place(*this, kind);
  if (kind == Kind::List && AwaitListStart(patience) != Waited::Ready) return std::nullopt;
  return place;
}

}  // namespace gateway
