#include "runtime/FolderItem.h"

#include <sys/stat.h>

#include <cerrno>

#include "runtime/Platform.h"
#include "runtime/Streams.h"
#include "runtime/Text.h"
#include "runtime/exceptions.h"

FolderItemPtr FolderItem::Child(const std::string& name) const {
  const bool plain = !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
                     name.find('\0') == std::string::npos;
  if (!plain) return nullptr;
  const bool hasSlash = !path_.empty() && path_.back() == '/';
  return std::make_shared<FolderItem>(path_ + (hasSlash ? "" : "/") + name);
}

bool FolderItem::Exists() const {
  struct stat found;
  return ::stat(path_.c_str(), &found) == 0;
}

bool FolderItem::Directory() const {
  struct stat found;
  return ::stat(path_.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

std::shared_ptr<TextOutputStream> FolderItem::CreateTextFile() {
  const auto self = std::make_shared<FolderItem>(path_);
  try {
    return TextOutputStream::Create(self);
  } catch (const IOException&) {
    lastError_ = self->LastErrorCode();
    return nullptr;
  }
}

std::shared_ptr<TextInputStream> FolderItem::OpenAsTextFile() {
  auto stream = TextInputStream::Open(path_);
  if (!stream) lastError_ = errno;
  return stream;
}

void FolderItem::Launch(bool) const {
  if (Platform* host = Platform::Current()) host->Launch(path_);
}

FolderItemPtr SpecialFolder::Preferences() {
  Platform* host = Platform::Current();
  const std::string path = host ? host->PreferencesFolder() : "";
  return path.empty() ? nullptr : std::make_shared<FolderItem>(path);
}

FolderItemPtr GetSaveFolderItem(const std::string& filter, const std::string& defaultName) {
  const auto path = AskSavePath(filter, PlainFileName(defaultName));
  return path ? std::make_shared<FolderItem>(*path) : nullptr;
}
