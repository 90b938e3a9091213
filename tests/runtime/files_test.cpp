// Files and blocks of bytes: read within bounds, named plainly.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

#include "runtime/FolderItem.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"
#include "support/TemporaryFolder.h"
#include "support/rows.h"

namespace {

using namespace std::string_literals;

FolderItemPtr At(const std::string& path) { return std::make_shared<FolderItem>(path); }

TEST(Folders, AChildMustHaveAPlainName) {
  EXPECT_EQ(FolderItem("/a").Child("b")->Path() + FolderItem("/").Child("b")->Path(), "/a/b/b");
  for (const std::string& name : {""s, "."s, ".."s, "a/b"s, "a\0b"s})
    EXPECT_EQ(FolderItem("/a").Child(name), nullptr) << name;
}

TEST(Reading, EveryLineEndCountsAndLinesAndFilesAreBounded) {
  const TemporaryFolder folder;
  const std::string longLine(10'000, 'l');
  WriteFile(folder / "a", "one\ntwo\r\nthree\r\r\n" + longLine + "\nna\0me\n\nlast"s);
  auto stream = At(folder / "a")->OpenAsTextFile();
  for (const std::string& line :
       {"one"s, "two"s, "three"s, ""s, longLine.substr(0, 4096), "na\0me"s, ""s, "last"s, ""s, ""s})
    EXPECT_EQ(stream->ReadLine(), line);
  WriteFile(folder / "a", std::string((1 << 20) - 1, '\n') + "end");
  stream = At(folder / "a")->OpenAsTextFile();
  for (int line = 1; line < 1 << 20; ++line) stream->ReadLine();
  EXPECT_EQ(stream->ReadLine(), "e") << "the rest is beyond the longest file";
  EXPECT_EQ(At("/dev/zero")->OpenAsTextFile()->ReadLine().size(), 4096u);
}

TEST(Reading, APipeOrAFolderIsNilAndNeverBlocks) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = descriptors();
  for (const std::string& path : {folder / "none", folder / "pipe", folder.Path()}) {
    FolderItem item(path);
    EXPECT_EQ(item.OpenAsTextFile(), nullptr);
    EXPECT_EQ(item.LastErrorCode(), item.Exists() ? EISDIR : ENOENT);
    EXPECT_EQ(item.Exists(), path != folder / "none");
    EXPECT_EQ(item.Directory(), path == folder.Path());
  }
  EXPECT_EQ(descriptors(), before);
  EXPECT_THROW(BinaryStream::Create(At(folder / "pipe"), true), IOException);
}

TEST(Blocks, AStreamExtendsItsBlockAndReadsAreChecked) {
  const auto block = std::make_shared<MemoryBlock>(2);
  BinaryStream stream(block);
  stream.Write("a\xFF");
  EXPECT_EQ(block->Size(), 4);
  EXPECT_EQ(block->Byte(3), 255);
  EXPECT_EQ(block->StringValue(0, 4) + block->StringValue(1, 2) + block->StringValue(4, 0), "\0\0a\xFF\0a"s);
  for (const std::int64_t bad : {-1, 4}) EXPECT_THROW(block->Byte(bad), OutOfBoundsException);
  for (const auto& [offset, length] : {std::pair(-1, INT64_C(1)), {0, -1}, {5, 0}, {1, 4}, {1, INT64_MAX}})
    EXPECT_THROW(block->StringValue(offset, length), OutOfBoundsException) << offset;
  EXPECT_EQ(MemoryBlock(-5).Size(), 0);
  stream.Close();
  EXPECT_THROW(stream.Write("more"), IOException);
}

TEST(Blocks, AStreamToAFileReplacesItsBytesInPlace) {
  const TemporaryFolder folder;
  WriteFile(folder / "a", "longer");
  const auto stream = BinaryStream::Create(At(folder / "a"), true);
  stream->Write("new");
  EXPECT_EQ(ReadFile(folder / "a"), "new");
  stream->Close();
  EXPECT_THROW(stream->Write("more"), IOException);
  EXPECT_THROW(BinaryStream::Create(At(folder / "a"), false), IOException) << "the file exists";
}

TEST(Blocks, PiecesOfAnySizeArriveInOrder) {
  const TemporaryFolder folder;
  const auto block = std::make_shared<MemoryBlock>(1);
  TextOutputStream toBlock(block);
  const auto toFile = TextOutputStream::Create(At(folder / "a"));
  std::string expected;
  for (const std::size_t size :
       std::vector<std::size_t>{0, 1, 40'000, 65'535, 65'536, 3, 65'537, 200'000, 30'000, 30'000}) {
    const std::string text(size, static_cast<char>('a' + size % 26));
    for (TextOutputStream* stream : {&toBlock, toFile.get()}) {
      stream->WritePieces(text, " | ", std::int64_t{-7}, text, INT64_MIN, std::string_view());
      stream->Write(text);
    }
    expected += text + " | -7" + text + "-9223372036854775808" + text;
  }
  toBlock.Close();
  toFile->Close();
  EXPECT_TRUE(block->Bytes() == std::string(1, '\0') + expected);
  EXPECT_TRUE(ReadFile(folder / "a") == expected);
  EXPECT_THROW(toBlock.WritePieces("more"), IOException);
}

}  // namespace
