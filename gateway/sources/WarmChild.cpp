#include "gateway/sources/WarmChild.h"

namespace gateway {

using Clock = std::chrono::steady_clock;

WarmChild::~WarmChild() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    changed_.Set();
  }
  if (keeper_.joinable()) keeper_.join();
}

void WarmChild::Prepare() {
  const std::lock_guard lock(mutex_);
  if (waiting_) return;
  waiting_ = start_();
  expires_ = Clock::now() + lifetime_;
  if (!keeper_.joinable()) keeper_ = std::thread([this] { Keep(); });
  changed_.Set();
}

std::unique_ptr<ReadyChild> WarmChild::Take() {
  const std::lock_guard lock(mutex_);
  if (waiting_ && waiting_->child.HasEnded()) waiting_.reset();
  changed_.Set();
  return std::move(waiting_);
}

void WarmChild::Keep() {
  for (std::unique_lock lock(mutex_); !ended_; lock.lock()) {
    changed_.Clear();
    if (waiting_ && (waiting_->child.HasEnded() || Clock::now() >= expires_)) waiting_.reset();
    const int process = waiting_ ? waiting_->child.Process() : -1;
    const auto until = waiting_ ? expires_ : Clock::time_point::max();
    lock.unlock();
    // If the child is taken and its descriptor closed meanwhile, changed_ ends the wait.
    WaitFor(process, {until, changed_.Number(), POLLIN});
  }
}

}  // namespace gateway
