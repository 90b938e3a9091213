// A path in the file system, whether anything exists there or not. Paths are bytes.
#pragma once

#include <memory>
#include <string>

class FolderItem;
class TextInputStream;
class TextOutputStream;
// nullptr is nil.
using FolderItemPtr = std::shared_ptr<FolderItem>;

class FolderItem {
 public:
  explicit FolderItem(std::string path) : path_(std::move(path)) {}

  const std::string& Path() const { return path_; }
  // The last component.
  std::string Name() const { return path_.substr(path_.find_last_of('/') + 1); }
  // The entry of that name in this folder, existing or not; nil for a name that leads out of the folder.
  FolderItemPtr Child(const std::string& name) const;
  bool Exists() const;
  bool Directory() const;

  // Opens a stream that replaces the file on Close (see TextOutputStream). On failure nil, with the errno in
  // LastErrorCode.
  std::shared_ptr<TextOutputStream> CreateTextFile();
  // Opens an existing file for reading. On failure nil, with the errno in LastErrorCode.
  std::shared_ptr<TextInputStream> OpenAsTextFile();
  // Opens the file in the system's application for its type. The host decides whether it comes to the front.
  void Launch(bool activate) const;
  // The errno of the last failed operation on this object; 0 if there was none.
  int LastErrorCode() const { return lastError_; }

 private:
  friend class TextOutputStream;
  std::string path_;
  int lastError_ = 0;
};

namespace SpecialFolder {
// The folder for the user's settings; nil if there is none.
FolderItemPtr Preferences();
}  // namespace SpecialFolder

// The system's modal save dialog; nil if the user cancels. It suggests PlainFileName(defaultName).
FolderItemPtr GetSaveFolderItem(const std::string& filter, const std::string& defaultName);
