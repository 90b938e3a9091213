// The yt-dlp to use now: it may be installed or updated while the gateway runs.
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
  // `found` is the yt-dlp found at the start; `named` is the program that the user named, "" for none. If
  // a search for `named` gives another program than `found`, Get keeps to `found`.
  CurrentYtDlp(YtDlp found, std::string named);

  // Searches again, and if the program is another file or has changed, asks for its version. That may take a
  // second, at most ten, and no longer than patience; otherwise only a few files are looked up.
  YtDlp Get(const Patience& patience);
  // The result of the last search.
  YtDlp Last() const;

 private:
  mutable std::mutex mutex_;
  YtDlp found_;
  std::string named_;  // constant after construction
  std::filesystem::file_time_type fileTime_;
};

}  // namespace gateway
