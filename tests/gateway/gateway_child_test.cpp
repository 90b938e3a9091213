// A child process and its limits, and misbehaving programs in place of yt-dlp.

#include <sys/resource.h>

#include <csignal>

#include "gateway/sources/Child.h"
#include "gateway/sources/ScratchFolder.h"
#include "site_fixture.h"

namespace {

using namespace site_test;
using gateway::Child;
using gateway::ChildEnd;
using gateway::SiteLimits;
using gateway::SiteSource;
using How = gateway::ChildEnd::How;

constexpr std::size_t kEnough = 1 << 20;

gateway::Patience For(std::chrono::milliseconds time) { return {std::chrono::steady_clock::now() + time}; }

// A scratch folder and shell scripts that replace yt-dlp.
struct Programs {
  Programs() { std::filesystem::create_directory(folder / "scratch"); }

  std::string Write(const std::string& name, const std::string& script) const {
    WriteFile(folder / name, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
    return folder / name;
  }
  ChildEnd Run(const std::string& script, const std::string& input = "",
               std::chrono::milliseconds time = 60s) const {
    return Child({"/bin/sh", "-c", script}, folder / "scratch", 4096).Finish(input, kEnough, 1024, For(time));
  }

  TemporaryFolder folder;
};

TEST(GatewayChild, AChildGetsDescriptorsAFolderASessionAndNoBlockedSignals) {
  const Programs programs;
  sigset_t all, before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, &before);
  const Child other({"/bin/cat"}, "/", 0);  // its descriptors must not be inherited
  const ChildEnd end = programs.Run(
      "wc -c; pwd; ls /proc/self/fd | tr '\\n' ' '; grep SigBlk /proc/self/status; ulimit -f; "
      "[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && echo a session; echo words >&2; exit 7",
      std::string(300'000, 'i'));
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  EXPECT_EQ(end.how, How::Exited);
  EXPECT_EQ(end.code, 7);
  EXPECT_EQ(end.output, "300000\n" + (programs.folder / "scratch") +
                            "\n0 1 2 3 SigBlk:\t0000000000000000\n8\na session\n");
  EXPECT_EQ(end.messages, "words\n");
}

TEST(GatewayChild, AChildOverALimitIsKilledWithItsProcessGroup) {
  const Programs programs;
  EXPECT_EQ(programs.Run("yes").how, How::TooMuch);
  EXPECT_EQ(programs.Run("yes >&2").how, How::TooMuch);
  EXPECT_EQ(programs.Run("kill -SEGV $$").how, How::Crashed);
  EXPECT_EQ(programs.Run("read line; yes > file", "go\n").how, How::Exited);
  EXPECT_LE(std::filesystem::file_size(programs.folder / "scratch/file"), 4096u);
  EXPECT_EQ(programs.Run("exec <&- >&- 2>&-; sleep 1000", std::string(300'000, 'i'), 300ms).how,
            How::TooLate);
  EXPECT_EQ(programs.Run("trap '' TERM HUP; sleep 1000 & sleep 1000", "", 300ms).how, How::TooLate);
  const ChildEnd leaving = programs.Run("sleep 1000 & echo $!");
  EXPECT_EQ(leaving.how, How::Exited) << "although its own child keeps its output open";
  EXPECT_TRUE(Ends(std::atoi(leaving.output.c_str())));
  EXPECT_EQ(Child({"/nonexistent"}, "/", 0).Finish("", 1, 1, For(60s)).code, ENOENT);
}

TEST(GatewayChild, AProgramThatMisbehavesGivesItsCause) {
  const std::string failed = "yt-dlp failed; the gateway's log has its messages.";
  const std::pair<std::string, std::string> cases[] = {
      {"sleep 1000", "The site took too long."},
      {"kill -SEGV $$", "yt-dlp crashed."},
      {"yes", "The output of yt-dlp is too long."},
      {"yes >&2", "The output of yt-dlp is too long."},
      {"echo 'yt-dlp: error: no such option: --print' >&2; exit 2",
       "This yt-dlp doesn't know the options that it needs; update it."},
      {"echo 'Traceback (most recent call last):' >&2; exit 1", failed},
      {"echo 'ERROR: [x] Extractor x: xtraction failed' >&2; exit 1",
       "yt-dlp doesn't understand the site; update it."},
      {"echo 'no JSON'", failed},
      {"echo '[[[[[{'", failed},
      {"echo '{\"id\":\"another----\"}'", failed},
      {"echo '{\"id\":\"code-------\"}'; mkdir -p a/b; ln -s / a/b/c; touch d",
       "This video has no captions."},
      {"exit 0", failed},
  };
  const Programs programs;
  SiteLimits limits = Quick();
  limits.list = 3s;
  limits.outputBytes = limits.messageBytes = 1 << 16;
  for (const auto& [script, cause] : cases) {
    SiteSource source({programs.Write("yt-dlp", script), "", "", programs.folder / "scratch"}, limits);
    EXPECT_EQ(source.Tracks(CodeOf("code"), {}).cause, cause) << script;
    EXPECT_EQ(source.Text(CodeOf("code"), "en", {}).cause, cause) << script;
  }
  EXPECT_TRUE(std::filesystem::is_empty(programs.folder / "scratch"));
}

TEST(GatewayChild, AListWithAGapNamesTheCauseBesideItsTracks) {
  const Programs programs;
  const std::string entry = R"({"ext":"srv1","url":"https://host/?v=x"})";
  const std::string program = programs.Write(
      "yt-dlp",
      "echo 'WARNING: a PO token was not provided' >&2; echo '{\"id\":\"code-------\",\"subtitles\":{\"en\":[" +
          entry + "]}}'; cat");
  SiteSource source({program, "", "", programs.folder / "scratch"}, Quick());
  const auto list = source.Tracks(CodeOf("code"), {});
  EXPECT_EQ(list.tracks.size(), 1u);
  EXPECT_EQ(list.cause, "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin.");
}

TEST(GatewayChild, AMissingProgramAndAMissingScratchFolderAreCauses) {
  const Programs programs;
  SiteSource missing({programs.folder / "none", "", "", ""});
  EXPECT_EQ(missing.Tracks(CodeOf("code"), {}).cause, "yt-dlp is not installed.");
  SiteSource full({programs.Write("yt-dlp", ""), "", "", programs.folder / "nowhere"}, Quick());
  EXPECT_EQ(full.Tracks(CodeOf("code"), {}).cause, "There is no space for the files of yt-dlp.");
}

TEST(GatewayChild, OnlyAFolderLeftByAKilledGatewayIsRemoved) {
  const TemporaryFolder folder;
  const gateway::ScratchFolder held(folder.Path());
  const std::string stale = folder / "ravelyn-fetch-stale", young = folder / "ravelyn-fetch-young";
  for (const std::string& path : {stale, young, folder / "other"})
    std::filesystem::create_directories(path + "/a");
  std::filesystem::create_directory_symlink(folder / "other", folder / "ravelyn-fetch-link");
  WriteFile(stale + "/a/c.c.srv1", "left");
  const auto hourAgo = std::filesystem::file_time_type::clock::now() - 1h;
  for (const std::string& path : {held.Path(), stale, folder / "other"})
    std::filesystem::last_write_time(path, hourAgo);
  const SiteSource starting({"/nonexistent", "", "", folder.Path()});
  EXPECT_FALSE(std::filesystem::exists(stale));
  for (const std::string& path : {held.Path(), young, folder / "other/a"})
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
}

TEST(GatewayChild, OnlyARegularFileWithinTheLimitIsRead) {
  const TemporaryFolder parent;
  const gateway::ScratchFolder folder(parent.Path());
  WriteFile(folder.Path() + "/file", "words");
  std::filesystem::create_symlink("file", folder.Path() + "/link");
  std::filesystem::create_directory(folder.Path() + "/folder");
  EXPECT_EQ(folder.Read("file", 5), "words");
  EXPECT_EQ(folder.Read("file", 4), std::nullopt);
  for (const char* other : {"link", "folder", "none"})
    EXPECT_EQ(folder.Read(other, 99), std::nullopt) << other;
}

TEST(GatewayChild, YtDlpIsFoundByNameInTheHomeFolderOrInPath) {
  const Programs programs;
  const auto found = [](const std::string& named) {
    const gateway::YtDlp ytDlp = gateway::FindYtDlp(named, 10s);
    return ytDlp.program + " " + ytDlp.version;
  };
  std::filesystem::create_directories(programs.folder / "home/.local/bin");
  const std::string path = ::getenv("PATH"), home = programs.folder / "home";
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("PATH", ("/nonexistent:" + programs.folder.Path() + ":" + path).c_str(), 1);
  const std::string inPath =
      programs.Write("yt-dlp", "[ \"$*\" = '--ignore-config --version' ] && echo 2026.10.26");
  EXPECT_EQ(found(""), inPath + " 2026.10.26");
  const std::string ofTheUser = programs.Write("home/.local/bin/yt-dlp", "echo 2026.10.26.232959");
  EXPECT_EQ(found(""), ofTheUser + " 2026.10.26.232959");
  EXPECT_EQ(found("yt-dlp"), inPath + " 2026.10.26");
  EXPECT_EQ(found("none"), " ");
  for (const std::string rubbish :
       {"echo youtube-dl 2021", "echo 2023.3.4", "echo 2026.10.261", "echo 2026.10.26.x", "echo 2026-10.26",
        "echo 2026.10-26", "echo 2.26.10.26", "yes", "exit 1", "echo 2026.10.26; exit 1"})
    EXPECT_EQ(found(programs.Write("rubbish", rubbish)), (programs.folder / "rubbish") + " ") << rubbish;
  EXPECT_EQ(gateway::FindYtDlp(programs.Write("hanging", "sleep 1000"), 300ms).version, "");
  ::setenv("PATH", "", 1);
  ::setenv("HOME", "", 1);
  EXPECT_EQ(found(""), " ");

  SiteSource source({"", "", "", programs.folder / "scratch"}, Quick());
  const auto cause = [&] { return source.Tracks(CodeOf("code"), {}).cause; };
  EXPECT_EQ(cause(), "yt-dlp is not installed.");
  ::setenv("PATH", programs.folder.Path().c_str(), 1);
  programs.Write("yt-dlp", "echo 2023.03.04");
  EXPECT_EQ(cause(), "yt-dlp 2023.03.04 is too old for the site.") << "installed meanwhile";
  programs.Write("yt-dlp", "[ $2 = --version ] && echo 2999.01.01");
  std::filesystem::last_write_time(programs.folder / "yt-dlp", {});
  EXPECT_EQ(cause(), "yt-dlp failed; the gateway's log has its messages.") << "updated meanwhile";
  ::setenv("PATH", path.c_str(), 1);
}

}  // namespace
