// The caption files in the user's folders. No text from a request becomes part of a path; it is only compared
// with names found.
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

// The cause where there is no file at all; one that is no captions brings its own.
inline constexpr const char* kNoFile = "No folder holds captions of this video.";

// Served is a regular file, no link, that can be read, is no larger than kLargestCaptionFile, has a name that
// ParseCaptionName knows and holds captions. Subfolders are not looked into. Files can be added, changed and
// removed at any time. Where several stand for the same video and language, the earlier folder wins, within a
// folder the format that comes first in CaptionFormats(), then the name that comes first by its bytes. The
// log says of what is no captions which file it is and why, once for each state of the file.
class FolderSource final : public CaptionSource {
 public:
  enum class Manner { Convert, AsIs };  // AsIs: .srv1 files alone, byte for byte, whatever they hold

  struct Stock {
    std::size_t videos = 0;
    std::size_t tracks = 0;
    std::size_t leftOut = 0;  // names with the ending of a caption file that are not served
  };

  explicit FolderSource(const std::vector<std::string>& folders, Manner manner = Manner::Convert,
                        std::chrono::milliseconds settling = kSettling);

  // Tracks come in the byte order of their languages.
  TrackList Tracks(std::string_view code, const Asker& asker) override;
  CaptionText Text(std::string_view code, std::string_view language, const Asker& asker) override;

  // Goes by names, kinds and sizes; no file is opened.
  Stock TakeStock() const;

 private:
  struct Candidate;

  bool IsServed(const CaptionFormat& format) const;
  // Of a video in one folder: by language, for each the best first.
  std::vector<Candidate> CandidatesIn(FolderIndex& index, std::string_view code) const;
  // The text of a candidate, or why it is no captions. What is asked for is only whether it has one: then the
  // document may be left empty.
  static std::string CauseOf(const Candidate& candidate, const std::string& fault);
  CaptionText TextOf(const Candidate& candidate, bool onlyWhether);

  std::deque<FolderIndex> folders_;
  const Manner manner_;
  const std::chrono::milliseconds settling_;
  FileVerdicts verdicts_;
  RecentDocuments recent_;
  // How many files are read and converted at a time. A large one takes a few hundred MiB, and its place until
  // its client has taken the document.
  std::counting_semaphore<> small_{4}, large_{1};
};

}  // namespace gateway
