#include "gateway/sources/BackgroundLists.h"

#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "gateway/sources/Descriptor.h"
#include "gateway/sources/Patience.h"
#include "gateway/sources/log.h"

namespace gateway {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostRequests = 16;

}  // namespace

// The source sees one end of a pair of sockets as its client's connection; shutting down the other ends the
// request.
struct BackgroundLists::Request {
  explicit Request(std::string_view video) : code(video) {
    std::array<int, 2> ends{-1, -1};
    const int failed = ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
    seen = Descriptor(ends[0]);
    held = Descriptor(ends[1]);
    if (failed != 0) throw std::system_error(errno, std::system_category(), "no descriptor left");
  }
  ~Request() {
    if (thread.joinable()) thread.join();
  }

  void End() {
    isEnded = true;
    ::shutdown(held.Number(), SHUT_RDWR);
  }

  const std::string code;
  Event done;  // the list has arrived
  Descriptor seen, held;
  TrackList list;
  std::atomic<bool> isDone = false;
  int requesters = 0;
  bool outlivesRequesters = false;  // a requester ran out of patience: continues without requesters
  bool isEnded = false;             // all requesters have gone: must not be joined
  std::thread thread;
};

BackgroundLists::~BackgroundLists() {
  for (const auto& request : requests_) request->End();
}

std::optional<TrackList> BackgroundLists::Ask(std::string_view code, const Requester& requester,
                                              std::chrono::milliseconds patience) {
  const auto deadline = Clock::now() + patience;
  const auto request = Join(code);
  if (!request) return std::nullopt;
  const Waited waited = WaitFor(request->done.Number(), Patience::Of(requester, deadline));
  std::optional<TrackList> list;
  if (waited == Waited::Ready) list = request->list;
  const std::lock_guard lock(mutex_);
  request->outlivesRequesters |= waited == Waited::TooLate;
  if (--request->requesters == 0 && !request->outlivesRequesters) request->End();
  return list;
}

TrackList BackgroundLists::ListOf(const Request& request) try {
  return source_.Tracks(request.code, {Clock::now(), request.seen.Number()});
} catch (const std::exception& error) {  // out of memory
  Log(error.what());
  return {{}, "The gateway ran out of memory."};
}

std::shared_ptr<BackgroundLists::Request> BackgroundLists::Join(std::string_view code) try {
  const std::lock_guard lock(mutex_);
  requests_.remove_if([](const auto& request) { return request->isDone.load(); });
  auto found = std::find_if(requests_.begin(), requests_.end(),
                            [&](const auto& request) { return request->code == code && !request->isEnded; });
  if (found == requests_.end()) {
    if (requests_.size() >= kMostRequests) return nullptr;
    auto request = std::make_shared<Request>(code);
    request->thread = std::thread([this, &request = *request] {
      request.list = ListOf(request);
      request.isDone = true;
      request.done.Set();
    });
    found = requests_.insert(requests_.end(), std::move(request));
  }
  ++(*found)->requesters;
  return *found;
} catch (const std::system_error& error) {
  Log(std::string("can't request a list: ") + error.what());
  return nullptr;
}

}  // namespace gateway
