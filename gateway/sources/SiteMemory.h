// Remembers answers of the site for a while: lists, and that a video has none. Only in memory.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/SharedJobs.h"
#include "gateway/sources/SiteSettings.h"

namespace gateway {

// Any number of threads may call it.
class SiteMemory {
 public:
  explicit SiteMemory(const SiteLimits& limits) : limits_(limits) {}

  std::optional<SiteAnswer> Find(const std::string& code);
  // Keeps lists with tracks until their links expire, and for some time "no captions" and the site's verdicts
  // on a video; nothing else. If there are too many, the one that expires first is dropped.
  void Keep(const std::string& code, const SiteAnswer& answer);
  // Does nothing if a newer list has replaced this one.
  void Forget(const std::string& code, const SiteList& list);

 private:
  using Clock = std::chrono::system_clock;  // links expire by it, also while the machine sleeps

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
