#include "gateway/sources/FolderSource.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "gateway/sources/caption_name.h"
#include "gateway/sources/language_name.h"

namespace gateway {
namespace {

constexpr const char* kNoFile = "No folder holds captions of this video in this language.";

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

struct Entry {
  std::string fileName;
  CaptionName name;
};

// Calls `visit` with every file name of `folder` that has the ending of a caption file.
void VisitNames(DIR* folder, const std::function<void(std::string_view)>& visit) {
  while (const dirent* found = ::readdir(folder)) {
    const std::string_view name = found->d_name;
    if (name.ends_with(kCaptionEnding)) visit(name);
  }
}

std::vector<Entry> EntriesOf(DIR* folder, std::string_view code) {
  std::vector<Entry> entries;
  VisitNames(folder, [&](std::string_view fileName) {
    auto name = ParseCaptionName(fileName);
    if (name && name->code == code) entries.push_back({std::string(fileName), *std::move(name)});
  });
  const auto byBytes = [](const Entry& a, const Entry& b) { return a.fileName < b.fileName; };
  std::sort(entries.begin(), entries.end(), byBytes);
  return entries;
}

bool IsServable(const struct stat& facts) {
  return S_ISREG(facts.st_mode) && static_cast<std::uint64_t>(facts.st_size) <= kLargestCaptionFile;
}

// Asks before it opens, since opening alone can act on a device, and again afterwards, since the name may
// have changed hands in between. A pipe that was put there meanwhile doesn't block.
std::optional<CaptionFile> OpenServable(DIR* folder, const char* fileName) {
  struct stat facts {};
  const int place = ::dirfd(folder);
  if (::fstatat(place, fileName, &facts, AT_SYMLINK_NOFOLLOW) != 0 || !IsServable(facts)) return std::nullopt;
  Descriptor file(::openat(place, fileName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file || ::fstat(file.Number(), &facts) != 0 || !IsServable(facts)) return std::nullopt;
  return CaptionFile(std::move(file), static_cast<std::uint64_t>(facts.st_size));
}

}  // namespace

TrackList FolderSource::Tracks(std::string_view code, const Asker&) {
  std::set<std::string> languages;
  for (const auto& path : folders_) {
    const Folder folder(::opendir(path.c_str()));
    if (!folder) continue;
    for (const auto& [fileName, name] : EntriesOf(folder.get(), code))
      if (OpenServable(folder.get(), fileName.c_str())) languages.insert(name.language);
  }
  TrackList list;
  for (const auto& language : languages)
    list.tracks.push_back({language, EnglishName(language), OwnName(language)});
  if (list.tracks.empty()) list.cause = "No folder holds captions of this video.";
  return list;
}

CaptionText FolderSource::Text(std::string_view code, std::string_view language, const Asker&) {
  for (const auto& path : folders_) {
    const Folder folder(::opendir(path.c_str()));
    if (!folder) continue;
    for (const auto& [fileName, name] : EntriesOf(folder.get(), code)) {
      if (name.language != language) continue;
      if (auto file = OpenServable(folder.get(), fileName.c_str())) return {*std::move(file), ""};
    }
  }
  return {std::nullopt, kNoFile};
}

FolderSource::Stock FolderSource::TakeStock() const {
  Stock stock;
  std::set<std::string> videos;
  std::set<std::pair<std::string, std::string>> tracks;
  for (const auto& path : folders_) {
    const Folder folder(::opendir(path.c_str()));
    if (!folder) continue;
    VisitNames(folder.get(), [&](std::string_view fileName) {
      const auto name = ParseCaptionName(fileName);
      if (!name || !OpenServable(folder.get(), std::string(fileName).c_str())) {
        ++stock.leftOut;
        return;
      }
      videos.insert(name->code);
      tracks.emplace(name->code, name->language);
    });
  }
  stock.videos = videos.size();
  stock.tracks = tracks.size();
  return stock;
}

}  // namespace gateway
