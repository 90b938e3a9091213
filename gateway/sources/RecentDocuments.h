// Keeps recent documents, so that a file is converted once for a list and for the text chosen from it.
#pragma once

#include <list>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/OpenedFile.h"

namespace gateway {

// Any number of threads may call it. It keeps at most 1 MiB in all; larger documents are not kept.
class RecentDocuments {
 public:
  // nullopt if no document of the file in this state is kept.
  std::optional<std::string> Find(const std::string& path, const FileState& state);
  // Requires: the state was settled before the file was read.
  void Keep(const std::string& path, const FileState& state, const std::string& document);

 private:
  struct Kept {
    std::string path;
    FileState state;
    std::string document;
  };

  std::mutex mutex_;
  std::list<Kept> kept_;  // the most recently used first
  std::size_t bytes_ = 0;
};

}  // namespace gateway
