// The gateway as a process that fetches from a site on the loopback with the real yt-dlp.

#include <sys/inotify.h>
#include <sys/stat.h>

#include "Site.h"
#include "gateway_process.h"
#include "runtime/Text.h"

namespace {

using namespace gateway_test;
using site_test::CodeOf;

// The gateway with a folder, a home and a cache of its own.
class Fetching : public testing::Test {
 protected:
  Fetching() {
    std::filesystem::create_directory(folder_ / "captions");
    std::ofstream(site_.Folder() / "yt-dlp.conf", std::ios::app) << "-P " << (folder_ / "videos") << '\n';
    WriteFile(folder_ / ("captions/[" + CodeOf("plain") + "].de.srt"), "00:01,000 --> 00:02,000\neigene\n");
  }
  Process Start(std::vector<std::string> more) {
    std::vector<std::string> arguments = {"--fetch",  "--folder",       folder_ / "captions",
                                          "--port=0", "--ytdlp-config", site_.Folder() / "yt-dlp.conf"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    // A started process inherits ignored signals.
    return Process("trap '' CHLD; TMPDIR=" + site_.Scratch().Path() + " HOME=" + folder_.Path() +
                       " XDG_CACHE_HOME=" + folder_ / "cache" + " exec \"$@\"",
                   arguments);
  }
  static Reply List(std::uint16_t port, const std::string& code) {
    return ReadReply(ConnectTo(port, GetRequest("/timedtext?type=list&v=" + code)));
  }
  static Reply Text(std::uint16_t port, const std::string& code, const std::string& language) {
    return ReadReply(ConnectTo(port, GetRequest("/api/timedtext?&v=" + code + "&lang=" + language)));
  }
  static std::vector<std::string> Languages(const std::string& list) {
    std::vector<std::string> languages = Split(list, "lang_code=\"");
    for (std::string& language : languages) language = NthField(language, "\"", 1);
    languages.erase(languages.begin());
    return languages;
  }

  const site_test::Site site_;
  const TemporaryFolder folder_;
};

TEST_F(Fetching, FoldersAndSiteAreJoinedAndKeptTextsServedWithoutYtDlp) {
  const std::string code = CodeOf("plain");
  const std::vector<std::string> all = {"en", "fr-orig", "de"};
  {
    Process process = Start({});
    const std::string line = process.ReadLine();
    EXPECT_NE(line.find("/ serves 1 video with 1 track from " + folder_.Path() + "/captions; fetches by /"),
              line.npos)
        << line;
    const std::uint16_t port = PortIn(Address(line));
    // The text first: it brings the site's list into memory. A list with tracks of a folder would wait at
    // most 5 seconds for it.
    EXPECT_NE(Text(port, code, "en").body.find(">R&D in en</text>"), std::string::npos);
    EXPECT_EQ(Languages(List(port, code).body), all);
    EXPECT_NE(Text(port, code, "de").body.find(">eigene</text>"), std::string::npos);
    const Reply removed = List(port, CodeOf("removed"));
    EXPECT_NE(removed.head.find("\r\nRavelyn-Cause: This video is unavailable or removed"), std::string::npos)
        << removed.head;
    EXPECT_EQ(Languages(removed.body).size(), 0u);
    EXPECT_EQ(process.End(SIGTERM), 0);
  }
  Process process = Start({"--ytdlp", folder_ / "nowhere/yt-dlp"});
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  EXPECT_EQ(Languages(List(port, code).body), all);
  EXPECT_NE(Text(port, code, "en").body.find(">R&D in en</text>"), std::string::npos) << "kept";
  const Reply missing = Text(port, code, "fr-orig");
  EXPECT_EQ(missing.Status(), "HTTP/1.1 404 Not Found");
  EXPECT_TRUE(missing.Has("Ravelyn-Cause: yt-dlp is not installed.")) << missing.head;
  EXPECT_FALSE(std::filesystem::exists(folder_ / "videos")) << "the user's folder for videos stays untouched";
}

// Programs that replace yt-dlp.
class Programs : public testing::Test {
 protected:
  void Write(const std::string& name, const std::string& script) const {
    std::filesystem::create_directories(std::filesystem::path(folder_ / name).parent_path());
    site_test::WriteScript(folder_ / name, script);
  }
  // The gateway with these programs in PATH and in its home folder.
  Process Start(const std::vector<std::string>& arguments) const {
    return Process("HOME=" + folder_ / "home" + " PATH=" + folder_ / "bin" + ":$PATH exec \"$@\"", arguments);
  }
  static std::string CauseAt(std::uint16_t port) {
    const Descriptor client = ConnectTo(port, GetRequest("/timedtext?type=list&v=code-------"));
    return NthField(NthField(ReadReply(client).head, "Ravelyn-Cause: ", 2), "\r", 1);
  }

  const TemporaryFolder folder_;
};

TEST_F(Programs, TheNamedYtDlpOrTheFirstInstalledByNowIsUsed) {
  Write("bin/yt-dlp", "echo 2023.03.04");
  Write("mute", "");
  for (const auto& [named, shown] :
       {std::pair<std::string, std::string>("another-yt-dlp", "yt-dlp is not installed"),
        {folder_ / "mute", "fetches by " + folder_ / "mute" + ", which does not say its version"},
        {"yt-dlp", "fetches by " + folder_ / "bin/yt-dlp" + ", 2023.03.04"}}) {
    const std::string line = Start({"--fetch", "--port=0", "--ytdlp", named}).ReadLine();
    EXPECT_EQ(line.substr(line.find("/ ")), "/ serves 0 videos with 0 tracks from no folder; " + shown);
  }
  Process any = Start({"--fetch", "--port=0"});
  const std::uint16_t port = PortIn(Address(any.ReadLine()));
  EXPECT_EQ(CauseAt(port), "yt-dlp 2023.03.04 is too old for the site.");
  Write("home/.local/bin/yt-dlp", "[ $2 = --version ] && echo 2999.01.01");
  EXPECT_EQ(CauseAt(port), "yt-dlp failed; the gateway's log has its messages.") << "installed meanwhile";
}

TEST_F(Programs, AYtDlpThatHangsDoesNotDelayTheEnd) {
  ASSERT_EQ(::mkfifo((folder_ / "started").c_str(), 0600), 0);
  Write("bin/yt-dlp", "echo >> " + folder_ / "started" + "; sleep 1000");
  Process process = Start({"--fetch", "--port=0"});
  EXPECT_EQ(ReadFile(folder_ / "started"), "\n");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(process.End(SIGTERM), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(7));
}

TEST_F(Fetching, AnEndDuringAFetchLeavesNothing) {
  Process process = Start({"--no-cache"});
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  const std::string code = CodeOf("faults");
  EXPECT_FALSE(Languages(List(port, code).body).empty());
  const Descriptor logged(::inotify_init1(IN_CLOEXEC)), client = ConnectTo(port);
  ::inotify_add_watch(logged.Number(), (site_.Folder() / "requests").c_str(), IN_MODIFY);
  SendAll(client, GetRequest("/api/timedtext?&v=" + code + "&lang=stall"));
  pollfd changed{logged.Number(), POLLIN, 0};
  for (std::array<char, 4096> events; site_.Requests("text").empty() && ::poll(&changed, 1, 30'000) == 1;)
    EXPECT_GT(::read(logged.Number(), events.data(), events.size()), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_GE(site_.Children().size(), 2u) << "the gateway and its yt-dlp";
  EXPECT_EQ(process.End(SIGTERM), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
  EXPECT_EQ(site_.ChildrenLeft(), std::set<pid_t>());
  EXPECT_EQ(site_.Scratch().Count(), 0u);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "cache"));
}

}  // namespace
