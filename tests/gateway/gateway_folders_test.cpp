// Caption files in folders: which are served, under which names, and how changes are seen.

#include <fcntl.h>
#include <sys/inotify.h>

#include <future>

#include "descriptors.h"
#include "gateway/sources/FolderSource.h"
#include "gateway/sources/RecentDocuments.h"
#include "gateway/sources/caption_name.h"
#include "gateway/sources/log.h"
#include "gateway/sources/track_name.h"
#include "gateway_fixture.h"
#include "runtime/Text.h"
#include "sources_fixture.h"

namespace {

using namespace gateway_test;
using gateway::FolderSource;
using Lines = std::vector<std::string>;

constexpr auto kSettledAtOnce = std::chrono::milliseconds(-3'600'000);

TEST(TrackNames, CodesOfYtDlpGiveEnglishNames) {
  for (const std::string& row :
       Split("en=English|en-orig=English (automatic) *|pt-BR-orig=Portuguese (Brazil, automatic) *|"
             "de-en=German (translated from English)|en-de=English (translated from German)|"
             "zh-Hant-en=Chinese (Traditional, translated from English)|"
             "de-zh-Hans=German (translated from Chinese (Simplified))|pt-BR=Portuguese (Brazil)|"
             "pt-br=Portuguese (Brazil)|pt_BR=Portuguese (Brazil)|de-ar=German (translated from Arabic)|"
             "de-fil-Latn-PH=German (translated from Filipino (Latin, Philippines))|de-root=de-root|"
             "de-qqq=de-qqq|pt-pt=Portuguese (Portugal)|es-419=Spanish (Latin America)|"
             "en-nP7-2PuUl7o=English (another version)|"
             "en-GB-nP7_2PuUl7o=English (United Kingdom, another version)|"
             "de-en-nP7-2PuUl7o=German (translated from English)|nP7-2PuUl7o=nP7-2PuUl7o|qqq=qqq|-orig=-orig",
             "|")) {
    const auto name = gateway::NameOfTrack(NthField(row, "=", 1));
    EXPECT_EQ(name.english + (name.automatic ? " *" : ""), NthField(row, "=", 2)) << row;
    EXPECT_FALSE(name.own.empty()) << row;
  }
  EXPECT_EQ(gateway::NameOfTrack("de-en").own, "Deutsch");
}

TEST(Files, NamesHaveATitleWithABlankAndALanguageOfAtMost64Letters) {
  EXPECT_TRUE(gateway::ParseCaptionName("x [a]." + std::string(64, 'l') + ".srv1"));
  EXPECT_FALSE(gateway::ParseCaptionName("xy[a].en.srv1"));
}

TEST(Folders, TheBestFileOfEachLanguageIsServed) {
  const TemporaryFolder first, second;
  WriteFile(first / "t [abc].en.srt", Srt("srt"));
  WriteFile(first / "z [abc].en.VTT", Vtt("vtt"));
  WriteFile(first / "[abc].de.srt", Srt("deutsch"));
  WriteFile(first / "t [abc].live_chat.srt", Srt("chat"));
  WriteFile(second / "t [abc].en.srv1", Srv1("later folder"));
  for (const std::string title : {"b", "a", "c"}) WriteFile(second / (title + " [abc].fr.srt"), Srt(title));
  std::filesystem::create_symlink("[abc].de.srt", first / "[abc].nl.srt");
  WriteFile(second / "[abc].nl.srt", Srt("nederlands"));
  WriteFile(second / "[abc]. [xyz].nl.srt", "");
  for (const auto settling : {gateway::kSettling, kSettledAtOnce}) {
    FolderSource source({first.Path(), second.Path()}, FolderSource::Manner::Convert, settling);
    EXPECT_EQ(Listed(source.Tracks("abc", {})), (Lines{"de=German", "en=English", "fr=French", "nl=Dutch"}));
    EXPECT_EQ(BytesOf(source.Text("abc", "nl", {})), Srv1("nederlands"))
        << "a link hides no file in a later folder";
    const auto stock = source.TakeStock();
    EXPECT_EQ((std::vector{stock.videos, stock.tracks, stock.leftOut}), (std::vector<std::size_t>{2, 5, 2}));
    EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("vtt"));
    EXPECT_EQ(BytesOf(source.Text("abc", "de", {})), Srv1("deutsch"));
    EXPECT_EQ(BytesOf(source.Text("abc", "fr", {})), Srv1("a"));
  }
  WriteFile(first / "z [abc].en.SRV1", Srv1("srv1"));
  FolderSource source({first.Path()}, FolderSource::Manner::AsIs);
  EXPECT_EQ(Listed(source.Tracks("abc", {})), Lines{"en=English"});
  EXPECT_EQ(BytesOf(FolderSource({first.Path()}).Text("abc", "en", {})), Srv1("srv1"));
}

TEST(Folders, ALargeFileWaitsUntilThePreviousOneWasReceived) {
  constexpr std::size_t kLarge = (1u << 20) + 1;
  const TemporaryFolder folder;
  std::string large;
  while (large.size() < kLarge) large += "00:01,000 --> 00:02,000\n" + std::string(1000, 'w') + "\n\n";
  for (const std::string language : {"de", "en", "fr"})
    WriteFile(folder / ("[abc]." + language + ".srt"),
              large.substr(0, language == "fr" ? kLarge - 1 : kLarge));
  FolderSource source({folder.Path()});
  EXPECT_EQ(source.Tracks("abc", {}).tracks.size(), 3u) << "a list keeps no place";
  auto first = source.Text("abc", "en", {});
  ASSERT_TRUE(first.document);
  auto second = std::async(std::launch::async, [&] { return source.Text("abc", "de", {}); });
  EXPECT_EQ(second.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
  std::vector<gateway::CaptionText> others(5);
  for (auto& other : others) other = source.Text("abc", "fr", {});
  EXPECT_TRUE(others.back().document);
  first = {};
  EXPECT_TRUE(second.get().document);
}

TEST(Folders, AnUnchangedFolderAndItsFilesAreReadOnce) {
  const TemporaryFolder folder;
  WriteFile(folder / "[abc].en.srt", Srt("words"));
  WriteFile(folder / "[abc].de.srt", Srt(std::string(1 << 20, 'w')));
  WriteFile(folder / "[abc].fr.srt", "");
  FolderSource source({folder.Path()}, FolderSource::Manner::Convert, kSettledAtOnce);
  const Lines tracks = Listed(source.Tracks("abc", {}));
  const gateway::Descriptor reads(::inotify_init1(IN_CLOEXEC));
  ::inotify_add_watch(reads.Number(), folder.Path().c_str(), IN_ACCESS);
  EXPECT_EQ(Listed(source.Tracks("abc", {})), tracks);
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("words"));
  EXPECT_EQ(WaitFor(reads.Number(), For(0ms)), gateway::Waited::TooLate) << "something was read again";
  EXPECT_TRUE(source.Text("abc", "de", {}).document);
  EXPECT_EQ(WaitFor(reads.Number(), For(0ms)), gateway::Waited::Ready) << "too large to be kept";
}

TEST(Folders, AFileWithoutCaptionsIsNotServedAndLoggedOnce) {
  const TemporaryFolder folder;
  const std::string page = folder / "t [abc].en.srv1";
  WriteFile(page, "<!DOCTYPE html><html><body>Before you continue</body></html>");
  WriteFile(folder / "t [abc].de.vtt", "");
  for (const auto settling : {gateway::kSettling, kSettledAtOnce}) {
    FolderSource source({folder.Path()}, FolderSource::Manner::Convert, settling);
    testing::internal::CaptureStderr();
    for (int time = 0; time < 3; ++time) {
      EXPECT_EQ(Listed(source.Tracks("abc", {})), Lines{"The file t [abc].de.vtt: this file is empty."});
      EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), "The file t [abc].en.srv1: this file is a web page.");
    }
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_EQ(log, "ravelyn-gateway: " + folder.Path() +
                       "/t [abc].de.vtt is not served: this file is empty\n" + "ravelyn-gateway: " + page +
                       " is not served: this file is a web page\n");
  }
  FolderSource source({folder.Path()});
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), "The file t [abc].en.srv1: this file is a web page.");
  WriteFile(folder / "t [abc].en.srt", Srt("words"));
  EXPECT_EQ(Listed(source.Tracks("abc", {})), Lines{"en=English"});
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("words")) << "the next best file";
  WriteFile(page, Srv1("mended"));
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("mended"));
  const std::string lengthy = std::string(120, 't') + " [lng].en.srt";
  WriteFile(folder / lengthy, "");
  EXPECT_EQ(Listed(source.Tracks("lng", {})),
            Lines{"The file " + lengthy.substr(0, 100) + ": this file is empty."});
  const std::string none = "No folder holds captions of this video.";
  EXPECT_EQ(Listed(source.Tracks("xyz", {})), Lines{none});
  EXPECT_EQ(BytesOf(source.Text("abc", "fr", {})), none);
}

// In memory if possible, so that many changes get the same time stamp.
TEST(Folders, RapidChangesOfAFileAreAllSeen) {
  if (std::filesystem::is_directory("/dev/shm")) ::setenv("TMPDIR", "/dev/shm", 1);
  const TemporaryFolder folder;
  FolderSource source({folder.Path()});
  testing::internal::CaptureStderr();
  for (int i = 0; i < 100; ++i) {
    const std::string path = folder / ("[abc].l" + std::to_string(i) + ".srt");
    WriteFile(path, Srt("words"));
    EXPECT_EQ(source.Tracks("abc", {}).tracks.size(), 1u) << i;
    WriteFile(path, std::string(Srt("words").size(), 'x'));
    EXPECT_EQ(source.Tracks("abc", {}).tracks.size(), 0u) << i;
    std::filesystem::remove(path);
  }
  testing::internal::GetCapturedStderr();
}

TEST(Folders, ChangesInALargeFolderAreSeen) {
  constexpr int kFiles = 500;
  const TemporaryFolder folder;
  for (int i = 0; i < kFiles; ++i)
    WriteFile(folder / ("t [v" + std::to_string(i) + "].en.srt"), Srt("words"));
  FolderSource source({folder.Path()}, FolderSource::Manner::Convert, kSettledAtOnce);
  for (int i = 0; i < kFiles; ++i)
    EXPECT_EQ(Listed(source.Tracks("v" + std::to_string(i), {})), Lines{"en=English"}) << i;
  std::filesystem::remove(folder / "t [v7].en.srt");
  WriteFile(folder / "t [v7].de.srt", Srt("words"));
  std::filesystem::last_write_time(folder.Path(), std::filesystem::file_time_type::clock::now() - 1h);
  EXPECT_EQ(Listed(source.Tracks("v7", {})), Lines{"de=German"});
  EXPECT_EQ(BytesOf(source.Text("v9", "en", {})), Srv1("words"));
  WriteFile(folder / "t [v9].en.srt", Srt("other words"));
  EXPECT_EQ(BytesOf(source.Text("v9", "en", {})), Srv1("other words"));
}

TEST(Files, TimeStampsGiveTheStateOfAFile) {
  struct stat facts {};
  facts.st_dev = 1, facts.st_ino = 2, facts.st_size = 3, facts.st_mtim = {4, 5}, facts.st_ctim = {6, 7};
  EXPECT_EQ(gateway::FileState::Of(facts), (gateway::FileState{1, 2, 3, 4'000'000'005, 6'000'000'007}));
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const auto settled = [&](std::int64_t secondsAgo) {
    return gateway::FileState{1, 2, 3, 4, (now.tv_sec - secondsAgo) * 1'000'000'000}.IsSettled(60s);
  };
  EXPECT_TRUE(settled(61));
  EXPECT_FALSE(settled(30));
}

TEST(Files, AFileThatCannotBeReadHasItsFault) {
  const TemporaryFolder folder;
  WriteFile(folder / "file", "words");
  WriteFile(folder / "one", "x");
  std::filesystem::create_symlink("file", folder / "link");
  const auto open = [&](const std::string& name) {
    return gateway::Descriptor(::open((folder / name).c_str(), O_RDONLY | O_CLOEXEC));
  };
  const gateway::Descriptor parent = open("");
  const auto fault = [&](const char* name) { return gateway::OpenCaptionFile(parent.Number(), name).fault; };
  EXPECT_EQ(fault("file"), "");
  EXPECT_EQ(fault("none"), "this file can't be read");
  EXPECT_EQ(fault("link"), "this is not a regular file");
  EXPECT_EQ((FewDescriptors(0), fault("file")), "this file can't be read");
  struct stat facts {};
  facts.st_mode = S_IFREG, facts.st_size = (64 << 20) + 1;
  EXPECT_EQ(gateway::FaultIn(facts), "this file is larger than 64 MiB");
  EXPECT_EQ(gateway::ReadWhole(gateway::CaptionFile(open("file"), 99)), "words") << "it has shrunk";
  EXPECT_EQ(gateway::ReadWhole(gateway::CaptionFile(open("one"), 1)), "x");
  EXPECT_EQ(gateway::ReadWhole(gateway::CaptionFile(gateway::Descriptor(), 5)), "");
}

TEST(Files, VerdictsAreKeptForTheStateOfTheFile) {
  const gateway::FileState before{0, 0, 1}, now{0, 0, 2};
  gateway::FileVerdicts verdicts;
  testing::internal::CaptureStderr();
  for (const auto& state : {before, now, now}) verdicts.Keep("p", state, true, "empty");
  verdicts.Keep("p", now, true, "a web page");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ravelyn-gateway: p is not served: empty\nravelyn-gateway: p is not served: empty\n"
            "ravelyn-gateway: p is not served: a web page\n");
  EXPECT_EQ(verdicts.Find("p", now), "a web page");
  EXPECT_EQ(verdicts.Find("p", before), std::nullopt);
  for (int i = 1; i < 4096; ++i) verdicts.Keep(std::to_string(i), now, true, "");
  EXPECT_EQ(verdicts.Find("p", now), "a web page");
  verdicts.Keep("unsettled", now, false, "");
  EXPECT_EQ(verdicts.Find("p", now), std::nullopt) << "4096 are kept";
  EXPECT_EQ(verdicts.Find("unsettled", now), std::nullopt);
}

TEST(Files, RecentDocumentsAreKeptUpToTheLimit) {
  gateway::RecentDocuments recent;
  const std::string half(1 << 19, 'x');
  const auto kept = [&](const char* path, off_t size) {
    return recent.Find(path, gateway::FileState{0, 0, size}).value_or("").size();
  };
  for (const char* path : {"a", "b"}) recent.Keep(path, {}, half);
  EXPECT_EQ(kept("a", 0), half.size());
  EXPECT_EQ(kept("a", 1), 0u) << "another state";
  recent.Keep("c", {}, "c");
  EXPECT_EQ(kept("a", 0) + kept("c", 0), half.size() + 1);
  EXPECT_EQ(kept("b", 0), 0u) << "not used since";
  recent.Keep("d", {}, half + half + "d");
  EXPECT_EQ(kept("d", 0), 0u);
  EXPECT_EQ(kept("a", 0), half.size()) << "a document that is too large replaces none";
  recent.Keep("e", {}, half + half);
  EXPECT_EQ(kept("e", 0), 2 * half.size());
}

TEST(Log, AnyBytesBecomeOnePrintableLine) {
  testing::internal::CaptureStderr();
  gateway::Log("\na\x1F~\x7F\u0080\u009F\u00A0\u00E9\xFF " + std::string(2'000, 'x'));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ravelyn-gateway: ?a?~???\u00A0\u00E9? " + std::string(985, 'x') + "\n");
}

}  // namespace
