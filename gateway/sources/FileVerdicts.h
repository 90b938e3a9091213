// Which files turned out to be no captions, so that a list need not read all files of a video each time.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/FolderIndex.h"

namespace gateway {

// Any number of threads may call it. Some thousand files are remembered.
class FileVerdicts {
 public:
  // Why the file is no captions, "" for one that is; nullopt if that is not known of the file in this state.
  std::optional<std::string> Find(const std::string& path, const FileState& state) const;

  // Remembers it, and writes a fault to the log unless that was done for the file in this state. Settled: the
  // state was settled before the file was read; else the verdict is not to be found, the log alone goes by
  // it.
  void Keep(const std::string& path, const FileState& state, bool settled, const std::string& fault);

 private:
  struct Verdict {
    FileState state;
    bool settled = false;
    std::string fault;
  };

  mutable std::mutex mutex_;
  std::map<std::string, Verdict> verdicts_;
};

}  // namespace gateway
