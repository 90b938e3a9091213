#include "gateway/sources/OpenedFile.h"

#include <fcntl.h>

#include <ctime>

namespace gateway {
namespace {

std::chrono::nanoseconds Since1970(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void Judge(OpenedFile& opened, const struct stat& facts) {
  opened.state = FileState::Of(facts);
  opened.fault = FaultIn(facts);
}

}  // namespace

FileState FileState::Of(const struct stat& facts) {
  return {facts.st_dev, facts.st_ino, facts.st_size, Since1970(facts.st_mtim), Since1970(facts.st_ctim)};
}

bool FileState::IsSettled(std::chrono::milliseconds settling) const {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return changed < Since1970(now) - settling;
}

std::string FaultIn(const struct stat& facts) {
  if (!S_ISREG(facts.st_mode)) return "this is not a regular file";
  const bool large = static_cast<std::uint64_t>(facts.st_size) > kLargestCaptionFile;
  return large ? "this file is larger than 64 MiB" : "";
}

// Checks before opening, since opening a device can have effects, and again after it, since the file may have
// been replaced in between. O_NONBLOCK: a pipe that replaced it must not block.
OpenedFile OpenCaptionFile(int folder, const std::string& fileName) {
  OpenedFile opened{{}, {}, "this file can't be read"};
  struct stat facts {};
  if (::fstatat(folder, fileName.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) return opened;
  Judge(opened, facts);
  if (!opened.fault.empty()) return opened;
  constexpr int kCareful = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  Descriptor file(::openat(folder, fileName.c_str(), kCareful));
  opened.fault = "this file can't be read";
  if (!file || ::fstat(file.Number(), &facts) != 0) return opened;
  Judge(opened, facts);
  if (opened.fault.empty()) opened.file.emplace(std::move(file), static_cast<std::uint64_t>(facts.st_size));
  return opened;
}

std::string ReadWhole(const CaptionFile& file) {
  std::string bytes(file.Size(), '\0');
  std::size_t have = 0;
  while (have < bytes.size()) {
    const ssize_t count = file.ReadAt(have, bytes.data() + have, bytes.size() - have);
    if (count <= 0) break;
    have += static_cast<std::size_t>(count);
  }
  bytes.resize(have);
  return bytes;
}

}  // namespace gateway
