#include "gateway/sources/RecentDocuments.h"

#include <algorithm>

namespace gateway {
namespace {

constexpr std::size_t kMost = 1u << 20;

}  // namespace

std::optional<std::string> RecentDocuments::Find(const std::string& path, const FileState& state) {
  const std::lock_guard lock(mutex_);
  const auto found = std::find_if(kept_.begin(), kept_.end(),
                                  [&](const Kept& each) { return each.path == path && each.state == state; });
  if (found == kept_.end()) return std::nullopt;
  kept_.splice(kept_.begin(), kept_, found);
  return found->document;
}

void RecentDocuments::Keep(const std::string& path, const FileState& state, const std::string& document) {
  if (document.size() > kMost) return;
  const std::lock_guard lock(mutex_);
  kept_.push_front({path, state, document});
  bytes_ += document.size();
  while (bytes_ > kMost) {
    bytes_ -= kept_.back().document.size();
    kept_.pop_back();
  }
}

}  // namespace gateway
