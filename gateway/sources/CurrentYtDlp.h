// yt-dlp as it is by now: it may be installed or brought up to date while the gateway runs.
#pragma once

#include <filesystem>
#include <mutex>
#include <string>

#include "gateway/sources/yt_dlp.h"

namespace gateway {

// Any number of threads may call it.
class CurrentYtDlp {
 public:
  // What was found at first, and the program that the user named ("" for none).
  CurrentYtDlp(YtDlp found, std::string named);

  // Looks for it again where there was none, and asks its version again where its file has changed. That may
  // take a second, otherwise it costs a look at the file.
  YtDlp Get();

 private:
  std::filesystem::file_time_type FileTime() const;

  std::mutex mutex_;
  YtDlp found_;
  const std::string named_;
  std::filesystem::file_time_type fileTime_;
};

}  // namespace gateway
