#include "runtime/Streams.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "runtime/FileReplacement.h"
#include "runtime/exceptions.h"

TextOutputStream::TextOutputStream(std::unique_ptr<FileReplacement> file) : file_(std::move(file)) {}
TextOutputStream::TextOutputStream(std::shared_ptr<MemoryBlock> block) : block_(std::move(block)) {}
TextOutputStream::~TextOutputStream() = default;

std::shared_ptr<TextOutputStream> TextOutputStream::Create(const FolderItemPtr& file) {
  if (!file) throw NilObjectException("There is no file to write to.");
  try {
    auto replacement = std::make_unique<FileReplacement>(file->Path());
    return std::shared_ptr<TextOutputStream>(new TextOutputStream(std::move(replacement)));
  } catch (const IOException& e) {
    file->lastError_ = e.ErrorNumber();
    throw;
  }
}

void TextOutputStream::Write(std::string_view text) {
  if (text.size() > kBufferSize) {
    SpaceFor(0);
    WriteBufferAnd(text);
  } else {
    buffered_ = static_cast<std::size_t>(Put(SpaceFor(text.size()), text) - buffer_.get());
  }
}

char* TextOutputStream::SpaceFor(std::size_t bytes) {
  if (!block_ && !file_) throw IOException(EBADF);
  if (bytes > kBufferSize - buffered_) WriteBufferAnd("");
  return buffer_.get() + buffered_;
}

// Writes the buffer, then text without a copy. A failure discards the file.
void TextOutputStream::WriteBufferAnd(std::string_view text) {
  const std::string_view buffered(buffer_.get(), std::exchange(buffered_, 0));
  if (block_) {
    block_->Bytes().append(buffered).append(text);
    return;
  }
  auto file = std::move(file_);
  file->Write(buffered);
  file->Write(text);
  file_ = std::move(file);
}

void TextOutputStream::Close() {
  SpaceFor(0);
  WriteBufferAnd("");
  block_.reset();
  if (const auto last = std::move(file_)) last->Commit();
}

std::shared_ptr<TextInputStream> TextInputStream::Open(const std::string& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return nullptr;
  struct stat found;
  std::string text(kLongestFile, '\0');
  std::size_t length = 0;
  ssize_t got = -1;
  if (::fstat(descriptor, &found) == 0 && (S_ISREG(found.st_mode) || S_ISCHR(found.st_mode))) {
    do {
      got = ::read(descriptor, text.data() + length, text.size() - length);
      length += got > 0 ? static_cast<std::size_t>(got) : 0;
    } while (got > 0 && length < text.size());
  } else {
    errno = EISDIR;
  }
  const int error = errno;
  ::close(descriptor);
  errno = error;
  if (got < 0) return nullptr;
  text.resize(length);
  return std::shared_ptr<TextInputStream>(new TextInputStream(std::move(text)));
}

std::string TextInputStream::ReadLine() {
  const std::size_t end = std::min(text_.find_first_of("\r\n", at_), text_.size());
  std::string line = text_.substr(at_, std::min(end - at_, kLongestLine));
  at_ = std::min(text_.size(), end + (text_.compare(end, 2, "\r\n") == 0 ? 2 : 1));
  return line;
}

std::int64_t MemoryBlock::Byte(std::int64_t offset) const {
  if (offset < 0 || offset >= Size()) throw OutOfBoundsException("The block has no byte there.");
  return static_cast<unsigned char>(bytes_[static_cast<std::size_t>(offset)]);
}

std::string MemoryBlock::StringValue(std::int64_t offset, std::int64_t length) const {
  if (offset < 0 || length < 0 || offset > Size() || length > Size() - offset) {
    throw OutOfBoundsException("The block has no such run of bytes.");
  }
  return bytes_.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

std::shared_ptr<BinaryStream> BinaryStream::Create(const FolderItemPtr& file, bool overwrite) {
  if (!file) throw NilObjectException("There is no file to write to.");
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | (overwrite ? O_TRUNC : O_EXCL);
  const int descriptor = ::open(file->Path().c_str(), flags, 0666);
  if (descriptor < 0) throw IOException(errno);
  return std::shared_ptr<BinaryStream>(new BinaryStream(descriptor));
}

BinaryStream::~BinaryStream() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

void BinaryStream::Write(std::string_view bytes) {
  if (block_) {
    block_->Bytes().append(bytes);
    return;
  }
  if (descriptor_ < 0) throw IOException(EBADF);
  WriteAll(descriptor_, bytes);
}

void BinaryStream::Close() {
  block_.reset();
  if (descriptor_ < 0) return;
  if (::close(std::exchange(descriptor_, -1)) != 0) throw IOException(errno);
}
