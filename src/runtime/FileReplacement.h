// One file that is written to replace another (see TextOutputStream for the guarantees).
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

// Writes all bytes to an open file; raises IOException. Delivers events while a pipe is full.
void WriteAll(int descriptor, std::string_view bytes);

class FileReplacement {
 public:
  // Resolves the links that path ends in. Raises IOException if the file can be written neither beside the
  // target nor in place.
  explicit FileReplacement(const std::string& path);
  // Discards what has not been committed.
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  // Each raises IOException.
  void Write(std::string_view bytes);
  void Commit();

 private:
  FileReplacement() = default;
  void OpenInPlace();
  bool OpenBeside();
  bool TakeModeAndOwner();
  void CommitInPlace();

  std::string target_;
  bool targetExists_ = false;
  struct stat old_ {};
  int folder_ = -1;  // the target's folder, held open so that renaming it does no harm
  int descriptor_ = -1;
  std::string beside_;   // name of the new file in the folder; "" while writing in place
  std::string inPlace_;  // the bytes to write in place
};
