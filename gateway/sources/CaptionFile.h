// A caption file that stands open.
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

  // In bytes, at opening.
  std::uint64_t Size() const { return size_; }

  // The count of bytes put into buffer, from offset on: 0 at the end, -1 on a failure.
  ssize_t ReadAt(std::uint64_t offset, char* buffer, std::size_t capacity) const;

 private:
  Descriptor file_;
  std::uint64_t size_;
};

}  // namespace gateway
