#include "gateway/sources/CurrentYtDlp.h"

#include <utility>

namespace gateway {

CurrentYtDlp::CurrentYtDlp(YtDlp found, std::string named)
    : found_(std::move(found)), named_(std::move(named)), fileTime_(FileTime()) {
  if (!found_.program.empty() && found_.program != PathOfYtDlp(named_)) named_ = found_.program;
}

std::filesystem::file_time_type CurrentYtDlp::FileTime() const {
  std::error_code ignored;
  return std::filesystem::last_write_time(found_.program, ignored);
}

YtDlp CurrentYtDlp::Get() {
  const std::lock_guard lock(mutex_);
  if (PathOfYtDlp(named_) != found_.program || FileTime() != fileTime_) {
    found_ = FindYtDlp(named_);
    fileTime_ = FileTime();
  }
  return found_;
}

}  // namespace gateway
