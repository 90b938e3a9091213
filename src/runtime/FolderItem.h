// A place in the file system, whether something stands there or not. Paths are bytes.
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
  std::string Name() const;
  // The entry of that name in this folder, whether it exists or not; nil for a name that is no
  // plain file name, so that no name leads out of the folder.
  FolderItemPtr Child(const std::string& name) const;
  bool Exists() const;
  bool Directory() const;

  // Opens a stream that replaces the file when it is closed (see TextOutputStream); nil if that is
  // not possible, with the errno in LastErrorCode.
  std::shared_ptr<TextOutputStream> CreateTextFile();
  // Opens an existing file for reading; nil for anything that can't be read as a file.
  std::shared_ptr<TextInputStream> OpenAsTextFile();
  // Opens the file in the application that the system has for its kind, in front if activate.
  void Launch(bool activate) const;
  // The errno of the last failed operation on this object; 0 if there was none.
  int LastErrorCode() const { return lastError_; }

 private:
  friend class TextOutputStream;
  std::string path_;
  int lastError_ = 0;
};

namespace SpecialFolder {
// The folder for this person's settings; nil if there is none.
FolderItemPtr Preferences();
}  // namespace SpecialFolder

// The system's save dialog, modal; nil if the person cancels. The name that is offered is
// defaultName made a plain file name by PlainFileName.
FolderItemPtr GetSaveFolderItem(const std::string& filter, const std::string& defaultName);

// name without anything that could lead elsewhere or disguise it: separators, control characters,
// bidirectional controls, bytes that are no UTF-8 and leading dots become "_", an empty base too.
// At most 200 bytes, cut at a character, with the extension kept.
std::string PlainFileName(const std::string& name);
