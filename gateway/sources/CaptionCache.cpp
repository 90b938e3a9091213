#include "gateway/sources/CaptionCache.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <vector>

#include "gateway/sources/OpenedFile.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/log.h"
#include "gateway/sources/stored_list.h"

namespace gateway {
namespace {

constexpr std::string_view kTextEnding = ".captions";
constexpr std::string_view kListEnding = ".list.json";
constexpr std::string_view kTemporaryPrefix = ".new-";
constexpr std::string_view kDocumentEnd = "</transcript>";
constexpr std::uint64_t kLargestList = 1u << 20;
constexpr std::chrono::hours kBetweenSweeps{24};
constexpr std::chrono::hours kOldestTemporary{1};

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

std::string PrefixOf(std::string_view code) { return "[" + std::string(code) + "]."; }

std::string TextName(std::string_view code, std::string_view language) {
  if (!IsVideoCode(code) || !IsTrackLanguage(language)) return "";
  return PrefixOf(code) + std::string(language) + std::string(kTextEnding);
}

std::string ListName(std::string_view code) {
  return IsVideoCode(code) ? "[" + std::string(code) + "]" + std::string(kListEnding) : "";
}

std::chrono::seconds AgeOf(const struct stat& facts) {
  return std::chrono::seconds(std::time(nullptr) - facts.st_mtim.tv_sec);
}

bool EndsAsADocument(const CaptionFile& file) {
  std::array<char, kDocumentEnd.size()> end{};
  if (file.Size() < end.size()) return false;
  file.ReadAt(file.Size() - end.size(), end.data(), end.size());
  return std::string_view(end.data(), end.size()) == kDocumentEnd;
}

// Makes a folder and its missing parents, accessible only to their owner.
void MakeFolder(const std::string& path) {
  for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1))
    ::mkdir(path.substr(0, end).c_str(), 0700);
  ::mkdir(path.c_str(), 0700);
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// A file of the cache.
struct Kept {
  std::int64_t written;  // in seconds since 1970; -1: to be removed
  std::uint64_t bytes;
  std::string name;
};

}  // namespace

std::string UsualCacheFolder() {
  const char* cache = std::getenv("XDG_CACHE_HOME");
  if (cache != nullptr && cache[0] == '/') return std::string(cache) + "/ravelyn/captions";
  const char* home = std::getenv("HOME");
  return home != nullptr && home[0] == '/' ? std::string(home) + "/.cache/ravelyn/captions" : "";
}

CaptionCache::CaptionCache(std::string folder, const CacheLimits& limits)
    : folder_(std::move(folder)), limits_(limits) {}

std::optional<CaptionFile> CaptionCache::Open(const std::string& fileName) const {
  if (fileName.empty()) return std::nullopt;
  struct stat facts {};
  Descriptor file(::open((folder_ + "/" + fileName).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file || ::fstat(file.Number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
  if (facts.st_uid != ::geteuid() || AgeOf(facts) > limits_.age) return std::nullopt;
  return CaptionFile(std::move(file), static_cast<std::uint64_t>(facts.st_size));
}

std::optional<CaptionFile> CaptionCache::FindText(std::string_view code, std::string_view language) const {
  auto file = Open(TextName(code, language));
  return file && EndsAsADocument(*file) ? std::move(file) : std::nullopt;
}

std::optional<TrackList> CaptionCache::FindList(std::string_view code) const {
  const auto file = Open(ListName(code));
  return file && file->Size() <= kLargestList ? ReadStoredList(ReadWhole(*file)) : std::nullopt;
}

bool CaptionCache::HasTextOf(std::string_view code) const {
  const std::string prefix = PrefixOf(code);
  const Folder folder(::opendir(folder_.c_str()));
  if (!folder) return false;
  while (const dirent* found = ::readdir(folder.get())) {
    const std::string_view name = found->d_name;
    if (!name.starts_with(prefix) || !name.ends_with(kTextEnding)) continue;
    if (const auto file = Open(std::string(name)); file && EndsAsADocument(*file)) return true;
  }
  return false;
}

void CaptionCache::KeepText(std::string_view code, std::string_view language, std::string_view document) {
  Keep(TextName(code, language), document);
}

void CaptionCache::KeepList(std::string_view code, const TrackList& list) {
  Keep(ListName(code), StoredList(list));
}

void CaptionCache::DropText(std::string_view code, std::string_view language) const {
  const std::string name = TextName(code, language);
  if (!name.empty()) ::unlink((folder_ + "/" + name).c_str());
}

void CaptionCache::Keep(const std::string& fileName, std::string_view bytes) {
  if (fileName.empty() || bytes.size() > limits_.bytes) return;
  const std::lock_guard lock(mutex_);
  MakeFolder(folder_);
  if (IsUsable() && Write(fileName, bytes)) {
    lastError_ = 0;
    bytes_ += bytes.size();
    if (bytes_ > limits_.bytes || Clock::now() >= nextSweep_) Sweep();
  } else if (std::exchange(lastError_, errno) != errno) {
    Log("can't keep captions in " + folder_ + ": " + std::strerror(lastError_));
  }
}

bool CaptionCache::IsUsable() const {
  struct stat facts {};
  if (::lstat(folder_.c_str(), &facts) != 0) return false;
  errno = S_ISDIR(facts.st_mode) ? EPERM : ENOTDIR;
  return S_ISDIR(facts.st_mode) && facts.st_uid == ::geteuid() && (facts.st_mode & 022) == 0;
}

// Does not wait for the disk: after a crash of the machine a file may be incomplete, which FindText detects.
bool CaptionCache::Write(const std::string& fileName, std::string_view bytes) const {
  std::string temporary = folder_ + "/" + std::string(kTemporaryPrefix) + "XXXXXX";
  const Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file) return false;
  if (WriteAll(file.Number(), bytes) && ::rename(temporary.c_str(), (folder_ + "/" + fileName).c_str()) == 0)
    return true;
  const int error = errno;
  ::unlink(temporary.c_str());
  errno = error;
  return false;
}

void CaptionCache::Sweep() {
  const Folder folder(::opendir(folder_.c_str()));
  if (!folder) return;
  nextSweep_ = Clock::now() + kBetweenSweeps;
  bytes_ = 0;
  std::vector<Kept> kept;
  while (const dirent* found = ::readdir(folder.get())) {
    const std::string_view name = found->d_name;
    const bool isTemporary = name.starts_with(kTemporaryPrefix);
    if (!isTemporary && !name.ends_with(kTextEnding) && !name.ends_with(kListEnding)) continue;
    struct stat facts {};
    if (::fstatat(::dirfd(folder.get()), found->d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0) continue;
    const auto size = static_cast<std::uint64_t>(facts.st_size);
    const auto oldest = isTemporary ? std::chrono::seconds(kOldestTemporary) : limits_.age;
    const std::int64_t written = AgeOf(facts) > oldest ? -1 : facts.st_mtim.tv_sec;
    kept.push_back({written, size, std::string(name)});
    bytes_ += size;
  }
  std::sort(kept.begin(), kept.end(), [](const Kept& a, const Kept& b) { return a.written < b.written; });
  for (const Kept& each : kept) {
    if (each.written >= 0 && bytes_ <= limits_.bytes) break;
    ::unlinkat(::dirfd(folder.get()), each.name.c_str(), 0);
    bytes_ -= each.bytes;
  }
}

}  // namespace gateway
