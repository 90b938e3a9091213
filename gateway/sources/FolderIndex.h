// The names of the caption files in one folder, by the codes of their videos.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gateway/sources/Descriptor.h"
#include "gateway/sources/OpenedFile.h"

namespace gateway {

// A large folder is not read for each question. What was read is kept while the folder's state stays the
// same, and only if that was settled before the reading: so a name that comes or goes later changes the
// state. A change counts by the system's own stamp, which no program can set back as it can the time of
// modification. Only a file system with a clock of its own that runs late could deceive this, and so nothing
// is kept for longer than a minute.
class FolderIndex {
 public:
  // A folder that is missing, now or later, reads as an empty one.
  FolderIndex(std::string path, std::chrono::milliseconds settling)
      : path_(std::move(path)), settling_(settling) {}

  const std::string& Path() const { return path_; }

  // The names of a video's files in byte order, and the folder, open to look into, -1 if it can't be opened.
  // Any number of threads may call it.
  struct Found {
    Descriptor folder;
    std::vector<std::string> fileNames;
  };
  Found Find(std::string_view code);

  // Visits the names that end as a caption file's do; not kept.
  using Visit = std::function<void(int folder, const std::string& fileName)>;
  void VisitAll(const Visit& visit) const;

 private:
  using Clock = std::chrono::steady_clock;

  std::vector<std::string> Kept(std::string_view code) const;
  void Read(int folder);

  const std::string path_;
  const std::chrono::milliseconds settling_;
  std::mutex mutex_;
  FileState state_;                                            // of the folder when it was read
  Clock::time_point forgottenAt_;                              // what was read is no longer good then
  std::string names_;                                          // each ended by NUL
  std::vector<std::pair<std::size_t, std::uint32_t>> byCode_;  // hash of the code, place in names_; sorted
};

}  // namespace gateway
