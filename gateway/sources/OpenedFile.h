// One file of a folder, opened with care, and the state by which it is known again.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/CaptionFile.h"

namespace gateway {

// What changes with every change of a file or of a folder's entries.
struct FileState {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  std::int64_t modified = 0, changed = 0;  // in nanoseconds since 1970

  static FileState Of(const struct stat& facts);
  bool operator==(const FileState&) const = default;

  // Whether another change from now on would show. Stamps come from a clock with coarse ticks, 2 s on some
  // file systems: what was changed just now could be changed again under the same stamp.
  bool IsSettled(std::chrono::milliseconds settling) const;
};

// How old a state must be to be settled.
inline constexpr std::chrono::milliseconds kSettling{3'000};

struct OpenedFile {
  std::optional<CaptionFile> file;
  FileState state;    // before anything of it is read
  std::string fault;  // why it is not open, a short English sentence; "" if it is
};

// A regular file, no link, that can be read and has at most kLargestCaptionFile bytes; nothing else is
// opened.
OpenedFile OpenCaptionFile(int folder, const std::string& fileName);

// Why a file with these facts is not opened; "" if nothing speaks against it.
std::string FaultIn(const struct stat& facts);

// All its bytes; fewer if it has become shorter.
std::string ReadWhole(const CaptionFile& file);

}  // namespace gateway
