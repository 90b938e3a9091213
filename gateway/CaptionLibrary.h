#pragma once
// The folders that hold the caption files. Nothing is kept from one question to the next: every call reads
// the folders anew. No text from a request becomes part of a path; it is only compared with names found.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/Descriptor.h"

namespace gateway {

/// The largest caption file that is served, in bytes. A larger one counts as absent.
inline constexpr uint64_t kLargestCaptionFile = 64u << 20;

/// A caption file that stands open. Its size is the one at opening.
class CaptionFile {
 public:
  CaptionFile(Descriptor file, uint64_t size) : file_(std::move(file)), size_(size) {}

  uint64_t Size() const { return size_; }

  /// The count of bytes put into `buffer`, from `offset` on: 0 at the end, -1 on a failure.
  ssize_t ReadAt(uint64_t offset, char* buffer, size_t capacity) const;

 private:
  Descriptor file_;
  uint64_t size_;
};

/// Any number of threads may ask at the same time.
///
/// Served is a regular file, no link, that can be read, is no larger than kLargestCaptionFile and has a name
/// that ParseCaptionName knows. Subfolders are not looked into. Where two files stand for the same video and
/// language, the earlier folder wins, within a folder the name that comes first by its bytes.
class CaptionLibrary {
 public:
  struct Stock {
    size_t videos = 0;
    size_t tracks = 0;
    size_t leftOut = 0;  ///< names with the right ending that are not served
  };

  /// A folder that is missing, now or later, reads as an empty one.
  explicit CaptionLibrary(std::vector<std::string> folders) : folders_(std::move(folders)) {}

  const std::vector<std::string>& Folders() const { return folders_; }

  /// The languages of a video, each once, in byte order; none for a code that is unknown.
  std::vector<std::string> Languages(std::string_view code) const;

  /// nullopt if there is no such track.
  std::optional<CaptionFile> Open(std::string_view code, std::string_view language) const;

  Stock TakeStock() const;

 private:
  std::vector<std::string> folders_;
};

}  // namespace gateway
