#include "gateway/sources/FolderSource.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <set>
#include <tuple>

#include "gateway/sources/OpenedFile.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/track_name.h"

namespace gateway {
namespace {

constexpr std::uint64_t kLargeFile = 1u << 20;
constexpr std::string_view kAsIsEnding = "srv1";

class Turn {
 public:
  explicit Turn(std::counting_semaphore<>& places) : places_(places) { places_.acquire(); }
  ~Turn() { places_.release(); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  std::counting_semaphore<>& places_;
};

}  // namespace

// A file that is a track by its name.
struct FolderSource::Candidate {
  std::shared_ptr<const Descriptor> folder;
  std::string path;  // for the log
  std::string fileName;
  std::string language;
  const CaptionFormat* format;
};

// Shortens a long name, so that the cause is not cut before the fault.
std::string FolderSource::CauseOf(const Candidate& candidate, const std::string& fault) {
  constexpr std::size_t kLongestName = 100;
  return "The file " + candidate.fileName.substr(0, kLongestName) + ": " + fault + ".";
}

FolderSource::FolderSource(const std::vector<std::string>& folders, Manner manner,
                           std::chrono::milliseconds settling)
    : manner_(manner), settling_(settling) {
  for (const std::string& path : folders) folders_.emplace_back(path, settling);
}

bool FolderSource::IsServed(const CaptionFormat& format) const {
  return manner_ == Manner::Convert || format.ending == kAsIsEnding;
}

std::vector<FolderSource::Candidate> FolderSource::CandidatesIn(FolderIndex& index,
                                                                std::string_view code) const {
  FolderIndex::Found found = index.Find(code);
  const auto folder = std::make_shared<const Descriptor>(std::move(found.folder));
  std::vector<Candidate> candidates;
  for (std::string& fileName : found.fileNames) {
    const auto name = ParseCaptionName(fileName);
    if (!name || !IsServed(*name->format)) continue;
    std::string path = index.Path() + "/" + fileName;
    candidates.push_back({folder, std::move(path), fileName, std::string(name->language), name->format});
  }
  // Formats are compared by address: their table is in order of preference.
  std::stable_sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    return std::tie(a.language, a.format) < std::tie(b.language, b.format);
  });
  return candidates;
}

TrackList FolderSource::Tracks(std::string_view code, const Requester&) {
  std::set<std::string> languages;
  TrackList list{{}, kNoFile};
  for (FolderIndex& index : folders_) {
    for (const Candidate& candidate : CandidatesIn(index, code)) {
      if (languages.contains(candidate.language)) continue;
      CaptionText text = TextOf(candidate, true);
      if (text.document) languages.insert(candidate.language);
      if (!text.document && list.cause == kNoFile) list.cause = text.cause;
    }
  }
  for (const std::string& language : languages) {
    TrackName name = NameOfTrack(language);
    list.tracks.push_back({language, std::move(name.english), std::move(name.own), name.automatic});
  }
  if (!languages.empty()) list.cause.clear();
  return list;
}

CaptionText FolderSource::Text(std::string_view code, std::string_view language, const Requester&) {
  CaptionText none{std::nullopt, kNoFile};
  for (FolderIndex& index : folders_) {
    for (const Candidate& candidate : CandidatesIn(index, code)) {
      if (candidate.language != language) continue;
      CaptionText text = TextOf(candidate, false);
      if (text.document) return text;
      if (none.cause == kNoFile) none = std::move(text);
    }
  }
  return none;
}

CaptionText FolderSource::TextOf(const Candidate& candidate, bool onlyWhether) {
  OpenedFile opened = OpenCaptionFile(candidate.folder->Number(), candidate.fileName);
  if (opened.file && manner_ == Manner::AsIs) return {*std::move(opened.file), ""};
  const bool settled = opened.state.IsSettled(settling_);
  Conversion conversion{"", std::move(opened.fault)};
  std::shared_ptr<void> place;
  if (opened.file) {
    const auto known = verdicts_.Find(candidate.path, opened.state);
    if (known && (onlyWhether || !known->empty())) {
      conversion.fault = *known;
    } else if (auto recent = recent_.Find(candidate.path, opened.state)) {
      conversion.document = *std::move(recent);
    } else {
      const bool isLarge = opened.file->Size() > kLargeFile;
      const auto turn = std::make_shared<Turn>(isLarge ? large_ : small_);
      conversion = ToDocument(ReadWhole(*opened.file), *candidate.format, {candidate.language});
      if (isLarge && !onlyWhether) place = turn;
      if (settled && conversion.fault.empty())
        recent_.Keep(candidate.path, opened.state, conversion.document);
    }
  }
  verdicts_.Keep(candidate.path, opened.state, settled, conversion.fault);
  if (!conversion.fault.empty()) return {std::nullopt, CauseOf(candidate, conversion.fault)};
  return {std::move(conversion.document), "", std::move(place)};
}

FolderSource::Stock FolderSource::TakeStock() const {
  Stock stock;
  std::set<std::string> videos;
  std::set<std::pair<std::string, std::string>> tracks;
  for (const FolderIndex& index : folders_) {
    index.VisitAll([&](int folder, const std::string& fileName) {
      const auto name = ParseCaptionName(fileName);
      struct stat facts {};
      const bool isServed = name && IsServed(*name->format) &&
                            ::fstatat(folder, fileName.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
                            FaultIn(facts).empty();
      if (!isServed) {
        ++stock.leftOut;
        return;
      }
      videos.emplace(name->code);
      tracks.emplace(name->code, name->language);
    });
  }
  stock.videos = videos.size();
  stock.tracks = tracks.size();
  return stock;
}

}  // namespace gateway
