#include "gateway/sources/CurrentYtDlp.h"

#include <algorithm>
#include <utility>

namespace gateway {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLongestVersionQuery{10};

std::filesystem::file_time_type FileTime(const std::string& program) {
  std::error_code ignored;
  return std::filesystem::last_write_time(program, ignored);
}

}  // namespace

CurrentYtDlp::CurrentYtDlp(YtDlp found, std::string named)
    : found_(std::move(found)), named_(std::move(named)), fileTime_(FileTime(found_.program)) {
  if (!found_.program.empty() && found_.program != PathOfYtDlp(named_)) named_ = found_.program;
}

// Runs yt-dlp without holding the lock, so that no other thread waits for a program that may hang.
YtDlp CurrentYtDlp::Get(const Patience& patience) {
  const std::string program = PathOfYtDlp(named_);
  const auto fileTime = FileTime(program);
  {
    const std::lock_guard lock(mutex_);
    if (program == found_.program && fileTime == fileTime_) return found_;
  }
  const auto now = Clock::now();
  const auto left =
      std::clamp<Clock::duration>(patience.deadline - now, Clock::duration::zero(), kLongestVersionQuery);
  YtDlp found = FindYtDlp(named_, std::chrono::ceil<std::chrono::milliseconds>(left), patience.stop);
  if (WaitFor(-1, {now, patience.stop, patience.stopEvents}) == Waited::GivenUp) return found;
  const std::lock_guard lock(mutex_);
  fileTime_ = fileTime;
  return found_ = std::move(found);
}

YtDlp CurrentYtDlp::Last() const {
  const std::lock_guard lock(mutex_);
  return found_;
}

}  // namespace gateway
