// Limits the number of children at a time. Places are given in the order of the requests.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "gateway/sources/Patience.h"

namespace gateway {

// Any number of threads may call it. Lists never take the last place, so that a text, which has less time,
// does not wait for lists only; a single place is shared.
class Places {
 public:
  enum class Kind { List, Text };

  // Holds a place until it is destroyed.
  class Place {
   public:
    Place(Places& places, Kind kind) : places_(&places), kind_(kind) {}
    Place(Place&& other) noexcept : places_(std::exchange(other.places_, nullptr)), kind_(other.kind_) {}
    Place& operator=(Place&&) = delete;
    ~Place() {
      if (places_) places_->Return(kind_);
    }

   private:
    Places* places_;
    Kind kind_;
  };

  Places(std::size_t count, std::chrono::milliseconds betweenLists)
      : count_(count), betweenLists_(betweenLists) {}

  // nullopt if patience ends first. Lists get their places at least betweenLists apart.
  std::optional<Place> Take(Kind kind, const Patience& patience);

 private:
  struct Ticket {
    Kind kind;
    Event granted;
    bool isGranted = false;
  };

  bool IsFreeFor(Kind kind) const;
  void Grant();
  void Return(Kind kind);
  Waited AwaitTurn(const std::shared_ptr<Ticket>& ticket, const Patience& patience);
  Waited AwaitListStart(const Patience& patience);

  const std::size_t count_;
  const std::chrono::milliseconds betweenLists_;
  std::mutex mutex_;
  std::list<std::shared_ptr<Ticket>> queue_;
  std::size_t taken_ = 0;
  std::size_t takenByLists_ = 0;
  std::chrono::steady_clock::time_point nextList_{};
};

}  // namespace gateway
