#include "gateway/sources/FileVerdicts.h"

#include "gateway/sources/log.h"

namespace gateway {
namespace {

constexpr std::size_t kMost = 4096;

}  // namespace

std::optional<std::string> FileVerdicts::Find(const std::string& path, const FileState& state) const {
  const std::lock_guard lock(mutex_);
  const auto found = verdicts_.find(path);
  if (found == verdicts_.end() || !found->second.settled || found->second.state != state) return std::nullopt;
  return found->second.fault;
}

void FileVerdicts::Keep(const std::string& path, const FileState& state, bool settled,
                        const std::string& fault) {
  const std::lock_guard lock(mutex_);
  if (verdicts_.size() >= kMost) verdicts_.clear();
  Verdict& known = verdicts_[path];
  if (!fault.empty() && (known.state != state || known.fault != fault))
    Log(path + " is not served: " + fault);
  known = {state, settled, fault};
}

}  // namespace gateway
