// The whole program in a faulty world: what the person is told, and that what stood there before still
// stands.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "http/HTTPSocket.h"
#include "support/Program.h"

namespace {

using Lines = std::vector<std::string>;

const std::vector<Cue> kCues = {
    {"1.5", "2", "one"}, {"62.5", "1", "It&amp;#39;s two"}, {"3600", "1.25", "three"}};
const std::string kDocument = Document(kCues);
const Lines kSRT = {"1\n00:00:01,500 --> 00:00:03,500\none\n\n",
                    "2\n00:01:02,500 --> 00:01:03,500\nIt's two\n\n",
                    "3\n01:00:00,000 --> 01:00:01,250\nthree\n\n"};
constexpr char kOld[] = "an earlier file\n";
constexpr char kOldPrefs[] = "SRT\nfalse\nfalse\nfalse\nfalse\n";

std::string NoConnection(int code, const std::string& cause = "") {
  return "message: Error code: " + std::to_string(code) +
         " - A connection to YouTube was not able to be established. Check your internet connection and try "
         "again." +
         (cause.empty() ? "" : "\ncause: " + cause);
}

constexpr char kBrokeOff[] = "The reply broke off before its first byte.";

std::string NotSaved(const std::string& name, const std::string& why) {
  return "message: \"" + name + "\" could not be saved: " + why + ".";
}

// A thousand files are saved here, and how fast the disk takes them is no part of it.
[[maybe_unused]] const bool inMemory =
    std::filesystem::is_directory("/dev/shm") && ::setenv("TMPDIR", "/dev/shm", 0) == 0;

// The file that a document which ends here gives: its whole cues.
std::string FileOf(const std::string& document) {
  std::string file;
  std::size_t at = 0;
  for (const std::string& cue : kSRT) {
    at = document.find("</text>", at);
    if (at++ == std::string::npos) break;
    file += cue;
  }
  return file;
}

bool IsFirstCues(const std::string& file) {
  std::string cues;
  for (const std::string& cue : kSRT) {
    if (file == cues) return true;
    cues += cue;
  }
  return file == cues;
}

// A program that has one English track, SRT chosen and an earlier file where the next one goes.
struct Downloads : Program {
  Downloads() : Program({{"en", "English", kDocument}}) {
    Search({0});
    if (Form().openBox.Value()) Click("openBox");
    Click("SRTBox");
    WriteFile(prefsPath, kOldPrefs);
    Calls();
  }
  // Time passes only when nothing comes any more.
  Lines Run(const Reply& reply) {
    server.AnswerAt(TrackPath("abc", "en"), reply);
    const std::size_t before = server.Requests().size();
    host.onYield = [this, before] {
      if (server.Requests().size() > before) host.ticks += 150;
    };
    WriteFile(target, kOld);
    host.saves = {target};
    Click("PushButton1");
    host.onYield = nullptr;
    return Calls();
  }
  void ExpectUntouched() {
    EXPECT_EQ(ReadFile(target), kOld);
    EXPECT_EQ(ReadFile(prefsPath), kOldPrefs);
    EXPECT_EQ(folder.Count(), 1U);
  }

  const std::string target = folder / "a.srt";
  const std::string prefsPath = prefs / "com.tarnvale.ravelyn.user.prefs";
  const Lines saved{"save:  English.srt"};
};

// Runs body in a child with mounts of its own; what it returns, or "" where that is not permitted.
std::string WithOwnMounts(const std::function<std::string()>& body) {
  const TemporaryFolder folder;
  const pid_t child = ::fork();
  if (child == 0) {
    const bool permitted =
        ::unshare(CLONE_NEWNS) == 0 && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    if (permitted) WriteFile(folder / "result", body());
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return ReadFile(folder / "result");
}

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

}  // namespace

TEST(FaultyReplies, CutInTheBodyGiveTheCuesThatAreWhole) {
  Downloads program;
  for (std::size_t cut = 1; cut <= kDocument.size(); ++cut) {
    SCOPED_TRACE(cut);
    const std::string body = kDocument.substr(0, cut);
    const std::string expected = FileOf(body);
    EXPECT_EQ(program.Run({OpenPage(body)}), program.saved);
    EXPECT_EQ(ReadFile(program.target), expected);
    if (cut % 16 == 0) {
      EXPECT_EQ(program.Run({OpenPage(body), Reply::End::Close, 1}), program.saved);
      EXPECT_EQ(ReadFile(program.target), expected);
    }
    // A reset may overtake the last bytes.
    const Lines calls = program.Run({OpenPage(body), Reply::End::Reset});
    EXPECT_TRUE(calls == program.saved
                    ? IsFirstCues(ReadFile(program.target))
                    : calls == Lines{NoConnection(0, kBrokeOff)} && ReadFile(program.target) == kOld);
  }
  EXPECT_EQ(ReadFile(program.prefsPath), kOldPrefs);
  EXPECT_EQ(program.folder.Count(), 1U);
}

TEST(FaultyReplies, CutInTheHeadAreToldAndChangeNothing) {
  Downloads program;
  const std::string head = "HTTP/1.0 200 OK\r\nA: b\r\n\r\n";
  for (std::size_t cut = 0; cut < head.size(); ++cut) {
    SCOPED_TRACE(cut);
    // Without a byte the page is an empty one; with some the end of the head is waited for.
    EXPECT_EQ(program.Run({head.substr(0, cut)}),
              Lines{NoConnection(cut == 0 ? 0 : kErrorTimeOut, kBrokeOff)});
    program.ExpectUntouched();
  }
  EXPECT_EQ(program.Run({head}), Lines{NoConnection(0)});
  program.ExpectUntouched();
}

TEST(FaultyReplies, ThatStallGiveWhatCame) {
  Downloads program;
  for (std::size_t cut = 0; cut <= kDocument.size(); cut += 19) {
    SCOPED_TRACE(cut);
    const std::string body = kDocument.substr(0, cut);
    EXPECT_EQ(program.Run({OpenPage(body), Reply::End::Stall}), program.saved);
    EXPECT_EQ(ReadFile(program.target), FileOf(body));
  }
  // Not even a head: a silence is no failed connection, and gives a track without cues.
  EXPECT_EQ(program.Run({"", Reply::End::Stall}), program.saved);
  EXPECT_EQ(ReadFile(program.target), "");
}

TEST(FaultyReplies, ThatLieAboutTheirLengthEnd) {
  Downloads program;
  const auto page = [](const std::string& length) {
    return "HTTP/1.0 200 OK\r\nContent-Length: " + length + "\r\n\r\n" + kDocument;
  };
  const std::size_t size = kDocument.size();
  for (const std::size_t length : {std::size_t{1}, size / 2, size - 1, size, size + 1, size * 1000}) {
    SCOPED_TRACE(length);
    EXPECT_EQ(program.Run({page(std::to_string(length))}), program.saved);
    EXPECT_EQ(ReadFile(program.target), FileOf(kDocument.substr(0, length)));
  }
  for (const char* length : {"0", "-5", "abc", "", "99999999999999999999", "1e3"}) {
    SCOPED_TRACE(length);
    EXPECT_EQ(program.Run({page(length)}), program.saved);
    const std::string whole = FileOf(kDocument.substr(0, length == std::string("1e3") ? 1 : size));
    EXPECT_EQ(ReadFile(program.target), whole);
  }
}

TEST(FaultyReplies, SplitInTheBlankLineAreReadAsOne) {
  Downloads program;
  for (const std::size_t piece : {17U, 18U, 19U, 20U}) {
    EXPECT_EQ(program.Run({OpenPage(kDocument), Reply::End::Close, piece}), program.saved);
    EXPECT_EQ(ReadFile(program.target), FileOf(kDocument));
  }
}

TEST(FaultyReplies, ToSearchListTheTracksThatAreWholeOrNone) {
  Program program;
  const std::string list = TrackList({{"en", "English", ""}, {"de", "German", ""}});
  const std::string none =
      "message: There are no transcripts available for this video. Auto-generated transcripts contain no "
      "data "
      "and cannot be downloaded.";
  for (std::size_t cut = 0; cut <= list.size(); ++cut) {
    SCOPED_TRACE(cut);
    program.server.AnswerAt(ListPath("abc"), {OpenPage(list.substr(0, cut))});
    program.Search({});
    const std::int64_t rows = program.Form().Listbox1.ListCount();
    EXPECT_EQ(program.Form().XMLList.ListCount(), rows);
    EXPECT_EQ(program.Calls(), rows == 0 ? Lines{none} : Lines{});
    EXPECT_EQ(rows > 0 ? program.Form().Listbox1.Cell(0, 0) : "English", "English");
    EXPECT_EQ(rows, cut == list.size() ? 2 : rows);
  }
}

TEST(FaultyReplies, ToOneTrackOfThreeLeaveTheOthers) {
  Program program({{"en", "English", kDocument}, {"de", "German", kDocument}, {"fr", "French", kDocument}});
  program.Search({0, 1, 2});
  program.Click("openBox SRTBox");
  program.Calls();
  program.server.AnswerAt(TrackPath("abc", "de"), {""});
  for (const char* name : {"1", "2"}) program.WillSave(name);
  program.Click("PushButton1");
  EXPECT_EQ(program.Calls(), (Lines{"save:  English.srt", NoConnection(0, kBrokeOff), "save:  French.srt"}));
  EXPECT_EQ(ReadFile(program.folder / "1"), FileOf(kDocument));
  EXPECT_EQ(ReadFile(program.folder / "2"), FileOf(kDocument));
}

TEST(FaultyClock, JumpsEndARunInOrder) {
  for (const std::int64_t jump : {std::int64_t{1} << 61, std::int64_t{-1} << 61}) {
    for (int at = 1; at < 12; ++at) {
      SCOPED_TRACE(jump);
      SCOPED_TRACE(at);
      Downloads program;
      WriteFile(program.target, kOld);
      program.host.saves = {program.target};
      int yields = 0;
      program.host.onYield = [&] { program.host.ticks += ++yields == at ? jump : 0; };
      program.Click("PushButton1");
      const Lines calls = program.Calls();
      ASSERT_EQ(calls.size(), 1U);
      const bool timedOut = calls == Lines{NoConnection(kErrorTimeOut)};
      EXPECT_TRUE(timedOut || calls == program.saved) << calls.front();
      EXPECT_TRUE(IsFirstCues(ReadFile(program.target)) || (timedOut && ReadFile(program.target) == kOld));
      EXPECT_TRUE(jump > 0 || ReadFile(program.target) == FileOf(kDocument));
    }
  }
}

TEST(FaultyDisk, EveryTargetThatCantBeIsToldOnceAndNothingIsOpened) {
  Program program({{"en", "English", kDocument}});
  program.Search({0});
  const std::string folder = program.folder.Path();
  WriteFile(program.folder / "file", kOld);
  std::filesystem::create_directory(program.folder / "sub");
  std::filesystem::create_symlink("gone/away", program.folder / "nowhere");
  const std::string longName(300, 'n');
  const std::pair<std::string, std::string> cases[] = {
      {"/dev/full", NotSaved("full", "No space left on device")},
      {folder + "/sub", NotSaved("sub", "Is a directory")},
      {folder + "/" + longName, NotSaved(longName, "File name too long")},
      {folder + "/nowhere", NotSaved("nowhere", "No such file or directory")},
      {folder + "/file/below", NotSaved("below", "Not a directory")},
      {"/proc/self/none", NotSaved("none", "No such file or directory")},
  };
  for (const std::string format : {"SRTBox", "WebVTTBox", "TextBox lineBox"}) {
    program.Click(format);
    for (const auto& [path, message] : cases) {
      program.host.saves = {path};
      program.Calls();
      program.Click("PushButton1");
      const Lines calls = program.Calls();
      ASSERT_EQ(calls.size(), 2U) << path;
      EXPECT_EQ(calls.back(), message);
    }
  }
  EXPECT_EQ(ReadFile(program.folder / "file"), kOld);
  EXPECT_EQ(program.folder.Count(), 3U);
}

TEST(FaultyDisk, AFolderThatGoesDuringTheDialogIsTold) {
  Downloads program;
  program.host.onSaveDialog = [&] { std::filesystem::remove_all(program.folder.Path()); };
  EXPECT_EQ(program.Run({Page(kDocument)}),
            (Lines{program.saved[0], NotSaved("a.srt", "No such file or directory")}));
  EXPECT_FALSE(std::filesystem::exists(program.folder.Path()));
}

// The limit on the size of a file makes the disk refuse at any byte.
TEST(FaultyDisk, ThatRefusesAWriteLeavesTheEarlierFile) {
  Downloads program;
  std::vector<Cue> many;
  for (int i = 0; i < 30'000; ++i) many.push_back({std::to_string(i), "1", "words of a cue"});
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  for (const rlim_t most : {rlim_t{0}, rlim_t{1}, rlim_t{4096}, rlim_t{300'000}, rlim_t{1'300'000}}) {
    SCOPED_TRACE(most);
    WriteFile(program.target, kOld);
    program.host.onSaveDialog = [&] {
      const rlimit small{most, before.rlim_max};
      ::setrlimit(RLIMIT_FSIZE, &small);
    };
    const Lines calls = program.Run({Page(Document(many))});
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(calls, (Lines{program.saved[0], NotSaved("a.srt", "File too large")}));
    program.ExpectUntouched();
  }
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &none);
  program.app.Stop();
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(ReadFile(program.prefsPath), kOldPrefs);
  EXPECT_EQ(program.prefs.Count(), 1U);
}

TEST(FaultyDisk, ThatIsFullOrReadOnlyIsToldAndKeepsWhatItHas) {
  const auto run = [](const char* options, bool readOnly) {
    return WithOwnMounts([&]() -> std::string {
      Downloads program;
      const std::string disk = program.folder / "disk";
      std::filesystem::create_directory(disk);
      if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, options) != 0) return "";
      WriteFile(disk + "/a.srt", kOld);
      WriteFile(disk + "/fill", std::string(readOnly ? 1 : 1 << 20, 'x'));
      if (readOnly && ::mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) != 0)
        return "";
      program.host.saves = {disk + "/a.srt"};
      program.Click("PushButton1");
      const std::string result = Joined(program.Calls()) + ReadFile(disk + "/a.srt") +
                                 (std::filesystem::exists(disk + "/fill") ? "" : "gone");
      ::umount2(disk.c_str(), MNT_DETACH);
      return result;
    });
  };
  const std::string full = run("size=64k", false);
  if (full.empty()) GTEST_SKIP() << "mounts are not permitted here";
  EXPECT_EQ(full, "save:  English.srt\n" + NotSaved("a.srt", "No space left on device") + "\n" + kOld);
  EXPECT_EQ(run("size=64k", true),
            "save:  English.srt\n" + NotSaved("a.srt", "Read-only file system") + "\n" + kOld);
}
