// An open caption file.
#pragma once

#include <cstdint>
#include <utility>

#include "gateway/sources/Descriptor.h"

namespace gateway {

// The largest caption file that is served, in bytes. A larger one counts as absent.
inline constexpr std::uint64_t kLargestCaptionFile = 64u << 20;

class CaptionFile {
 public:
  CaptionFile(Descriptor file, std::uint64_t size) : file_(std::move(file)), size_(size) {}

  // In bytes, when it was opened.
  std::uint64_t Size() const { return size_; }

  // Reads from offset on into buffer. Returns the number of bytes; 0 at the end, -1 on failure.
  ssize_t ReadAt(std::uint64_t offset, char* buffer, std::size_t capacity) const;

 private:
  Descriptor file_;
  std::uint64_t size_;
};

}  // namespace gateway
