// Streams that read and write files and blocks of bytes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "runtime/FolderItem.h"
#include "runtime/Text.h"
#include "runtime/pieces.h"

class FileReplacement;
class MemoryBlock;

// Writes a text file, whole or not at all. The bytes go to a new file beside the target, which replaces it on
// Close; until then, and after any failure, the target is unchanged. Destroying the stream without Close
// discards the new file. Links are followed once, at the start. An existing file keeps its mode and owner; a
// new one obeys the umask. If the folder takes no new file, or the target is no regular file, the bytes stay
// in memory and are written in place on Close, which delivers events while it waits for the reader of a pipe.
class TextOutputStream {
 public:
  // Raises IOException, whose errno is then the file's LastErrorCode too; NilObjectException for a nil file.
  static std::shared_ptr<TextOutputStream> Create(const FolderItemPtr& file);
  // Appends to a block in memory; nothing fails.
  explicit TextOutputStream(std::shared_ptr<MemoryBlock> block);
  ~TextOutputStream();

  // These raise IOException; the stream is then closed, and the target is unchanged.
  void Write(std::string_view text);
  void WriteLine(std::string_view text) { WritePieces(text, EndOfLine); }
  // Writes the pieces one after another (see runtime/pieces.h).
  template <typename... Piece>
  void WritePieces(const Piece&... pieces) {
    const std::size_t most = (std::size_t{0} + ... + MostBytes(pieces));
    if (most > kBufferSize) return Write(TextOf(pieces...));
    char* end = SpaceFor(most);
    ((end = Put(end, pieces)), ...);
    buffered_ = static_cast<std::size_t>(end - buffer_.get());
  }
  void Close();

 private:
  static constexpr std::size_t kBufferSize = 64 * 1024;
  explicit TextOutputStream(std::unique_ptr<FileReplacement> file);
  // The end of the buffer's contents, followed by space for `bytes`. Requires: bytes <= kBufferSize.
  char* SpaceFor(std::size_t bytes);
  void WriteBufferAnd(std::string_view text);
  std::unique_ptr<FileReplacement> file_;
  std::shared_ptr<MemoryBlock> block_;
  // For small pieces.
  std::unique_ptr<char[]> buffer_ = std::make_unique_for_overwrite<char[]>(kBufferSize);
  std::size_t buffered_ = 0;  // bytes in it
};

// Reads a text file line by line. A line ends with LF, CR LF or CR. ReadLine gives the first kLongestLine
// bytes of a line; only the first kLongestFile bytes of a file are read.
class TextInputStream {
 public:
  static constexpr std::size_t kLongestLine = 4096;
  static constexpr std::size_t kLongestFile = 1 << 20;
  // nil, with errno set, for anything but a readable regular file or character device.
  static std::shared_ptr<TextInputStream> Open(const std::string& path);

  // The next line without its line end; "" at the end of the file.
  std::string ReadLine();
  void Close() { text_.clear(), at_ = 0; }

 private:
  explicit TextInputStream(std::string text) : text_(std::move(text)) {}
  std::string text_;
  std::size_t at_ = 0;
};

// A growing block of bytes. The program itself reads it through Bytes only.
class MemoryBlock {
 public:
  explicit MemoryBlock(std::int64_t size) : bytes_(static_cast<std::size_t>(size < 0 ? 0 : size), '\0') {}
  std::int64_t Size() const { return static_cast<std::int64_t>(bytes_.size()); }
  // OutOfBoundsException for an offset or a length beyond the block.
  std::int64_t Byte(std::int64_t offset) const;
  std::string StringValue(std::int64_t offset, std::int64_t length) const;

  // The bytes themselves: a stream appends to them, a caller may move them out.
  std::string& Bytes() { return bytes_; }

 private:
  std::string bytes_;
};

// Writes raw bytes to the end of a block or to a file.
class BinaryStream {
 public:
  explicit BinaryStream(std::shared_ptr<MemoryBlock> block) : block_(std::move(block)) {}
  // Empties or creates a file and writes it in place; without overwrite an existing file is an error.
  // Raises IOException.
  static std::shared_ptr<BinaryStream> Create(const FolderItemPtr& file, bool overwrite);
  ~BinaryStream();
  BinaryStream(const BinaryStream&) = delete;
  BinaryStream& operator=(const BinaryStream&) = delete;

  // These raise IOException.
  void Write(std::string_view bytes);
  void Close();

 private:
  explicit BinaryStream(int descriptor) : descriptor_(descriptor) {}
  std::shared_ptr<MemoryBlock> block_;
  int descriptor_ = -1;
};
