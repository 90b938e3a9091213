// The whole program with faulty servers and disks: what the user is shown, and that earlier files survive.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "http/HTTPSocket.h"
#include "support/Program.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kDocument =
    Document({{"1.5", "2", "one"}, {"62.5", "1", "It&amp;#39;s two"}, {"3600", "1.25", "three"}});
const Lines kSRT = {"1\n00:00:01,500 --> 00:00:03,500\none\n\n",
                    "2\n00:01:02,500 --> 00:01:03,500\nIt's two\n\n",
                    "3\n01:00:00,000 --> 01:00:01,250\nthree\n\n"};
constexpr char kOld[] = "an earlier file\n";
constexpr char kOldPrefs[] = "SRT\nfalse\nfalse\nfalse\nfalse\n";

constexpr char kNoConnection[] =
    "message: Error code: 0 - A connection to YouTube was not able to be established. Check your internet connection and try again.\ncause: The reply broke off before the first byte of its text.";

// A thousand files are saved here; the speed of the disk is not under test.
[[maybe_unused]] const bool inMemory =
    std::filesystem::is_directory("/dev/shm") && ::setenv("TMPDIR", "/dev/shm", 0) == 0;

// The file for a document cut at this byte: its complete cues.
std::string FileOf(const std::string& document) {
  std::string file;
  for (std::size_t cue = 0; cue + 1 < Split(document, "</text>").size(); ++cue) file += kSRT.at(cue);
  return file;
}

bool IsFirstCues(const std::string& file) {
  return file.empty() || file == kSRT[0] || file == kSRT[0] + kSRT[1] || file == kSRT[0] + kSRT[1] + kSRT[2];
}

// A program with one English track and SRT chosen; the file that it will save exists already.
struct Downloads : Program {
  Downloads() : Program({{"en", "English", kDocument}}) {
    Search({0});
    Click("openBox SRTBox");
    WriteFile(prefsPath, kOldPrefs);
    Calls();
  }
  // The clock moves only when nothing more arrives.
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

  const std::string target = folder / "a.srt", prefsPath = prefs / "com.tarnvale.ravelyn.user.prefs";
  const Lines saved{"save:  English.srt"};
};

}  // namespace

TEST(FaultyReplies, ACutDocumentGivesItsCompleteCues) {
  Downloads program;
  for (std::size_t cut = 1; cut <= kDocument.size(); ++cut) {
    SCOPED_TRACE(cut);
    const std::string body = kDocument.substr(0, cut);
    EXPECT_EQ(program.Run({OpenPage(body)}), program.saved);
    EXPECT_EQ(ReadFile(program.target), FileOf(body));
    // A reset may arrive before the last bytes.
    const Lines calls = program.Run({OpenPage(body), Reply::End::Reset});
    EXPECT_TRUE(calls == program.saved ? IsFirstCues(ReadFile(program.target))
                                       : calls == Lines{kNoConnection} && ReadFile(program.target) == kOld);
  }
  EXPECT_EQ(program.folder.Count(), 1U);
}

TEST(FaultyReplies, ACutListGivesItsCompleteTracksOrNone) {
  Program program;
  const std::string list = TrackList({{"en", "English", ""}, {"de", "German", ""}});
  const std::string none =
      "message: There are no transcripts available for this video. Auto-generated transcripts contain no data and cannot be downloaded.";
  for (std::size_t cut = 0; cut <= list.size(); ++cut) {
    SCOPED_TRACE(cut);
    program.server.AnswerAt(ListPath("abc"), {OpenPage(list.substr(0, cut))});
    program.Search({});
    const std::int64_t whole = Ubound(Split(list.substr(0, cut), "\"/>"));
    EXPECT_EQ(program.Form().Listbox1.ListCount(), whole);
    EXPECT_EQ(program.Form().XMLList.ListCount(), whole);
    EXPECT_EQ(program.Calls(), whole == 0 ? Lines{none} : Lines{});
  }
}

// A limit on the file size makes the disk refuse at any byte.
TEST(FaultyDisk, ARefusedWriteLeavesTheEarlierFile) {
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
    EXPECT_EQ(calls, (Lines{program.saved[0], "message: \"a.srt\" could not be saved: File too large."}));
    EXPECT_EQ(ReadFile(program.target) + ReadFile(program.prefsPath), std::string(kOld) + kOldPrefs);
    EXPECT_EQ(program.folder.Count(), 1U);
  }
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &none);
  program.app.Stop();
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(ReadFile(program.prefsPath), kOldPrefs);
  EXPECT_EQ(program.prefs.Count(), 1U);
}
