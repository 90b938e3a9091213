// Saving on a real disk: a file is replaced whole or not at all.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <functional>
#include <tuple>
#include <utility>

#include "runtime/Application.h"
#include "runtime/FolderItem.h"
#include "runtime/Streams.h"
#include "runtime/exceptions.h"
#include "support/FakePlatform.h"
#include "support/TemporaryFolder.h"

// The errno with which the next fsync fails, and the size of the file that the last one was given.
static int syncFailure = 0;
static off_t syncedSize = 0;
extern "C" int fsync(int descriptor) {
  struct stat found {};
  ::fstat(descriptor, &found);
  syncedSize = found.st_size;
  errno = std::exchange(syncFailure, 0);
  return errno == 0 ? 0 : -1;
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

struct stat StateOf(const std::string& path) {
  struct stat found {};
  ::stat(path.c_str(), &found);
  return found;
}

TEST(Saving, TheEarlierFileStaysWholeUntilClose) {
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

TEST(Saving, AStreamThatIsDestroyedOpenLeavesNothing) {
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
  const std::tuple<std::string, const char*, int> links[] = {{folder / "sub/target", "first", 0},
                                                             {"first", "second", 0},
                                                             {"sub/none", "dangling", 0},
                                                             {"loop", "loop", ELOOP}};
  for (const auto& [target, link, error] : links) {
    std::filesystem::create_symlink(target, folder / link);
    EXPECT_EQ(Save(folder / link, link), error);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / link)) << link;
  }
  EXPECT_EQ(ReadFile(folder / "sub/target") + ReadFile(folder / "sub/none"), "seconddangling");
  EXPECT_EQ(folder.Count(), 5u);
  // Each adds a link to "first", which is one itself: 39 are followed.
  for (int link = 1; link <= 40; ++link) {
    const std::string name = folder / std::to_string(link);
    std::filesystem::create_symlink(link == 1 ? "first" : std::to_string(link - 1), name);
    EXPECT_EQ(Save(name, "chained"), link < 39 ? 0 : ELOOP) << link;
  }
}

TEST(Saving, ModeAndOwnerAreKeptAndANewFileObeysTheUmask) {
  const TemporaryFolder folder;
  const std::string path = folder / "a";
  WriteFile(path, "old");
  // A change of owner needs root, and clears bits of the mode.
  const std::tuple<uid_t, gid_t, mode_t> states[] = {{1, 0, 0600}, {0, 1, 0644}, {0, 0, 0755}, {0, 0, 02755}};
  for (const auto& [user, group, mode] : states) {
    [[maybe_unused]] const int asRoot = ::chown(path.c_str(), user, group);
    ::chmod(path.c_str(), mode);
    const struct stat before = StateOf(path);
    EXPECT_EQ(Save(path, "new"), 0);
    const struct stat after = StateOf(path);
    EXPECT_EQ(std::tuple(after.st_uid, after.st_gid, after.st_mode & 07777),
              std::tuple(before.st_uid, before.st_gid, mode));
    EXPECT_NE(after.st_ino, before.st_ino);
  }
  const mode_t before = ::umask(027);
  EXPECT_EQ(Save(folder / "b", "new"), 0);
  ::umask(before);
  EXPECT_EQ(StateOf(folder / "b").st_mode & 07777, 0640u);
}

TEST(Saving, AFailureGivesItsErrnoAndLeavesTheFolderAsItWas) {
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
  const auto descriptors = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const auto before = descriptors();
  for (const auto& [path, error] : cases) EXPECT_EQ(Save(path, "x"), error) << path;
  EXPECT_EQ(descriptors(), before);
  EXPECT_EQ(ReadFile(folder / "file"), "old");
  EXPECT_EQ(folder.Count(), 3u);
}

// EINVAL: this file system has nothing to do for fsync.
TEST(Saving, TheBytesReachTheDiskBeforeTheName) {
  const TemporaryFolder folder;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  for (const auto& [failure, text] : {std::pair(EINVAL, "here"), {EIO, "lost!"}}) {
    syncFailure = failure;
    EXPECT_EQ(Save("a", text), failure == EINVAL ? 0 : EIO) << "in the working folder";
    EXPECT_EQ(syncedSize, static_cast<off_t>(std::string(text).size()));
  }
  std::filesystem::current_path(before);
  EXPECT_EQ(ReadFile(folder / "a"), "here");
  EXPECT_EQ(FolderItem("a").Name() + FolderItem("b/").Name() + FolderItem("c/d").Name(), "ad");
}

// Runs body in a child process as nobody: permission bits do not stop root.
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

TEST(Saving, AFileInALockedFolderIsWrittenInPlace) {
  const TemporaryFolder folder;
  for (const char* name : {"open", "locked"}) WriteFile(folder / name, "the old and longer text");
  ::chmod(folder.Path().c_str(), 0555);
  ::chmod((folder / "open").c_str(), 0666);
  ::chmod((folder / "locked").c_str(), 0444);
  for (const std::string& text : {"new"s, std::string(5000, 'x')}) {
    EXPECT_EQ(AsNobody([&] { return Save(folder / "open", text); }), 0);
    EXPECT_EQ(ReadFile(folder / "open"), text);
  }
  const auto beyondTheSizeLimit = [&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit most{6000, 6000};
    ::setrlimit(RLIMIT_FSIZE, &most);
    return Save(folder / "open", std::string(9000, 'y'));
  };
  EXPECT_EQ(AsNobody(beyondTheSizeLimit), EFBIG);
  EXPECT_EQ(ReadFile(folder / "open"), std::string(5000, 'x')) << "the space is reserved first";
  EXPECT_EQ(AsNobody([&] { return Save(folder / "locked", "new"); }), EACCES);
  for (const std::string& path : {folder / "made", "/made"s})
    EXPECT_EQ(AsNobody([&] { return Save(path, "new"); }), EACCES) << path;
  EXPECT_EQ(ReadFile(folder / "locked"), "the old and longer text");
  ::chmod(folder.Path().c_str(), 0777);
  EXPECT_EQ(AsNobody([&] { return Save(folder / "locked", "new"); }), EACCES) << "a read-only file stays";
  EXPECT_EQ(AsNobody([&] { return Save(folder / "open", "mine?"); }), 0);
  EXPECT_EQ(StateOf(folder / "open").st_uid, ::getuid()) << "the owner is kept";
  EXPECT_EQ(folder.Count(), 2u);
}

// A pipe that the test reads while the program keeps delivering events.
struct Pipes : testing::Test {
  Pipes() {
    ::mkfifo(path.c_str(), 0600);
    reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  }
  ~Pipes() override {
    sigset_t blocked, pending;
    ::pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    ::sigpending(&pending);
    EXPECT_EQ(::sigismember(&blocked, SIGPIPE) + ::sigismember(&pending, SIGPIPE), 0)
        << "SIGPIPE is neither blocked nor pending afterwards";
  }
  const TemporaryFolder folder;
  const std::string path = folder / "pipe", text = std::string(300'000, 'p') + "end";
  int reader = -1;
  FakePlatform host;
  Application app{host};
};

TEST_F(Pipes, APipeWithoutAReaderRaisesBrokenPipe) {
  const auto stream = TextOutputStream::Create(At(path));
  stream->Write("short");
  host.onYield = [&] { ::close(std::exchange(reader, -1)); };
  EXPECT_EQ(Save(path, text), EPIPE) << "the reader closes during the wait";
  app.Dispatch(nullptr, [&] { stream->Close(); });
  EXPECT_EQ(host.calls, std::vector<std::string>{"message: IOException: Broken pipe"})
      << "the reader closed before";
}

TEST_F(Pipes, AFullPipeIsWrittenAsItIsRead) {
  std::string taken, bytes(50'000, '\0');
  int silences = 0;
  const auto take = [&] {
    const ssize_t got = ::read(reader, bytes.data(), bytes.size());
    taken.append(bytes, 0, static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return got > 0;
  };
  host.onYield = [&] { host.yields % 2 == 1 && take(); };
  host.onSilence = [&] { ++silences, take(); };
  EXPECT_EQ(Save(path, text), 0);
  while (take()) continue;
  EXPECT_TRUE(taken == text);
  EXPECT_EQ(silences, host.yields / 2) << "each wait ends as soon as the pipe takes bytes";
}

TEST_F(Pipes, QuittingEndsTheWaitForAPipe) {
  bool continued = false;
  host.onYield = [&] {
    if (host.yields == 3) app.Quit();
  };
  app.Dispatch(nullptr, [&] { Save(path, text), continued = true; });
  EXPECT_FALSE(continued);
  EXPECT_EQ(host.calls, std::vector<std::string>()) << "without a message";
}

}  // namespace
