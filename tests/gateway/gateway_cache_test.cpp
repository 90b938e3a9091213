// The site's captions as they are kept on disk.

#include <sys/stat.h>

#include <csignal>

#include "descriptors.h"
#include "gateway/sources/CacheSource.h"
#include "sources_fixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace gateway_test;
using Lines = std::vector<std::string>;

class Caching : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_ / ("made/" + name); }
  bool Has(const std::string& name) const { return std::filesystem::exists(Path(name)); }
  std::size_t Files() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder_ / "made"), {}));
  }
  static unsigned ModeOf(const std::string& path) {
    return static_cast<unsigned>(std::filesystem::status(path).permissions());
  }
  // What the log says when two texts can't be kept.
  std::string LogOfKeeping(gateway::CacheSource& cache) const {
    testing::internal::CaptureStderr();
    for (const char* code : {"abc", "abd"})
      EXPECT_EQ(BytesOf(cache.Text(code, "en", {})), site_.texts.at("en")) << "served, though not kept";
    return testing::internal::GetCapturedStderr();
  }
  static void MakeOlder(const std::string& path, std::chrono::minutes by) {
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) - by);
  }

  const TemporaryFolder folder_;
  FakeSite site_;
};

TEST_F(Caching, ATextIsFetchedOnceAndAListEachTime) {
  site_.list = {{{"en", "English \"x\"", "English", true}, {"de", "German", "Deutsch"}}, ""};
  site_.texts = {{"en", Srv1("english")}};
  for (int process = 0; process < 2; ++process) {
    gateway::CacheSource cache(site_, folder_ / "made");
    EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), Srv1("english"));
    EXPECT_EQ(site_.asked, process == 0 ? 1 : 0);
    site_.asked = 0;
    EXPECT_EQ(Listed(cache.Tracks("abc", {})), Listed(site_.list));
    for (int time = 0; time < 2; ++time) EXPECT_EQ(BytesOf(cache.Text("abc", "de", {})), "no network");
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
  cache.Text("abd", "en", {});
  WriteFile(Path("[abc].en.captions"), "damaged");
  EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << "no text of this video is kept";
}

TEST_F(Caching, TextsOfChangedTracksAndDamagedFilesAreNotUsed) {
  site_.list.tracks = {{"en", "English", "English"}};
  gateway::CacheSource cache(site_, folder_ / "made");
  const auto text = [&](const std::string& words) {
    site_.texts["en"] = Srv1(words);
    return BytesOf(cache.Text("abc", "en", {}));
  };
  cache.Tracks("abc", {});
  EXPECT_EQ(text("first"), Srv1("first"));
  for (const bool automatic : {false, true}) {
    site_.list.tracks = {{"en", "Another name", "English", automatic}};
    cache.Tracks("abc", {});
    const std::string words = automatic ? "by machine" : "renamed";
    EXPECT_EQ(text(words), Srv1(words));
  }
  for (const std::string& damaged : {std::string(), std::string("cut"), Srv1("cut").substr(0, 90)}) {
    WriteFile(Path("[abc].en.captions"), damaged);
    EXPECT_EQ(text("again"), Srv1("again"));
  }
  site_.list = {{}, "no network"};
  for (const char* damaged :
       {"", "{", "[]", R"({"tracks":[]})", R"({"tracks":[{}]})", R"({"tracks":1})",
        R"({"tracks":[{"language":"../x","name":"x","ownName":"x","automatic":false}]})"}) {
    WriteFile(Path("[abc].list.json"), damaged);
    EXPECT_EQ(Listed(cache.Tracks("abc", {})), Lines{"no network"}) << damaged;
  }
  std::string list =
      R"({"title":"t","tracks":[{"language":"en","name":"English","ownName":"English","automatic":false}]})";
  for (const std::size_t size : {list.size(), std::size_t{1} << 20, (std::size_t{1} << 20) + 1}) {
    list.resize(size, ' ');
    WriteFile(Path("[abc].list.json"), list);
    EXPECT_EQ(Listed(cache.Tracks("abc", {})).size(), size > 1 << 20 ? 1u : 2u) << "with tracks up to 1 MiB";
  }
}

TEST_F(Caching, AFullCacheRemovesTheOldestFilesFirst) {
  const std::string text = Srv1(std::string(1'000, 'x'));
  site_.texts = {{"en", text}, {"a b", text}};
  const gateway::CacheLimits limits{3 * text.size(), 24h};
  gateway::CacheSource cache(site_, folder_ / "made", limits);
  for (const char* code : {"a", "b", "c"}) cache.Text(code, "en", {});
  MakeOlder(Path("[b].en.captions"), 2h);
  WriteFile(Path(".newer"), std::string(10'000, 'x'));
  cache.Text("d", "en", {});
  cache.Text("d", "a b", {});
  EXPECT_FALSE(Has("[b].en.captions"));
  EXPECT_EQ(Files(), 4u);
  MakeOlder(Path("[a].en.captions"), 25h);
  site_.asked = 0;
  cache.Text("a", "en", {});
  EXPECT_EQ(site_.asked, 1) << "too old";

  MakeOlder(Path("[c].en.captions"), 25h);
  for (const char* name : {".new-abcdef", ".new-young"}) WriteFile(Path(name), "left by a crash");
  for (const char* name : {".new-abcdef", ".newer"}) MakeOlder(Path(name), 61min);
  gateway::CacheSource fresh(site_, folder_ / "made", {5 * text.size(), 24h});
  fresh.Text("f", "en", {});
  EXPECT_FALSE(Has("[c].en.captions") || Has(".new-abcdef")) << "removed when the first text is kept";
  EXPECT_TRUE(Has(".new-young") && Has(".newer")) << "may still be written, and not ours";
  std::filesystem::remove(Path(".new-young"));
  MakeOlder(Path("[d].en.captions"), 25h);
  fresh.Text("g", "en", {});
  EXPECT_TRUE(Has("[d].en.captions")) << "old files are removed once a day";
}

TEST_F(Caching, TheEnvironmentGivesTheDefaultFolder) {
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
}

TEST_F(Caching, ATextThatCannotBeKeptIsServedAndLoggedOnce) {
  const std::string text = Srv1(std::string(5'000, 'x'));
  site_.texts = {{"en", text}};
  const auto log = [&](const std::string& name, const std::string& fault) {
    return "ravelyn-gateway: can't keep captions in " + folder_ / name + ": " + fault + "\n";
  };
  std::filesystem::create_directory(folder_ / "open");
  WriteFile(folder_ / "file", "");
  for (const char* name : {"file", "file/below"}) {
    gateway::CacheSource cache(site_, folder_ / name);
    EXPECT_EQ(LogOfKeeping(cache), log(name, "Not a directory"));
  }
  gateway::CacheSource shared(site_, folder_ / "open");
  for (const mode_t mode : {0777u, 0755u, 0777u}) {
    std::filesystem::remove(folder_ / "open/[abc].en.captions");
    std::filesystem::remove(folder_ / "open/[abd].en.captions");
    ::chmod((folder_ / "open").c_str(), mode);
    EXPECT_EQ(LogOfKeeping(shared), mode == 0777u ? log("open", "Operation not permitted") : "");
    EXPECT_EQ(std::filesystem::is_empty(folder_ / "open"), mode == 0777u);
  }

  gateway::CacheSource cache(site_, folder_ / "made");
  rlimit size{};
  ::getrlimit(RLIMIT_FSIZE, &size);
  const auto before = ::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{4'000, size.rlim_max};
  testing::internal::CaptureStderr();
  {
    const FewDescriptors none(0);
    EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), text);
  }
  ::setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(BytesOf(cache.Text("abc", "en", {})), text);
  ::setrlimit(RLIMIT_FSIZE, &size);
  ::signal(SIGXFSZ, before);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            log("made", "Too many open files") + log("made", "File too large"));
  EXPECT_EQ(Files(), 0u) << "no incomplete and no temporary file";
}

}  // namespace
