// The site's captions as they are kept on disk.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>

#include "gateway/sources/CacheSource.h"
#include "sources_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::TrackList;
using Lines = std::vector<std::string>;

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

TEST_F(Caching, ATextIsFetchedOnceAndAListEachTime) {
  site_.list = {{{"en", "English \"x\"", "English", true}, {"de", "German", "Deutsch"}}, ""};
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
    EXPECT_EQ(site_.asked, 3) << "failures are not kept";
    site_.asked = 0;
  }
  EXPECT_EQ(ModeOf(folder_ / "made"), 0700u);
  EXPECT_EQ(ModeOf(Path("[abc].en.captions")), 0600u);
  EXPECT_EQ(Files(), 2u) << "no temporary file is left";

  gateway::CacheSource cache(site_, folder_ / "made");
  site_.list = {{}, "no network"};
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), (Lines{"en=English \"x\" *", "de=German", "no network"}));
  EXPECT_EQ(Listed(cache.Tracks("xyz", {})), Lines{"no network"});
  std::filesystem::remove(Path("[abc].en.captions"));
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << "no text is kept";
}

TEST_F(Caching, TextsOfChangedTracksAndDamagedFilesAreNotUsed) {
  site_.list = {{{"en", "English (automatic)", "English", true}}, ""};
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
  site_.list = {{}, "no network"};
  for (const char* damaged :
       {"", "{", "[]", R"({"tracks":[]})", R"({"tracks":[{}]})", R"({"tracks":1})",
        R"({"tracks":[{"language":"../x","name":"x","ownName":"x","automatic":false}]})"}) {
    WriteFile(Path("[abc].list.json"), damaged);
    EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << damaged;
  }
  WriteFile(
      Path("[abc].list.json"),
      R"({"title":"t","tracks":[{"language":"en","name":"English","ownName":"English","automatic":false}]})");
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), (Lines{"en=English", "no network"}))
      << "other members are ignored";
}

TEST_F(Caching, AFullCacheRemovesTheOldestFilesFirst) {
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
  EXPECT_EQ(BytesOf(tiny.Text("e", "en", {})), text) << "served, though not kept";
  EXPECT_FALSE(Has("[e].en.captions"));
  gateway::CacheSource fresh(site_, folder_ / "made", {4 * text.size(), 24h});
  fresh.Text("f", "en", {});
  EXPECT_FALSE(Has("[c].en.captions")) << "removed when the first text is kept";
  EXPECT_FALSE(Has(".new-abcdef"));
  EXPECT_TRUE(Has(".new-young")) << "may still be written";
}

TEST_F(Caching, TheEnvironmentGivesTheDefaultFolder) {
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

TEST_F(Caching, ATextThatCannotBeKeptIsServedAndLoggedOnce) {
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
  EXPECT_EQ(Files(), 0u) << "no incomplete and no temporary file";
}

}  // namespace
