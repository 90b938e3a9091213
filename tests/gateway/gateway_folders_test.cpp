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
#include "support/recorded.h"

namespace {

using namespace gateway_test;
using gateway::FolderSource;
using Lines = std::vector<std::string>;

constexpr auto kSettledAtOnce = std::chrono::milliseconds(-3'600'000);

// Each line of track_names.txt: "code=name", with " *" if automatic.
TEST(TrackNames, CodesOfYtDlpGiveEnglishNames) {
  for (const std::string& row : PartsOf("gateway/track_names.txt", "\n")) {
    const std::string code = NthField(row, "=", 1);
    const auto name = gateway::NameOfTrack(code);
    EXPECT_EQ(code + "=" + name.english + (name.automatic ? " *" : ""), row);
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
  std::vector<gateway::CaptionText> others;
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(others.emplace_back(source.Text("abc", "fr", {})).document);
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
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ravelyn-gateway: " + folder.Path() + "/t [abc].de.vtt is not served: this file is empty\n" +
                  "ravelyn-gateway: " + page + " is not served: this file is a web page\n");
  }
  FolderSource source({folder.Path()});
  WriteFile(folder / "t [abc].en.srt", Srt("words"));
  EXPECT_EQ(Listed(source.Tracks("abc", {})), Lines{"en=English"});
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("words")) << "the next best file";
  WriteFile(page, Srv1("mended"));
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("mended"));
  const std::string lengthy = std::string(120, 't') + " [lng].en.srt";
  WriteFile(folder / lengthy, "");
  EXPECT_EQ(Listed(source.Tracks("lng", {})),
            Lines{"The file " + lengthy.substr(0, 100) + ": this file is empty."});
  EXPECT_EQ(Listed(source.Tracks("xyz", {})), Lines{"No folder holds captions of this video."});
  EXPECT_EQ(BytesOf(source.Text("abc", "fr", {})), "No folder holds captions of this video.");
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
  const TemporaryFolder folder;
  for (int i = 0; i < 500; ++i) WriteFile(folder / ("t [v" + std::to_string(i) + "].en.srt"), Srt("words"));
  FolderSource source({folder.Path()}, FolderSource::Manner::Convert, kSettledAtOnce);
  for (int i = 0; i < 500; ++i)
    EXPECT_EQ(Listed(source.Tracks("v" + std::to_string(i), {})), Lines{"en=English"}) << i;
  std::filesystem::remove(folder / "t [v7].en.srt");
  WriteFile(folder / "t [v7].de.srt", Srt("words"));
  std::filesystem::last_write_time(folder.Path(), std::filesystem::file_time_type::clock::now() - 1h);
  EXPECT_EQ(Listed(source.Tracks("v7", {})), Lines{"de=German"});
  EXPECT_EQ(BytesOf(source.Text("v9", "en", {})), Srv1("words"));
  WriteFile(folder / "t [v9].en.srt", Srt("other words"));
  EXPECT_EQ(BytesOf(source.Text("v9", "en", {})), Srv1("other words"));
}

TEST(Files, AFileThatCannotBeReadHasItsFault) {
  const TemporaryFolder folder;
  WriteFile(folder / "file", "words");
  const auto open = [&](const std::string& name) {
    return gateway::Descriptor(::open((folder / name).c_str(), O_RDONLY | O_CLOEXEC));
  };
  const gateway::Descriptor parent = open("");
  const auto fault = [&](const char* name) { return gateway::OpenCaptionFile(parent.Number(), name).fault; };
  EXPECT_EQ(fault("file"), "");
  EXPECT_EQ(fault("none"), "this file can't be read");
  EXPECT_EQ(fault("."), "this is not a regular file");
  EXPECT_EQ((FewDescriptors(0), fault("file")), "this file can't be read");
  std::filesystem::resize_file(folder / "file", (64 << 20) + 1);
  EXPECT_EQ(fault("file"), "this file is larger than 64 MiB");
  std::filesystem::resize_file(folder / "file", 5);
  EXPECT_EQ(gateway::ReadWhole(gateway::CaptionFile(open("file"), 99)), "words") << "it has shrunk";
  EXPECT_EQ(gateway::ReadWhole(gateway::CaptionFile(open("file"), 1)), "w");
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
  const auto kept = [&](const char* path) { return recent.Find(path, {}).value_or("").size(); };
  for (const char* path : {"b", "a"}) recent.Keep(path, {}, half);
  EXPECT_EQ(kept("b"), half.size());
  EXPECT_EQ(recent.Find("b", {0, 0, 1}), std::nullopt) << "another state";
  recent.Keep("c", {}, "c");
  recent.Keep("d", {}, half + half + "d");
  EXPECT_EQ(kept("a") + kept("d"), 0u) << "not used since, and too large to replace others";
  EXPECT_EQ(kept("b") + kept("c"), half.size() + 1);
  recent.Keep("e", {}, half + half);
  EXPECT_EQ(kept("e"), 2 * half.size());
}

TEST(Log, AnyBytesBecomeOnePrintableLine) {
  testing::internal::CaptureStderr();
  gateway::Log("\na\x1F~\x7F\u0080\u009F\u00A0\u00E9\xFF " + std::string(2'000, 'x'));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ravelyn-gateway: ?a?~???\u00A0\u00E9? " + std::string(985, 'x') + "\n");
}

}  // namespace
