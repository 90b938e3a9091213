// One file being written to take another's place (see TextOutputStream for what it promises).
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

// All bytes to an open file; raises IOException. Where a pipe that doesn't block takes no more, events are
// delivered until it does.
void WriteAll(int descriptor, std::string_view bytes);

class FileReplacement {
 public:
  // Raises IOException if neither road is open. path may end in links; they are resolved here.
  explicit FileReplacement(const std::string& path);
  // Discards what was not committed.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // Each raises IOException.
  void Write(std::string_view bytes);
  void Commit();

 private:
  void OpenInPlace();
  bool OpenBeside();
  bool TakeModeAndOwner();
  void CommitInPlace();

  std::string target_;
  bool targetExists_ = false;
  struct stat old_ {};
  int folder_ = -1;  // the target's folder, so that a rename of it in between does no harm
  int descriptor_ = -1;
  std::string beside_;   // name within the folder; "" while writing in place
  std::string inPlace_;  // the bytes to be written in place
};
