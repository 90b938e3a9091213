// A fresh, empty folder for one child, removed with all that is in it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/Descriptor.h"

namespace gateway {

// Only its owner can look into it. While it is held it is locked, so that RemoveStale can tell it from one
// whose gateway was killed.
class ScratchFolder {
 public:
  // Makes it in parent; "" is the system's folder for temporary files. Path() is "" if that failed.
  explicit ScratchFolder(const std::string& parent);
  ScratchFolder(ScratchFolder&& other) noexcept;
  ScratchFolder& operator=(ScratchFolder&&) = delete;
  ~ScratchFolder();

  const std::string& Path() const { return path_; }

  // The bytes of a regular file in it; nullopt if there is none, or one of more than largest bytes.
  std::optional<std::string> Read(const std::string& fileName, std::uint64_t largest) const;

  // Removes folders of this user in parent that nobody holds and that are at least ten minutes old.
  static void RemoveStale(const std::string& parent);

 private:
  std::string path_;
  Descriptor folder_;
};

}  // namespace gateway
