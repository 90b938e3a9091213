#include "runtime/FileReplacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <random>
#include <utility>

#include "runtime/Application.h"
#include "runtime/exceptions.h"

namespace {

constexpr int kMostLinks = 40;

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

// Follows the links that path itself ends in, even to a target that does not exist yet.
std::string WithoutLinks(std::string path) {
  for (int i = 0; i < kMostLinks; ++i) {
    char target[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
    if (length < 0) return path;
    const std::string next(target, static_cast<std::size_t>(length));
    path = next.starts_with('/') ? next : FolderOf(path) + "/" + next;
  }
  throw IOException(ELOOP);
}

std::string UnusedName() {
  static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device random;
  std::string name = ".ravelyn-";
  for (int i = 0; i < 12; ++i) name += kLetters[random() % (sizeof kLetters - 1)];
  return name;
}

// A pipe without a reader is an error and must not kill the program: SIGPIPE is blocked and then consumed.
ssize_t WriteWithoutSignal(int descriptor, std::string_view bytes) {
  sigset_t pipe, before;
  ::sigemptyset(&pipe);
  ::sigaddset(&pipe, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &pipe, &before);
  const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
  const int error = errno;
  const timespec now{};
  while (written < 0 && error == EPIPE && ::sigtimedwait(&pipe, nullptr, &now) < 0 && errno == EINTR)
    continue;
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  errno = error;
  return written;
}

// Delivers events until a full pipe takes bytes again; the user can quit meanwhile.
void AwaitWritable(int descriptor) {
  RuntimeBackgroundTask();
  AwaitCooperatively(kForever, {descriptor, false, true});
}

}  // namespace

void WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = WriteWithoutSignal(descriptor, bytes);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0 && errno == EAGAIN) {
      AwaitWritable(descriptor);
      continue;
    }
    if (written < 0) throw IOException(errno);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Delegates, so that the destructor closes what is open if the rest throws.
FileReplacement::FileReplacement(const std::string& path) : FileReplacement() {
  target_ = WithoutLinks(path);
  if (target_.find('\0') != std::string::npos || NameOf(target_).empty()) throw IOException(EINVAL);
  targetExists_ = ::lstat(target_.c_str(), &old_) == 0;
  if (!targetExists_ && errno != ENOENT) throw IOException(errno);
  if (targetExists_ && S_ISDIR(old_.st_mode)) throw IOException(EISDIR);
  folder_ = ::open(FolderOf(target_).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0) throw IOException(errno);
  const bool plain = !targetExists_ || S_ISREG(old_.st_mode);
  if (plain && targetExists_ && ::faccessat(folder_, NameOf(target_).c_str(), W_OK, AT_EACCESS) != 0) {
    throw IOException(errno);  // a read-only file is not replaced
  }
  if (!plain || !OpenBeside()) OpenInPlace();
}

FileReplacement::~FileReplacement() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!beside_.empty()) ::unlinkat(folder_, beside_.c_str(), 0);
  if (folder_ >= 0) ::close(folder_);
}

bool FileReplacement::OpenBeside() {
  beside_ = UnusedName();
  descriptor_ =
      ::openat(folder_, beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  const int error = errno;
  if (descriptor_ >= 0 && TakeModeAndOwner()) return true;
  if (descriptor_ >= 0) ::unlinkat(folder_, beside_.c_str(), 0), ::close(descriptor_);
  descriptor_ = -1;
  beside_.clear();
  if (!targetExists_) throw IOException(error);
  return false;
}

bool FileReplacement::TakeModeAndOwner() {
  if (!targetExists_) return true;
  struct stat made;
  if (::fstat(descriptor_, &made) != 0) return false;
  const bool sameOwner = made.st_uid == old_.st_uid && made.st_gid == old_.st_gid;
  if (!sameOwner && ::fchown(descriptor_, old_.st_uid, old_.st_gid) != 0) return false;
  return ::fchmod(descriptor_, old_.st_mode & 07777) == 0;
}

void FileReplacement::OpenInPlace() {
  // O_NONBLOCK: a pipe without a reader is an error instead of a wait.
  descriptor_ = ::openat(folder_, NameOf(target_).c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (descriptor_ < 0) throw IOException(errno);
}

void FileReplacement::Write(std::string_view bytes) {
  if (beside_.empty()) {
    inPlace_.append(bytes);
  } else {
    WriteAll(descriptor_, bytes);
  }
}

void FileReplacement::Commit() {
  if (beside_.empty()) return CommitInPlace();
  // The bytes reach the disk before the name, so that a power cut leaves one of the two files whole.
  if (::fsync(descriptor_) != 0 && errno != EINVAL) throw IOException(errno);
  if (::close(std::exchange(descriptor_, -1)) != 0) throw IOException(errno);
  if (::renameat(folder_, beside_.c_str(), folder_, NameOf(target_).c_str()) != 0) throw IOException(errno);
  beside_.clear();
}

void FileReplacement::CommitInPlace() {
  // Space is reserved first, so that a full disk is reported before the old bytes are lost.
  const auto size = static_cast<off_t>(inPlace_.size());
  if (S_ISREG(old_.st_mode) && size > old_.st_size) {
    if (const int error = ::posix_fallocate(descriptor_, 0, size); error != 0 && error != EOPNOTSUPP) {
      [[maybe_unused]] const int back = ::ftruncate(descriptor_, old_.st_size);
      throw IOException(error);
    }
  }
  WriteAll(descriptor_, inPlace_);
  if (S_ISREG(old_.st_mode) && ::ftruncate(descriptor_, size) != 0) throw IOException(errno);
}
