#include "gateway/sources/CaptionFile.h"

#include <cerrno>

namespace gateway {

ssize_t CaptionFile::ReadAt(std::uint64_t offset, char* buffer, std::size_t capacity) const {
  ssize_t count = 0;
  do {
    count = ::pread(file_.Number(), buffer, capacity, static_cast<off_t>(offset));
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace gateway
