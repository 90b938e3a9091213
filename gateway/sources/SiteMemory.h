// What is known of videos for a while: their lists, and that they have none. Never on disk.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/Errands.h"
#include "gateway/sources/SiteSettings.h"

namespace gateway {

// Any number of threads may call it.
class SiteMemory {
 public:
  explicit SiteMemory(const SiteLimits& limits) : limits_(limits) {}

  std::optional<SiteAnswer> Find(const std::string& code);
  // Only what holds for a while is kept: lists with tracks until their links expire, "no captions", the
  // site's verdicts. The oldest makes room.
  void Keep(const std::string& code, const SiteAnswer& answer);
  // Unless a newer list took its place.
  void Forget(const std::string& code, const SiteList& list);

 private:
  using Clock = std::chrono::system_clock;  // links expire by it, even while the machine sleeps

  struct Known {
    SiteAnswer answer;
    Clock::time_point expires;
  };

  Clock::time_point ExpiryOf(const SiteAnswer& answer) const;

  const SiteLimits limits_;
  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

}  // namespace gateway
