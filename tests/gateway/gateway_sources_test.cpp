// Where captions come from: caption files of every kind in folders, a site, and what is kept of it.

#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>

#include "gateway/sources/CacheSource.h"
#include "gateway/sources/JoinedSource.h"
#include "gateway/sources/RecentDocuments.h"
#include "gateway/sources/log.h"
#include "gateway/sources/track_name.h"
#include "gateway_fixture.h"
#include "runtime/Text.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::Asker;
using gateway::CaptionText;
using gateway::FolderSource;
using gateway::TrackList;
using Lines = std::vector<std::string>;

constexpr auto kSettledAtOnce = std::chrono::milliseconds(-3'600'000);

std::string Vtt(const std::string& words) { return "WEBVTT\n\n00:01.000 --> 00:02.000\n" + words + "\n"; }
std::string Srt(const std::string& words) { return "1\n00:00:01,000 --> 00:00:02,000\n" + words + "\n"; }
std::string Srv1(const std::string& words) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><transcript><text start=\"1.000\" dur=\"1.000\">" +
         words + "</text></transcript>";
}

// The tracks as "language=name", and the cause.
Lines Listed(const TrackList& list) {
  Lines lines;
  for (const auto& track : list.tracks)
    lines.push_back(track.language + "=" + track.name + (track.automatic ? " *" : ""));
  if (!list.cause.empty()) lines.push_back(list.cause);
  return lines;
}

std::string BytesOf(const CaptionText& text) {
  if (!text.document) return text.cause;
  if (const auto* bytes = std::get_if<std::string>(&*text.document)) return *bytes;
  return ReadWhole(std::get<gateway::CaptionFile>(*text.document));
}

TEST(TrackNames, SayWhatTheCodesOfYtDlpMean) {
  for (const std::string& row :
       Split("en=English|en-orig=English (automatic) *|pt-BR-orig=Portuguese (Brazil, automatic) *|"
             "de-en=German (translated from English)|en-de=English (translated from German)|"
             "zh-Hant-en=Chinese (Traditional, translated from English)|"
             "de-zh-Hans=German (translated from Chinese (Simplified))|pt-BR=Portuguese (Brazil)|"
             "pt-br=Portuguese (Brazil)|pt-pt=Portuguese (Portugal)|es-419=Spanish (Latin America)|"
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

TEST(Folders, TakeTheBestFileOfEachLanguage) {
  const TemporaryFolder first, second;
  WriteFile(first / "t [abc].en.srt", Srt("srt"));
  WriteFile(first / "z [abc].en.VTT", Vtt("vtt"));
  WriteFile(first / "[abc].de.srt", Srt("deutsch"));
  WriteFile(first / "t [abc].live_chat.srt", Srt("chat"));
  WriteFile(second / "t [abc].en.srv1", Srv1("later folder"));
  WriteFile(second / "t [abc].fr.srt", Srt("b"));
  WriteFile(second / "a [abc].fr.srt", Srt("a"));
  FolderSource source({first.Path(), second.Path()});
  std::filesystem::create_symlink("[abc].de.srt", first / "[abc].nl.srt");
  WriteFile(second / "[abc].nl.srt", Srt("nederlands"));
  WriteFile(second / "[xyz].nl.srt", "");
  EXPECT_EQ(Listed(source.Tracks("abc", {})), (Lines{"de=German", "en=English", "fr=French", "nl=Dutch"}));
  EXPECT_EQ(BytesOf(source.Text("abc", "nl", {})), Srv1("nederlands"))
      << "what can't be served hides nothing";
  const auto stock = source.TakeStock();
  EXPECT_EQ(
      std::to_string(stock.videos) + " " + std::to_string(stock.tracks) + " " + std::to_string(stock.leftOut),
      "2 5 2");
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("vtt"));
  EXPECT_EQ(BytesOf(source.Text("abc", "de", {})), Srv1("deutsch"));
  EXPECT_EQ(BytesOf(source.Text("abc", "fr", {})), Srv1("a"));
  WriteFile(first / "z [abc].en.SRV1", Srv1("srv1"));
  EXPECT_EQ(BytesOf(source.Text("abc", "en", {})), Srv1("srv1"));
  EXPECT_EQ(Listed(FolderSource({first.Path()}, FolderSource::Manner::AsIs).Tracks("abc", {})),
            Lines{"en=English"});
}

TEST(Folders, ConvertALargeFileWhenThatBeforeWasTaken) {
  const TemporaryFolder folder;
  std::string large;
  while (large.size() <= 1u << 20) large += "00:01,000 --> 00:02,000\n" + std::string(1000, 'w') + "\n\n";
  WriteFile(folder / "[abc].en.srt", large);
  WriteFile(folder / "[abc].de.srt", large);
  FolderSource source({folder.Path()}, FolderSource::Manner::Convert);
  EXPECT_EQ(source.Tracks("abc", {}).tracks.size(), 2u) << "a list holds none";
  auto first = source.Text("abc", "en", {});
  ASSERT_TRUE(first.document);
  auto second = std::async(std::launch::async, [&] { return source.Text("abc", "de", {}); });
  EXPECT_EQ(second.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
  first = {};
  EXPECT_TRUE(second.get().document);
}

TEST(Folders, ServeNothingThatIsNoCaptionsAndSayWhyOnce) {
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
    EXPECT_EQ(log, "ravelyn-gateway: " + folder.Path() + "/t [abc].de.vtt is no track: this file is empty\n" +
                       "ravelyn-gateway: " + page + " is no track: this file is a web page\n");
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
  EXPECT_EQ(Listed(source.Tracks("xyz", {})), Lines{gateway::kNoFile});
  EXPECT_EQ(BytesOf(source.Text("abc", "fr", {})), gateway::kNoFile);
}

// Files come and go without a pause, in memory where there is such a folder, so that many changes fall on one
// tick of the clock that stamps them.
TEST(Folders, NeverAnswerOutOfAnOlderState) {
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

TEST(Folders, OfManyFilesShowTheirChanges) {
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

TEST(Files, AreInTheStateThatTheirStampsSay) {
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

TEST(Files, AreKeptAsDocumentsWhileThereIsRoom) {
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
  EXPECT_EQ(kept("b", 0), 0u) << "was not asked for since";
  recent.Keep("d", {}, half + half + "d");
  EXPECT_EQ(kept("d", 0), 0u);
  EXPECT_EQ(kept("a", 0), half.size()) << "what is too large takes nobody's place";
  recent.Keep("e", {}, half + half);
  EXPECT_EQ(kept("e", 0), 2 * half.size());
}

TEST(Log, HasOneLineOfPlainTextForEachEvent) {
  testing::internal::CaptureStderr();
  gateway::Log("a\n\x1F~\x7F\u0080\u009F\u00A0\u00E9\xFF " + std::string(2'000, 'x'));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ravelyn-gateway: a??~???\u00A0\u00E9? " + std::string(985, 'x') + "\n");
}

// What a site may do: has captions, has none and says why, or keeps everybody waiting until it is opened.
class FakeSite final : public gateway::CaptionSource {
 public:
  TrackList list;
  std::map<std::string, std::string> texts;
  std::string cause = "no network";
  std::atomic<bool> keepsWaiting = false;
  std::atomic<int> asked = 0, given = 0, left = 0;

  TrackList Tracks(std::string_view, const Asker& asker) override {
    ++asked;
    Wait(asker);
    return list;
  }
  CaptionText Text(std::string_view, std::string_view language, const Asker&) override {
    ++asked;
    const auto found = texts.find(std::string(language));
    if (found == texts.end()) return {std::nullopt, cause};
    return {found->second, ""};
  }
  void Open() { ::eventfd_write(open_.Number(), 1); }

 private:
  void Wait(const Asker& asker) {
    if (!keepsWaiting) return;
    pollfd waiting[] = {{open_.Number(), POLLIN, 0}, {asker.connection, POLLRDHUP, 0}};
    ::poll(waiting, 2, 30'000);
    ++(waiting[1].revents != 0 ? left : given);
  }
  const Descriptor open_{::eventfd(0, EFD_CLOEXEC)};
};

TEST(Joined, ListsWhatEitherHas) {
  const TemporaryFolder folder;
  WriteFile(folder / "[abc].en.srt", Srt("own"));
  WriteFile(folder / "[bad].en.srt", "");
  FolderSource folders({folder.Path()});
  FakeSite site;
  site.list = {{{"en", "English (automatic)", "English", true}, {"de", "German", "Deutsch"}}, "title", ""};
  site.texts = {{"en", "site en"}, {"de", "site de"}};
  gateway::JoinedSource joined(folders, site);
  EXPECT_EQ(Listed(joined.Tracks("abc", {})), (Lines{"en=English", "de=German"}));
  EXPECT_EQ(Listed(joined.Tracks("xyz", {})), (Lines{"en=English (automatic) *", "de=German"}));
  EXPECT_EQ(BytesOf(joined.Text("abc", "en", {})), Srv1("own"));
  EXPECT_EQ(BytesOf(joined.Text("abc", "de", {})), "site de");
  EXPECT_EQ(BytesOf(joined.Text("abc", "fr", {})), "no network");
  EXPECT_EQ(BytesOf(joined.Text("bad", "en", {})), "site en");
  EXPECT_EQ(BytesOf(joined.Text("bad", "fr", {})), "no network");
  site.texts.clear();
  site.list = {{}, "", "private"};
  EXPECT_EQ(Listed(joined.Tracks("abc", {})), (Lines{"en=English", "private"}));
  EXPECT_EQ(Listed(joined.Tracks("xyz", {})), Lines{"private"});
  EXPECT_EQ(Listed(joined.Tracks("bad", {})), Lines{"The file [bad].en.srt: this file is empty. private"});
  EXPECT_EQ(BytesOf(joined.Text("bad", "en", {})), "The file [bad].en.srt: this file is empty. no network");
}

TEST(Joined, WaitsForTheSiteOnlySoLongWhereAFolderHasSomething) {
  const TemporaryFolder folder;
  WriteFile(folder / "[abc].en.srt", Srt("own"));
  FolderSource folders({folder.Path()});
  FakeSite site;
  site.list = {{{"de", "German", "Deutsch"}}, "", ""};
  site.keepsWaiting = true;
  {
    gateway::JoinedSource joined(folders, site, 50ms);
    EXPECT_EQ(Listed(joined.Tracks("abc", {})), Lines{"en=English"});
    EXPECT_EQ(Listed(joined.Tracks("abc", {})), Lines{"en=English"});
    EXPECT_EQ(site.asked, 1) << "the first question goes on";
  }
  EXPECT_EQ(site.left, 1) << "and ends with the source";
  gateway::JoinedSource patient(folders, site, 30s);
  int ends[2];
  ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
  const Descriptor server(ends[1]);
  Descriptor client(ends[0]);
  std::thread leaving([&] {
    EXPECT_EQ(Listed(patient.Tracks("abc", {{}, server.Number()})), Lines{"en=English"});
  });
  client = Descriptor();
  leaving.join();
  std::thread staying([&] {
    EXPECT_EQ(Listed(patient.Tracks("abc", {})), (Lines{"en=English", "de=German"}));
  });
  site.Open();
  staying.join();
  EXPECT_EQ(site.given, 1);
}

class Caching : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_ / ("made/" + name); }
  bool Has(const std::string& name) const { return std::filesystem::exists(Path(name)); }
  std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_ / "made"), {}));
  }
  static mode_t ModeOf(const std::string& path) {
    struct stat facts {};
    ::stat(path.c_str(), &facts);
    return facts.st_mode & 07777;
  }
  static void MakeOlder(const std::string& path, std::chrono::hours by) {
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) - by);
  }

  const TemporaryFolder folder_;
  FakeSite site_;
};

TEST_F(Caching, AsksForATextOnceAndForAListEachTime) {
  site_.list = {{{"en", "English \"x\"", "English", true}, {"de", "German", "Deutsch"}}, "title", ""};
  site_.texts = {{"en", Srv1("english")}};
  const TrackList full = site_.list;
  for (int process = 0; process < 2; ++process) {
    gateway::CacheSource cache(site_, folder_ / "made");
    EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("english"));
    EXPECT_EQ(site_.asked, process == 0 ? 1 : 0);
    site_.asked = 0;
    EXPECT_EQ(Listed(cache.Tracks("abc", {})), Listed(full));
    EXPECT_EQ(BytesOf(cache.Text("abc", "de", {})), "no network");
    EXPECT_EQ(BytesOf(cache.Text("abc", "de", {})), "no network");
    EXPECT_EQ(site_.asked, 3) << "no failure is kept";
    site_.asked = 0;
  }
  EXPECT_EQ(ModeOf(folder_ / "made"), 0700u);
  EXPECT_EQ(ModeOf(Path("[abc].en.captions")), 0600u);
  EXPECT_EQ(Files(), 2u) << "nothing aside is left";

  gateway::CacheSource cache(site_, folder_ / "made");
  site_.list = {{}, "", "no network"};
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), (Lines{"en=English \"x\" *", "de=German", "no network"}));
  EXPECT_EQ(Listed(cache.Tracks("xyz", {})), Lines{"no network"});
  std::filesystem::remove(Path("[abc].en.captions"));
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << "no text is there";
}

TEST_F(Caching, DropsATextWhoseTrackHasChangedAndDistrustsDamage) {
  site_.list = {{{"en", "English (automatic)", "English", true}}, "", ""};
  site_.texts = {{"en", Srv1("by machine")}};
  gateway::CacheSource cache(site_, folder_ / "made");
  cache.Tracks("abc", {});
  cache.Text("abc", "en", {});
  site_.list.tracks[0] = {"en", "English", "English"};
  site_.texts["en"] = Srv1("written");
  cache.Tracks("abc", {});
  EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("written"));

  WriteFile(Path("[abc].en.captions"), Srv1("cut").substr(0, 90));
  site_.texts["en"] = Srv1("again");
  EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("again"));
  site_.list = {{}, "", "no network"};
  for (const char* damaged :
       {"", "{", "[]", R"({"title":"","tracks":[]})", R"({"title":"","tracks":[{}]})",
        R"({"title":1,"tracks":[]})",
        R"({"title":"","tracks":[{"language":"../x","name":"x","ownName":"x","automatic":false}]})"}) {
    WriteFile(Path("[abc].list.json"), damaged);
    EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << damaged;
  }
}

TEST_F(Caching, KeepsToItsBoundsAndLetsTheOldestGoFirst) {
  const std::string text = Srv1(std::string(1'000, 'x'));
  site_.texts = {{"en", text}};
  gateway::CacheLimits limits;
  limits.bytes = 3 * text.size();
  limits.age = std::chrono::hours(24);
  gateway::CacheSource cache(site_, folder_ / "made", limits);
  for (const char* code : {"a", "b", "c"}) cache.Text(code, "en", {});
  MakeOlder(Path("[b].en.captions"), 2h);
  WriteFile(Path("not ours"), std::string(10'000, 'x'));
  cache.Text("d", "en", {});
  EXPECT_FALSE(Has("[b].en.captions"));
  EXPECT_EQ(Files(), 4u);
  MakeOlder(Path("[a].en.captions"), 25h);
  site_.asked = 0;
  cache.Text("a", "en", {});
  EXPECT_EQ(site_.asked, 1) << "too old";
  MakeOlder(Path("[c].en.captions"), 25h);
  for (const char* name : {".new-abcdef", ".new-young"}) WriteFile(Path(name), "left by a crash");
  MakeOlder(Path(".new-abcdef"), 2h);
  limits.bytes = text.size() - 1;
  gateway::CacheSource tiny(site_, folder_ / "made", limits);
  EXPECT_EQ(BytesOf(tiny.Text("e", "en", {})), text) << "given, though not kept";
  EXPECT_FALSE(Has("[e].en.captions"));
  gateway::CacheSource fresh(site_, folder_ / "made", {4 * text.size(), 24h});
  fresh.Text("f", "en", {});
  EXPECT_FALSE(Has("[c].en.captions")) << "swept at the first text that is kept";
  EXPECT_FALSE(Has(".new-abcdef"));
  EXPECT_TRUE(Has(".new-young")) << "may be written just now";
}

TEST_F(Caching, IsDoneWhereTheUserKeepsCaches) {
  const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
  const auto usual = [](const char* cache, const char* user) {
    ::setenv("XDG_CACHE_HOME", cache, 1);
    ::setenv("HOME", user, 1);
    return gateway::UsualCacheFolder();
  };
  EXPECT_EQ(usual("/c", "/h"), "/c/ravelyn/captions");
  EXPECT_EQ(usual("c", "/h"), "/h/.cache/ravelyn/captions");
  EXPECT_EQ(usual("", "h"), "");
  gateway::CacheSource deep(site_, folder_ / "a/b");
  site_.texts = {{"en", Srv1("words")}};
  deep.Text("abc", "en", {});
  EXPECT_EQ(ModeOf(folder_ / "a"), 0700u);
  ::unsetenv("XDG_CACHE_HOME");
  ::setenv("HOME", home.c_str(), 1);
}

TEST_F(Caching, GivesWhatItCanNotKeepAndSaysSoOnce) {
  site_.texts = {{"en", Srv1("words")}};
  std::filesystem::create_directory(folder_ / "open");
  std::filesystem::permissions(folder_ / "open", std::filesystem::perms(0777));
  WriteFile(folder_ / "file", "");
  for (const char* name : {"open", "file", "file/below"}) {
    gateway::CacheSource cache(site_, folder_ / name);
    testing::internal::CaptureStderr();
    EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("words"));
    EXPECT_EQ(BytesOf(cache.Text("abd", "en", {})), Srv1("words"));
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(log.starts_with("ravelyn-gateway: can't keep captions in " + folder_ / name)) << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / "open"));

  gateway::CacheSource cache(site_, folder_ / "made");
  rlimit size{};
  ::getrlimit(RLIMIT_FSIZE, &size);
  const auto before = ::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{20, size.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("words"));
  ::setrlimit(RLIMIT_FSIZE, &size);
  ::signal(SIGXFSZ, before);
  EXPECT_EQ(Files(), 0u) << "nothing half, nothing aside";
}

}  // namespace
