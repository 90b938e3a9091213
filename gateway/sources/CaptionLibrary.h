#pragma once
// The folders that hold the caption files. Nothing is kept from one question to the next: every call reads
// the folders anew. No text from a request becomes part of a path; it is only compared with names found.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/sources/CaptionFile.h"

namespace gateway {

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
