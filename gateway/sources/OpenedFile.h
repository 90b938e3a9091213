// Opens a file of a folder safely, and detects later changes of it.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "gateway/sources/CaptionFile.h"

namespace gateway {

// Differs after every change of a file or of a folder's entries, if it was settled.
struct FileState {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  std::chrono::nanoseconds modified{}, changed{};  // since 1970

  static FileState Of(const struct stat& facts);
  bool operator==(const FileState&) const = default;

  // Whether any change from now on would show. Time stamps are coarse, 2 s on some file systems: a file that
  // was changed just now could be changed again without a new time stamp.
  bool IsSettled(std::chrono::milliseconds settling) const;
};

// How old a state must be to be settled.
inline constexpr std::chrono::milliseconds kSettling{3'000};

struct OpenedFile {
  std::optional<CaptionFile> file;
  FileState state;    // before any byte is read
  std::string fault;  // why it was not opened, a short English sentence; "" if it was
};

// Opens only a regular file, not a link, of at most kLargestCaptionFile bytes.
OpenedFile OpenCaptionFile(int folder, const std::string& fileName);

// Why a file with these facts must not be opened; "" if it may be.
std::string FaultIn(const struct stat& facts);

// All bytes of the file; fewer if it has shrunk since it was opened.
std::string ReadWhole(const CaptionFile& file);

}  // namespace gateway
