// The caption files in the user's folders. No text from a request becomes part of a path; it is only compared
// with names of files.
#pragma once

#include <deque>
#include <semaphore>
#include <string>
#include <string_view>
#include <vector>

#include "gateway/documents/convert.h"
#include "gateway/sources/CaptionSource.h"
#include "gateway/sources/FileVerdicts.h"
#include "gateway/sources/FolderIndex.h"
#include "gateway/sources/RecentDocuments.h"

namespace gateway {

// The cause if there is no file at all; a file that can't be served has its own.
inline constexpr const char* kNoFile = "No folder holds captions of this video.";

// A file is served if it is regular and not a link, can be read, is not larger than kLargestCaptionFile, has
// a name that ParseCaptionName accepts, and contains captions. Subfolders are ignored. Files can be added,
// changed and removed at any time. Of several files for the same video and language, the one in the earlier
// folder wins, then the format that comes first in CaptionFormats(), then the first name in byte order. The
// log says why a file is not served, once for each state of the file.
class FolderSource final : public CaptionSource {
 public:
  enum class Manner { Convert, AsIs };  // AsIs: only .srv1 files, byte for byte, whatever they contain

  struct Stock {
    std::size_t videos = 0;
    std::size_t tracks = 0;
    std::size_t leftOut = 0;  // names with the ending of a caption file that are not served
  };

  explicit FolderSource(const std::vector<std::string>& folders, Manner manner = Manner::Convert,
                        std::chrono::milliseconds settling = kSettling);

  // Tracks are in byte order of their languages.
  TrackList Tracks(std::string_view code, const Requester& requester) override;
  CaptionText Text(std::string_view code, std::string_view language, const Requester& requester) override;

  // Looks only at names, types and sizes; no file is opened.
  Stock TakeStock() const;

 private:
  struct Candidate;

  bool IsServed(const CaptionFormat& format) const;
  // The candidates of a video in one folder, by language, and for each language the best first.
  std::vector<Candidate> CandidatesIn(FolderIndex& index, std::string_view code) const;
  static std::string CauseOf(const Candidate& candidate, const std::string& fault);
  // The text of a candidate, or why it has none. With onlyWhether, the document may be empty.
  CaptionText TextOf(const Candidate& candidate, bool onlyWhether);

  std::deque<FolderIndex> folders_;
  const Manner manner_;
  const std::chrono::milliseconds settling_;
  FileVerdicts verdicts_;
  RecentDocuments recent_;
  // How many files are read and converted at a time. A large file takes a few hundred MiB, and keeps its
  // place until the client has received the document.
  std::counting_semaphore<> small_{4}, large_{1};
};

}  // namespace gateway
