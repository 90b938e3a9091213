// The documents that were made last, so that a list and the text that is taken from it convert a file once.
#pragma once

#include <list>
#include <mutex>
#include <optional>
#include <string>

#include "gateway/sources/OpenedFile.h"

namespace gateway {

// Any number of threads may call it. It holds at most a megabyte; larger documents are not kept.
class RecentDocuments {
 public:
  // nullopt if none is kept of the file in this state.
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
  std::list<Kept> kept_;  // the last one first
  std::size_t bytes_ = 0;
};

}  // namespace gateway
