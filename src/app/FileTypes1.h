// The file types of the save dialogs.
#pragma once

#include <string>
#include <vector>

struct FileType {
  std::string Name;
  std::string Extensions;  // each with its dot, ";" between them
  std::string MacType;
  std::string MacCreator;
  std::string MimeType;
  std::string ConformsTo;
  std::string UTI;
  bool Imported = false;

  // As it is passed to a save dialog.
  operator const std::string&() const { return Name; }
};

namespace FileTypes1 {
// Builds the set; later calls change nothing. All() and Text() call it if needed.
void SetUp();
const std::vector<FileType>& All();
const FileType& Text();
}  // namespace FileTypes1
