// Files on a real disk: replaced whole or not at all, read within bounds, named plainly.

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <utility>

#include "runtime/Application.h"
#include "runtime/FolderItem.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"
#include "support/rows.h"

// What was done to files by name, in order.
static thread_local std::vector<std::string> done;
extern "C" int fsync(int descriptor) {
  struct stat found {};
  ::fstat(descriptor, &found);
  done.push_back("fsync " + std::to_string(found.st_size));
  return reinterpret_cast<decltype(&fsync)>(::dlsym(RTLD_NEXT, "fsync"))(descriptor);
}
extern "C" int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
  done.push_back("rename " + std::string(to));
  return reinterpret_cast<decltype(&renameat)>(::dlsym(RTLD_NEXT, "renameat"))(fromFolder, from, toFolder,
                                                                               to);
}

namespace {

using namespace std::string_literals;

FolderItemPtr At(const std::string& path) { return std::make_shared<FolderItem>(path); }

// The errno with which writing text to path fails, 0 if it succeeds.
int Save(const std::string& path, const std::string& text) {
  try {
    const auto stream = TextOutputStream::Create(At(path));
    stream->Write(text);
    stream->Close();
  } catch (const IOException& e) {
    return e.ErrorNumber();
  }
  return 0;
}

mode_t ModeOf(const std::string& path) {
  struct stat found {};
  ::stat(path.c_str(), &found);
  return found.st_mode & 07777;
}

TEST(Saving, TheOldFileIsWholeUntilClose) {
  const TemporaryFolder folder;
  WriteFile(folder / "a.txt", "old");
  const auto stream = At(folder / "a.txt")->CreateTextFile();
  stream->WriteLine("one");
  stream->Write(std::string(600'000, 'x'));
  EXPECT_EQ(ReadFile(folder / "a.txt"), "old");
  stream->Write("\xFF\0"s);
  stream->Close();
  EXPECT_EQ(ReadFile(folder / "a.txt"), "one\n" + std::string(600'000, 'x') + "\xFF\0"s);
  EXPECT_EQ(folder.Count(), 1u);
  for (const std::size_t size : {1u, 100'000u})
    EXPECT_THROW(stream->Write(std::string(size, 'm')), IOException);
  EXPECT_THROW(stream->Close(), IOException);
}

// A pipe that the test reads, and a program that goes on meanwhile.
struct Pipes : testing::Test {
  Pipes() {
    ::mkfifo(path.c_str(), 0600);
    reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  }
  ~Pipes() override {
    sigset_t blocked, pending;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    ::sigpending(&pending);
    EXPECT_EQ(::sigismember(&blocked, SIGPIPE) + ::sigismember(&pending, SIGPIPE), 0) << "as it was before";
  }
  const TemporaryFolder folder;
  const std::string path = folder / "pipe", text = std::string(300'000, 'p') + "end";
  int reader = -1;
  FakePlatform host;
  Application app{host};
};

TEST_F(Pipes, WhoseReaderGoesAreAnError) {
  const auto stream = TextOutputStream::Create(At(path));
  stream->Write("short");
  host.onYield = [&] { ::close(std::exchange(reader, -1)); };
  EXPECT_EQ(Save(path, text), EPIPE) << "goes while it is waited for";
  app.Dispatch(nullptr, [&] { stream->Close(); });
  EXPECT_EQ(host.calls, std::vector<std::string>{"message: IOException: Broken pipe"}) << "has gone before";
}

TEST_F(Pipes, AreFilledAsFastAsTheyAreRead) {
  std::string taken(2 * text.size(), '\0');
  std::size_t length = 0;
  const auto take = [&] {
    const ssize_t got = ::read(reader, taken.data() + length, 50'000);
    length += got > 0 ? static_cast<std::size_t>(got) : 0;
    return got > 0;
  };
  host.onYield = take;
  EXPECT_EQ(Save(path, text), 0);
  while (take()) continue;
  EXPECT_TRUE(taken.substr(0, length) == text);
}

TEST_F(Pipes, ThatNobodyReadsAreLeftByQuitting) {
  bool wentOn = false;
  host.onYield = [&] {
    if (host.yields == 3) app.Quit();
  };
  app.Dispatch(nullptr, [&] { Save(path, text), wentOn = true; });
  EXPECT_FALSE(wentOn);
  EXPECT_EQ(host.calls, std::vector<std::string>()) << "without a message";
}

TEST(Saving, ADroppedStreamLeavesNothing) {
  const TemporaryFolder folder;
  WriteFile(folder / "old.txt", "old");
  for (const char* name : {"old.txt", "new.txt"})
    TextOutputStream::Create(At(folder / name))->Write(std::string(600'000, 'x'));
  EXPECT_EQ(ReadFile(folder / "old.txt"), "old");
  EXPECT_EQ(folder.Count(), 1u);
}

TEST(Saving, LinksAreFollowedAndStay) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "sub");
  WriteFile(folder / "sub/target", "old");
  std::filesystem::create_symlink("sub/target", folder / "direct");
  std::filesystem::create_symlink(folder / "direct", folder / "chain");
  std::filesystem::create_symlink("sub/none", folder / "dangling");
  std::filesystem::create_symlink("loop", folder / "loop");
  EXPECT_EQ(Save(folder / "chain", "new"), 0);
  EXPECT_EQ(Save(folder / "dangling", "made"), 0);
  EXPECT_EQ(Save(folder / "loop", "x"), ELOOP);
  EXPECT_EQ(ReadFile(folder / "sub/target") + ReadFile(folder / "sub/none"), "newmade");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "chain") &&
              std::filesystem::is_symlink(folder / "dangling"));
  EXPECT_EQ(folder.Count(), 5u);
}

TEST(Saving, ModeIsKeptAndANewFileObeysTheMask) {
  const TemporaryFolder folder;
  for (const mode_t mode : {0600u, 0644u, 0755u, 0640u, 02755u}) {
    WriteFile(folder / "a", "old");
    ::chmod((folder / "a").c_str(), mode);
    EXPECT_EQ(Save(folder / "a", "new"), 0);
    EXPECT_EQ(ModeOf(folder / "a"), mode);
  }
  const mode_t before = ::umask(027);
  EXPECT_EQ(Save(folder / "b", "new"), 0);
  ::umask(before);
  EXPECT_EQ(ModeOf(folder / "b"), 0640u);
}

TEST(Saving, ToldFailuresLeaveEverythingAsItWas) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder / "sub");
  WriteFile(folder / "file", "old");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  const std::pair<std::string, int> cases[] = {
      {folder / "sub", EISDIR},       {folder / std::string(300, 'n'), ENAMETOOLONG},
      {folder / "none/file", ENOENT}, {folder / "file/below", ENOTDIR},
      {"/dev/full", ENOSPC},          {folder / "pipe", ENXIO},
      {folder.Path() + "/", EINVAL},  {folder / "a\0b"s, EINVAL},
  };
  for (const auto& [path, error] : cases) EXPECT_EQ(Save(path, "x"), error) << path;
  EXPECT_EQ(ReadFile(folder / "file"), "old");
  EXPECT_EQ(folder.Count(), 3u);
  EXPECT_THROW(BinaryStream::Create(At(folder / "file"), false), IOException) << "is there";
}

TEST(Saving, TakesAPathFromTheWorkingFolderAsWell) {
  const TemporaryFolder folder;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  done.clear();
  EXPECT_EQ(Save("a", "here"), 0);
  EXPECT_EQ(done, (std::vector<std::string>{"fsync 4", "rename a"}))
      << "the bytes reach the disk before the name";
  std::filesystem::current_path(before);
  EXPECT_EQ(ReadFile(folder / "a"), "here");
  EXPECT_EQ(FolderItem("a").Name() + FolderItem("b/").Name() + FolderItem("c/d").Name(), "ad");
}

TEST(Folders, HaveChildrenOfPlainNamesOnly) {
  EXPECT_EQ(FolderItem("/a").Child("b")->Path() + FolderItem("/").Child("b")->Path(), "/a/b/b");
  for (const std::string& name : {""s, "."s, ".."s, "a/b"s, "a\0b"s})
    EXPECT_EQ(FolderItem("/a").Child(name), nullptr) << name;
}

TEST(Saving, TheItemKnowsWhyItsStreamFailed) {
  const TemporaryFolder folder;
  FolderItem item(folder.Path());
  EXPECT_EQ(item.CreateTextFile(), nullptr);
  EXPECT_EQ(item.LastErrorCode(), EISDIR);
  const auto shared = At(folder.Path());
  EXPECT_THROW(TextOutputStream::Create(shared), IOException);
  EXPECT_EQ(shared->LastErrorCode(), EISDIR);
}

// Runs body as a user whom permission bits stop, as they don't stop root.
int AsNobody(const std::function<int()>& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    const bool dropped = ::getuid() != 0 || (::setgid(65534) == 0 && ::setuid(65534) == 0);
    ::_exit(dropped ? body() : 99);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Saving, WritesInPlaceWhereTheFolderTakesNoFile) {
  const TemporaryFolder folder;
  for (const char* name : {"open", "locked"}) WriteFile(folder / name, "the old and longer text");
  ::chmod(folder.Path().c_str(), 0555);
  ::chmod((folder / "open").c_str(), 0666);
  ::chmod((folder / "locked").c_str(), 0444);
  for (const std::string& text : {"new"s, std::string(5000, 'x')}) {
    EXPECT_EQ(AsNobody([&] { return Save(folder / "open", text); }), 0);
    EXPECT_EQ(ReadFile(folder / "open"), text);
  }
  const auto onAFullDisk = [&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit most{6000, 6000};
    ::setrlimit(RLIMIT_FSIZE, &most);
    return Save(folder / "open", std::string(9000, 'y'));
  };
  EXPECT_EQ(AsNobody(onAFullDisk), EFBIG);
  EXPECT_EQ(ReadFile(folder / "open"), std::string(5000, 'x')) << "its room is reserved first";
  EXPECT_EQ(AsNobody([&] { return Save(folder / "locked", "new"); }), EACCES);
  for (const std::string& path : {folder / "made", "/made"s})
    EXPECT_EQ(AsNobody([&] { return Save(path, "new"); }), EACCES) << path;
  EXPECT_EQ(ReadFile(folder / "locked"), "the old and longer text");
  ::chmod(folder.Path().c_str(), 0777);
  EXPECT_EQ(AsNobody([&] { return Save(folder / "locked", "new"); }), EACCES) << "a locked file stays";
  EXPECT_EQ(AsNobody([&] { return Save(folder / "open", "mine?"); }), 0);
  struct stat found {};
  ::stat((folder / "open").c_str(), &found);
  EXPECT_EQ(found.st_uid, ::getuid()) << "the owner is kept";
  EXPECT_EQ(folder.Count(), 2u);
}

TEST(Reading, LinesOfEveryKindWithinBounds) {
  const TemporaryFolder folder;
  const std::string longLine(10'000, 'l');
  WriteFile(folder / "a", "one\ntwo\r\nthree\r\r\n" + longLine + "\nna\0me\n\nlast"s);
  const auto stream = At(folder / "a")->OpenAsTextFile();
  ASSERT_NE(stream, nullptr);
  for (const std::string& line :
       {"one"s, "two"s, "three"s, ""s, longLine.substr(0, 4096), "na\0me"s, ""s, "last"s, ""s, ""s}) {
    EXPECT_EQ(stream->ReadLine(), line);
  }
  std::filesystem::resize_file(folder / "a", std::uintmax_t{3} << 30);
  const auto huge = At(folder / "a")->OpenAsTextFile();
  EXPECT_EQ(huge->ReadLine(), "one");
  EXPECT_EQ(At("/dev/zero")->OpenAsTextFile()->ReadLine().size(), 4096u);
}

TEST(Reading, WhatIsNoFileIsNilAndNeverBlocks) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  FolderItem none(folder / "none");
  EXPECT_EQ(none.OpenAsTextFile(), nullptr);
  EXPECT_EQ(none.LastErrorCode(), ENOENT);
  EXPECT_FALSE(none.Exists() || none.Directory());
  for (const std::string& path : {folder / "pipe", folder.Path()}) {
    FolderItem item(path);
    EXPECT_EQ(item.OpenAsTextFile(), nullptr);
    EXPECT_EQ(item.LastErrorCode(), EISDIR);
  }
  EXPECT_TRUE(At(folder.Path())->Directory());
  EXPECT_THROW(BinaryStream::Create(At(folder / "pipe"), true), IOException);
}

TEST(Blocks, GrowByTheirStreamAndCheckTheirBounds) {
  const auto block = std::make_shared<MemoryBlock>(2);
  BinaryStream stream(block);
  stream.Write("a\xFF");
  EXPECT_EQ(block->Size(), 4);
  EXPECT_EQ(block->Byte(3), 255);
  EXPECT_EQ(block->StringValue(1, 2), "\0a"s);
  EXPECT_EQ(block->StringValue(4, 0), "");
  for (const std::int64_t bad : {-1, 4}) EXPECT_THROW(block->Byte(bad), OutOfBoundsException);
  EXPECT_THROW(block->StringValue(1, 4), OutOfBoundsException);
  EXPECT_THROW(block->StringValue(1, INT64_MAX), OutOfBoundsException);
  EXPECT_EQ(MemoryBlock(-5).Size(), 0);
  stream.Close();
  EXPECT_THROW(stream.Write("more"), IOException);
}

TEST(Blocks, TakePiecesOfAnySizeInTheirOrder) {
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

TEST(Names, BecomePlain) {
  const std::string e = "\xC3\xA9";
  std::string many;
  for (int i = 0; i < 150; ++i) many += e;
  for (
      const auto& row : Rows(
          "German.txt~German.txt|../../etc/"
          "passwd~___.._etc_passwd|a\\b:c\x01\x7F\n~a_b_c___|a\0b~a_b|.hidden~_.hidden|"
          "..txt~_.txt|...a.srt~___a.srt|.txt~_.txt|~_|.~_.|.a hidden name with a tail~_a hidden name with a "
          "tail|"
          "a\xFF\xC3(\xED\xA0\x80.vtt~a__(___.vtt|\xE2\x80\xAEgpj.exe~_gpj.exe|"
          // Of each range the first and the last that is dropped; of characters the first and the last, and
          // what is none.
          "\x1F\xC2\x80\xC2\x9F\xC2\xAD\xD8\x9C\xEF\xBB\xBF\xE2\x80\x8B\xE2\x80\x8F\xE2\x80\xA8\xE2\x80\xAE"
          "\xE2\x81\xA0\xE2\x81\xAF~____________|"
          "\xC1\xBF \xE0\x9F\xBF \xF0\x8F\xBF\xBF \xF4\x90\x80\x80 \xF5\x80\x80\x80 \xE2\x80~__ ___ ____ ____ ____ __"s))
    EXPECT_EQ(PlainFileName(row[0]), row[1]) << row[0];
  for (const std::string& same :
       {" \xC2\xA0\xE2\x80\x8A\xE2\x80\x90\xE2\x80\xA7\xE2\x80\xAF\xE2\x81\x9F\xE2\x81\xB0"s,
        "\xC2\xA1\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"s,
        "日本語 (Brésil).srt"s})
    EXPECT_EQ(PlainFileName(same), same);
  const std::string n(300, 'n'), fifteen = ".fifteen-letters";
  const std::pair<std::string, std::string> cuts[] = {
      {n + ".vtt", n.substr(0, 196) + ".vtt"},
      {many + ".txt", many.substr(0, 196) + ".txt"},
      {"x" + many + ".txt", "x" + many.substr(0, 194) + ".txt"},
      {n, n.substr(0, 200)},
      {"a." + n, "a." + n.substr(0, 198)},
      {n + fifteen, n.substr(0, 184) + fifteen},
      {n + ".sixteen--letters", n.substr(0, 200)}};
  for (const auto& [name, plain] : cuts) EXPECT_EQ(PlainFileName(name), plain);
}

}  // namespace
