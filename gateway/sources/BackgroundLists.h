// Lists requested in the background, so that a client need not wait until they arrive.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

// There is at most one request for each video at a time; all who ask for the video share its answer.
class BackgroundLists {
 public:
  // Requires: `source` outlives this.
  explicit BackgroundLists(CaptionSource& source) : source_(source) {}
  // Ends all requests, as if their clients had gone. Requires: no thread is in Ask.
  ~BackgroundLists();

  // The source's list, or nullopt once `patience` is over or the requester's client has gone. If patience is
  // over, the request continues for the next requester; if all its clients have gone, it ends. nullopt at
  // once if there are too many requests.
  std::optional<TrackList> Ask(std::string_view code, const Requester& requester,
                               std::chrono::milliseconds patience);

 private:
  struct Request;

  TrackList ListOf(const Request& request);
  std::shared_ptr<Request> Join(std::string_view code);

  CaptionSource& source_;
  std::mutex mutex_;
  std::list<std::shared_ptr<Request>> requests_;
};

}  // namespace gateway
