// Streams over files and over blocks of bytes. A stream that is destroyed without Close discards
// what it has not yet put in place.
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

// Writes a text file. The bytes gather in a file beside the target and take its place at Close,
// whole or not at all: what stood there before is untouched until then, and stays if anything
// fails. A link is followed once, at the start; mode and owner of an old file are kept, a new
// one has what the umask gives. Where no file can be made beside the target, and for a target
// that is no plain file, the bytes are kept in memory and written in place at Close. That may wait for the
// reader of a pipe, with events and yields.
class TextOutputStream {
 public:
  // Raises IOException with the errno, which is then the file's LastErrorCode too;
  // NilObjectException for a nil file.
  static std::shared_ptr<TextOutputStream> Create(const FolderItemPtr& file);
  // Writes at the end of a block in memory; nothing fails then.
  explicit TextOutputStream(std::shared_ptr<MemoryBlock> block);
  ~TextOutputStream();

  // Each raises IOException; the stream is then closed and the old file stands.
  void Write(std::string_view text);
  void WriteLine(std::string_view text) { WritePieces(text, EndOfLine); }
  // One behind the other (see runtime/pieces.h).
  template <typename... Piece>
  void WritePieces(const Piece&... pieces) {
    const std::size_t most = (std::size_t{0} + ... + MostBytes(pieces));
    if (most > kGather) return Write(TextOf(pieces...));
    char* end = Room(most);
    ((end = Put(end, pieces)), ...);
    length_ = static_cast<std::size_t>(end - gathered_.get());
  }
  void Close();

 private:
  static constexpr std::size_t kGather = 64 * 1024;
  explicit TextOutputStream(std::unique_ptr<FileReplacement> file);
  // Room for at most kGather bytes.
  char* Room(std::size_t bytes);
  void PassOn(std::string_view text);
  std::unique_ptr<FileReplacement> file_;
  std::shared_ptr<MemoryBlock> block_;
  std::unique_ptr<char[]> gathered_;  // small pieces on their way, kGather bytes
  std::size_t length_ = 0;            // of them
};

// Reads a text file line by line. A line ends at LF, CR LF or CR. Of a line only the first
// kLongestLine bytes are given, and of a file only the first kLongestFile bytes are read.
class TextInputStream {
 public:
  static constexpr std::size_t kLongestLine = 4096;
  static constexpr std::size_t kLongestFile = 1 << 20;
  // nil, with errno set, for anything but a plain file or a device that can be read.
  static std::shared_ptr<TextInputStream> Open(const std::string& path);

  // The next line without its line end; "" at the end of the file.
  std::string ReadLine();
  void Close() { text_.clear(), at_ = 0; }

 private:
  explicit TextInputStream(std::string text) : text_(std::move(text)) {}
  std::string text_;
  std::size_t at_ = 0;
};

// A growing block of bytes.
class MemoryBlock {
 public:
  explicit MemoryBlock(std::int64_t size) : bytes_(static_cast<std::size_t>(size < 0 ? 0 : size), '\0') {}
  std::int64_t Size() const { return static_cast<std::int64_t>(bytes_.size()); }
  // OutOfBoundsException for an offset or a length beyond the block.
  std::int64_t Byte(std::int64_t offset) const;
  std::string StringValue(std::int64_t offset, std::int64_t length) const;

  // The bytes themselves, for the stream that grows the block and for who takes them over.
  std::string& Bytes() { return bytes_; }

 private:
  std::string bytes_;
};

// Writes raw bytes at the end of a block, which grows with it, or into a file.
class BinaryStream {
 public:
  explicit BinaryStream(std::shared_ptr<MemoryBlock> block) : block_(std::move(block)) {}
  // An empty file open for writing; without overwrite an existing file is an error. The file is
  // written as it stands, not beside it. Raises IOException.
  static std::shared_ptr<BinaryStream> Create(const FolderItemPtr& file, bool overwrite);
  ~BinaryStream();
  BinaryStream(const BinaryStream&) = delete;
  BinaryStream& operator=(const BinaryStream&) = delete;

  // Raise IOException if the file can't take the bytes.
  void Write(std::string_view bytes);
  void Close();

 private:
  explicit BinaryStream(int descriptor) : descriptor_(descriptor) {}
  std::shared_ptr<MemoryBlock> block_;
  int descriptor_ = -1;
};
