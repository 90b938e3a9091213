// yt-dlp as it is by now: it may be installed or brought up to date while the gateway runs.
#pragma once

#include <filesystem>
#include <mutex>
#include <string>

#include "gateway/sources/Patience.h"
#include "gateway/sources/yt_dlp.h"

namespace gateway {

// Any number of threads may call it.
class CurrentYtDlp {
 public:
  // What was found at first, and the program that the user named ("" for none). One that was not found by
  // that name is looked for where it was.
  CurrentYtDlp(YtDlp found, std::string named);

  // Looks where it is by now, and asks its version where that is another file or the file has changed. That
  // may take a second, at most ten, and no longer than patience; otherwise it costs a look at some files.
  YtDlp Get(const Patience& patience);
  // What it was at the last look.
  YtDlp Last() const;

 private:
  mutable std::mutex mutex_;
  YtDlp found_;
  std::string named_;  // never changes
  std::filesystem::file_time_type fileTime_;
};

}  // namespace gateway
