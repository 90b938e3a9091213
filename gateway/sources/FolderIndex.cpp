#include "gateway/sources/FolderIndex.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <memory>

#include "gateway/sources/caption_name.h"

namespace gateway {
namespace {

constexpr std::chrono::minutes kLongestKept{1};

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

std::size_t HashOf(std::string_view code) { return std::hash<std::string_view>()(code); }

// Visits each name. The folder is opened again, so that it is read from its start.
template <class Visit>
void ReadNames(int folder, Visit visit) {
  const int reading = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, CloseFolder> names(reading < 0 ? nullptr : ::fdopendir(reading));
  if (!names) return;
  while (const dirent* found = ::readdir(names.get())) visit(std::string_view(found->d_name));
}

// The names of one video's files. Does not parse the other names: used while the folder changes so often that
// an index would cost more than it saves.
std::vector<std::string> ReadNamesOf(int folder, std::string_view code) {
  std::vector<std::string> fileNames;
  const std::string mark = "[" + std::string(code) + "].";
  ReadNames(folder, [&](std::string_view fileName) {
    if (fileName.find(mark) == fileName.npos) return;
    const auto name = ParseCaptionName(fileName);
    if (name && name->code == code) fileNames.emplace_back(fileName);
  });
  return fileNames;
}

}  // namespace

FolderIndex::Found FolderIndex::Find(std::string_view code) {
  Found found{Descriptor(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)), {}};
  struct stat facts {};
  if (!found.folder || ::fstat(found.folder.Number(), &facts) != 0) return found;
  const FileState now = FileState::Of(facts);
  const std::lock_guard lock(mutex_);
  if (!now.IsSettled(settling_)) {
    found.fileNames = ReadNamesOf(found.folder.Number(), code);
  } else {
    if (now != state_ || Clock::now() >= expires_) {
      Read(found.folder.Number());
      state_ = now;
    }
    found.fileNames = Kept(code);
  }
  std::sort(found.fileNames.begin(), found.fileNames.end());
  return found;
}

std::vector<std::string> FolderIndex::Kept(std::string_view code) const {
  std::vector<std::string> fileNames;
  const std::size_t hash = HashOf(code);
  for (auto at = std::lower_bound(byCode_.begin(), byCode_.end(), std::pair(hash, std::uint32_t{0}));
       at != byCode_.end() && at->first == hash; ++at) {
    const std::string fileName = names_.c_str() + at->second;
    if (ParseCaptionName(fileName)->code == code) fileNames.push_back(fileName);
  }
  return fileNames;
}

void FolderIndex::Read(int folder) {
  names_.clear();
  byCode_.clear();
  expires_ = Clock::now() + kLongestKept;
  ReadNames(folder, [&](std::string_view fileName) {
    const auto name = ParseCaptionName(fileName);
    if (!name) return;
    byCode_.emplace_back(HashOf(name->code), static_cast<std::uint32_t>(names_.size()));
    names_.append(fileName).push_back('\0');
  });
  std::sort(byCode_.begin(), byCode_.end());
}

void FolderIndex::VisitAll(const Visit& visit) const {
  const Descriptor folder(::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return;
  ReadNames(folder.Number(), [&](std::string_view fileName) {
    if (HasCaptionEnding(fileName)) visit(folder.Number(), std::string(fileName));
  });
}

}  // namespace gateway
