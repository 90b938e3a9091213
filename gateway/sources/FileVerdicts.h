// Remembers which files contain captions, so that a list need not read all files of a video each time.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/FolderIndex.h"

namespace gateway {

// Any number of threads may call it. A few thousand files are remembered.
class FileVerdicts {
 public:
  // Why the file contains no captions, "" if it does; nullopt if this is not known for the file's state.
  std::optional<std::string> Find(const std::string& path, const FileState& state) const;

  // Remembers a verdict, and logs a fault unless it was logged for this state of the file. `settled`: the
  // state was settled before the file was read. If not, Find ignores the verdict, and it only keeps the log
  // from repeating the fault.
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
