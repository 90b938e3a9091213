// A new folder for one child, which is removed with its contents.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/Descriptor.h"

namespace gateway {

// Accessible only to the user. It is locked while it exists, so that RemoveStale can distinguish it from a
// folder whose gateway was killed.
class ScratchFolder {
 public:
  // Makes the folder in parent; "" is the system's folder for temporary files. Path() is "" if that failed.
  explicit ScratchFolder(const std::string& parent);
  ScratchFolder(ScratchFolder&& other) noexcept;
  ScratchFolder& operator=(ScratchFolder&&) = delete;
  ~ScratchFolder();

  const std::string& Path() const { return path_; }

  // The bytes of a regular file in it; nullopt if there is none, or if it has more than `largest` bytes.
  std::optional<std::string> Read(const std::string& fileName, std::uint64_t largest) const;

  // Removes this user's scratch folders in parent that are not locked and at least ten minutes old.
  static void RemoveStale(const std::string& parent);

 private:
  std::string path_;
  Descriptor folder_;
};

}  // namespace gateway
