#include "gateway/sources/SiteMemory.h"

#include <algorithm>

namespace gateway {

std::optional<SiteAnswer> SiteMemory::Find(const std::string& code) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(code);
  if (found == known_.end() || found->second.expires <= Clock::now()) return std::nullopt;
  return found->second.answer;
}

SiteMemory::Clock::time_point SiteMemory::ExpiryOf(const SiteAnswer& answer) const {
  if (answer.list && !answer.list->tracks.empty()) return answer.list->expires;
  if (answer.cause.effect == Effect::NoCaptions) return Clock::now() + limits_.keepNoCaptions;
  if (answer.cause.effect == Effect::Verdict || answer.cause.effect == Effect::Unavailable)
    return Clock::now() + limits_.keepVerdict;
  return {};
}

void SiteMemory::Keep(const std::string& code, const SiteAnswer& answer) {
  const auto expires = ExpiryOf(answer);
  const auto now = Clock::now();
  if (expires <= now) return;
  const std::lock_guard lock(mutex_);
  std::erase_if(known_, [now](const auto& entry) { return entry.second.expires <= now; });
  const auto byExpiry = [](const auto& a, const auto& b) { return a.second.expires < b.second.expires; };
  if (known_.size() >= limits_.lists) known_.erase(std::min_element(known_.begin(), known_.end(), byExpiry));
  known_.insert_or_assign(code, Known{answer, expires});
}

void SiteMemory::Forget(const std::string& code, const SiteList& list) {
  const std::lock_guard lock(mutex_);
  const auto found = known_.find(code);
  if (found != known_.end() && found->second.answer.list.get() == &list) known_.erase(found);
}

}  // namespace gateway
