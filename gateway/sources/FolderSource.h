// The folders that hold the caption files. Nothing is kept from one question to the next: every call reads
// the folders anew. No text from a request becomes part of a path; it is only compared with names found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "gateway/sources/CaptionSource.h"

namespace gateway {

// Any number of threads may ask at the same time.
//
// Served is a regular file, no link, that can be read, is no larger than kLargestCaptionFile and has a name
// that ParseCaptionName knows. Subfolders are not looked into. Where two files stand for the same video and
// language, the earlier folder wins, within a folder the name that comes first by its bytes.
class FolderSource final : public CaptionSource {
 public:
  struct Stock {
    std::size_t videos = 0;
    std::size_t tracks = 0;
    std::size_t leftOut = 0;  // names with the right ending that are not served
  };

  // A folder that is missing, now or later, reads as an empty one.
  explicit FolderSource(std::vector<std::string> folders) : folders_(std::move(folders)) {}

  const std::vector<std::string>& Folders() const { return folders_; }

  // Tracks come in the byte order of their languages.
  TrackList Tracks(std::string_view code, const Asker& asker) override;
  CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) override;

  Stock TakeStock() const;

 private:
  std::vector<std::string> folders_;
};

}  // namespace gateway
