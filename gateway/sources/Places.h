// The few places for children. Those who wait for one get it in the order of their coming.
#pragma once

#include <chrono>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "gateway/sources/Patience.h"

namespace gateway {

// Any number of threads may ask. A list never takes the last place, so that a text, which has less time,
// never waits for lists alone; with one place only, lists share it.
class Places {
 public:
  enum class Kind { List, Text };

  // Held by who has one, given back when it ends.
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

  // nullopt if patience ended first. Lists start no closer to each other than betweenLists.
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
