// Keeps one yt-dlp that was started ahead and waits for its document, which saves a text most of its time.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

#include "gateway/sources/Child.h"
#include "gateway/sources/Patience.h"
#include "gateway/sources/ScratchFolder.h"

namespace gateway {

// A child and the folder that it runs in.
struct ReadyChild {
  ScratchFolder folder;
  Child child;
};

// Any number of threads may call it. A thread, started with the first child, removes a child that was not
// taken in time or that ended by itself.
class WarmChild {
 public:
  using Start = std::function<std::unique_ptr<ReadyChild>()>;

  WarmChild(Start start, std::chrono::milliseconds lifetime)
      : start_(std::move(start)), lifetime_(lifetime) {}
  ~WarmChild();

  // Starts a child unless one is waiting.
  void Prepare();
  // The waiting child; nullptr if there is none.
  std::unique_ptr<ReadyChild> Take();

 private:
  void Keep();

  const Start start_;
  const std::chrono::milliseconds lifetime_;
  std::mutex mutex_;
  std::unique_ptr<ReadyChild> waiting_;
  std::chrono::steady_clock::time_point expires_{};
  bool ended_ = false;
  Event changed_;
  std::thread keeper_;
};

}  // namespace gateway
