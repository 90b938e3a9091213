#include "app/FileTypes1.h"

namespace FileTypes1 {

const std::vector<FileType>& All() {
  static const std::vector<FileType> types = {
      // Name         Extensions     MacType MacCreator MimeType ConformsTo UTI  Imported
      {"text/plain", ".text;.txt", "TEXT", "????", "", "", "public.text", true},
  };
  return types;
}

void SetUp() { All(); }

const FileType& Text() { return All().front(); }

}  // namespace FileTypes1
