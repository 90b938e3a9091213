#include "gateway/sources/ScratchFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

namespace gateway {
namespace {

namespace fs = std::filesystem;

constexpr char kPrefix[] = "ravelyn-fetch-";
constexpr std::time_t kStaleSeconds = 600;  // a new folder is locked long before

fs::path ParentFolder(const std::string& parent) {
  std::error_code ignored;
  return parent.empty() ? fs::temp_directory_path(ignored) : fs::path(parent);
}

Descriptor OpenFolder(const std::string& path) {
  return Descriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

void RemoveIfStale(const fs::path& path) {
  const Descriptor folder = OpenFolder(path.string());
  struct stat facts {};
  if (!folder || ::fstat(folder.Number(), &facts) != 0 || facts.st_uid != ::geteuid()) return;
  if (facts.st_mtime + kStaleSeconds > std::time(nullptr)) return;
  if (::flock(folder.Number(), LOCK_EX | LOCK_NB) != 0) return;
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

}  // namespace

ScratchFolder::ScratchFolder(const std::string& parent) {
  std::string path = (ParentFolder(parent) / kPrefix).string() + "XXXXXX";
  if (::mkdtemp(path.data()) == nullptr) return;
  folder_ = OpenFolder(path);
  if (!folder_) {
    ::rmdir(path.c_str());
    return;
  }
  path_ = path;
  ::flock(folder_.Number(), LOCK_EX | LOCK_NB);
}

ScratchFolder::ScratchFolder(ScratchFolder&& other) noexcept
    : path_(std::exchange(other.path_, "")), folder_(std::move(other.folder_)) {}

// Closes the folder's descriptor first: remove_all needs one, and it may be the only one left.
ScratchFolder::~ScratchFolder() {
  folder_ = Descriptor();
  std::error_code ignored;
  if (!path_.empty()) fs::remove_all(path_, ignored);
}

std::optional<std::string> ScratchFolder::Read(const std::string& fileName, std::uint64_t largest) const {
  const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const Descriptor file(::openat(folder_.Number(), fileName.c_str(), flags));
  struct stat facts {};
  if (!file || ::fstat(file.Number(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
  if (static_cast<std::uint64_t>(facts.st_size) > largest) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
  if (::read(file.Number(), bytes.data(), bytes.size()) != facts.st_size) return std::nullopt;
  return bytes;
}

void ScratchFolder::RemoveStale(const std::string& parent) {
  std::error_code error;
  for (fs::directory_iterator at(ParentFolder(parent), error), end; !error && at != end;
       at.increment(error)) {
    if (at->path().filename().string().starts_with(kPrefix)) RemoveIfStale(at->path());
  }
}

}  // namespace gateway
