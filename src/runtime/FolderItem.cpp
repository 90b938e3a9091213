#include "runtime/FolderItem.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "runtime/Platform.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"

namespace {

constexpr std::size_t kLongestName = 200;
// An extension longer than this is part of the name.
constexpr std::size_t kLongestExtension = 16;

// The bytes of the UTF-8 character at the start of text; 0 if none stands there.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 && first < 0xF5   ? 4
                             : first >= 0xE0 && first < 0xF0 ? 3
                             : first >= 0xC2 && first < 0xE0 ? 2
                                                             : 0;
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
  const bool beyond = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
  return overlong || beyond ? 0 : length;
}

// Characters that a file name has no use for: controls, and those that turn, hide or break text.
bool IsDisguise(std::string_view character) {
  if (character.size() == 1) {
    const auto c = static_cast<unsigned char>(character[0]);
    return c < 0x20 || c == 0x7F || c == '/' || c == '\\' || c == ':';
  }
  if (character.size() == 2)
    return character < "\xC2\xA0" || character == "\xD8\x9C" || character == "\xC2\xAD";
  if (character.size() != 3) return false;
  const bool marks = character >= "\xE2\x80\x8B" && character <= "\xE2\x80\x8F";     // U+200B to U+200F
  const bool breaks = character >= "\xE2\x80\xA8" && character <= "\xE2\x80\xAE";    // U+2028 to U+202E
  const bool isolates = character >= "\xE2\x81\xA0" && character <= "\xE2\x81\xAF";  // U+2060 to U+206F
  return marks || breaks || isolates || character == "\xEF\xBB\xBF";
}

std::string WithoutDisguises(std::string_view name) {
  std::string plain;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t length = CharacterLength(name.substr(at));
    const std::string_view character = name.substr(at, std::max<std::size_t>(length, 1));
    if (length == 0 || IsDisguise(character)) {
      plain += '_';
    } else {
      plain += character;
    }
    at += character.size();
  }
  return plain;
}

void CutAtCharacter(std::string& text, std::size_t most) {
  if (text.size() <= most) return;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  text.resize(most);
}

}  // namespace

std::string FolderItem::Name() const {
  const std::size_t slash = path_.find_last_of('/');
  return slash == std::string::npos ? path_ : path_.substr(slash + 1);
}

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

std::string PlainFileName(const std::string& name) {
  std::string plain = WithoutDisguises(name);
  for (std::size_t i = 0; i < plain.size() && plain[i] == '.' && plain.find_last_of('.') != i; ++i)
    plain[i] = '_';
  std::size_t dot = plain.find_last_of('.');
  if (dot == std::string::npos || plain.size() - dot > kLongestExtension) dot = plain.size();
  const std::string extension = plain.substr(dot);
  std::string base = plain.substr(0, dot);
  if (base.starts_with('.')) base[0] = '_';  // the only dot, in front of what is no extension
  CutAtCharacter(base, kLongestName - extension.size());
  return (base.empty() ? "_" : base) + extension;
}
