// An index of the caption files in one folder by video code.
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

// Avoids reading a large folder for each request. The names are kept while the folder's state stays the same,
// and only if the state was settled before the folder was read, so that any later change of the names changes
// the state. The state includes the system's change time, which programs can't set, unlike the modification
// time. A file system whose own clock runs late could still hide a change, so names are kept for at most a
// minute.
class FolderIndex {
 public:
  // A missing folder counts as empty.
  FolderIndex(std::string path, std::chrono::milliseconds settling)
      : path_(std::move(path)), settling_(settling) {}

  const std::string& Path() const { return path_; }

  // The names of a video's files in byte order, and the open folder, -1 if it can't be opened. Any number of
  // threads may call it.
  struct Found {
    Descriptor folder;
    std::vector<std::string> fileNames;
  };
  Found Find(std::string_view code);

  // Visits all names with the ending of a caption file, and keeps none.
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
  Clock::time_point expires_;                                  // of names_
  std::string names_;                                          // each ends with NUL
  std::vector<std::pair<std::size_t, std::uint32_t>> byCode_;  // hash of the code, offset in names_; sorted
};

}  // namespace gateway
