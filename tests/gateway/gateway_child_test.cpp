// A child process and its limits, and misbehaving programs in place of yt-dlp.

#include <csignal>

#include "gateway/sources/Child.h"
#include "gateway/sources/CurrentYtDlp.h"
#include "gateway/sources/ScratchFolder.h"
#include "site_fixture.h"
#include "support/clocks.h"

namespace {

using namespace site_test;
using gateway::Child;
using gateway::ChildEnd;
using gateway::SiteLimits;
using gateway::SiteSource;
using How = gateway::ChildEnd::How;

constexpr std::size_t kEnough = 1 << 20;

// A scratch folder and shell scripts that replace yt-dlp.
struct Programs {
  Programs() { std::filesystem::create_directory(folder / "scratch"); }

  std::string Write(const std::string& name, const std::string& script) const {
    return WriteScript(folder / name, script);
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
  const auto handler = ::signal(SIGHUP, SIG_IGN);
  const gateway::Descriptor inheritable(::dup(0));
  const Child other({"/bin/cat"}, "/", 0);  // its descriptors must not be inherited
  const ChildEnd end = programs.Run(
      "wc -c; pwd; ls /proc/self/fd | tr '\\n' ' '; grep SigBlk /proc/self/status; "
      "grep -q 'SigIgn.*0000000$' /proc/self/status && echo none ignored; ulimit -f; "
      "[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && echo a session; echo words >&2; exit 7",
      std::string(300'000, 'i'));
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGHUP, handler);
  EXPECT_EQ(end.how, How::Exited);
  EXPECT_EQ(end.code, 7);
  EXPECT_EQ(end.output, "300000\n" + (programs.folder / "scratch") +
                            "\n0 1 2 3 SigBlk:\t0000000000000000\nnone ignored\n8\na session\n");
  EXPECT_EQ(end.messages, "words\n");
}

TEST(GatewayChild, AChildOverALimitIsKilledWithItsProcessGroup) {
  const Programs programs;
  EXPECT_EQ(programs.Run("yes").how, How::TooMuch);
  EXPECT_EQ(programs.Run("printf x; head -c 1024 /dev/zero >&2").output, "x");
  EXPECT_EQ(programs.Run("head -c 1025 /dev/zero >&2").how, How::TooMuch);
  EXPECT_EQ(programs.Run("kill -SEGV $$").how, How::Crashed);
  EXPECT_EQ(programs.Run("read line; yes > file", "go\n").how, How::Exited);
  EXPECT_LE(std::filesystem::file_size(programs.folder / "scratch/file"), 4096u);
  const double before = ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID);
  EXPECT_EQ(programs.Run("exec <&- >&- 2>&-; sleep 1000", std::string(300'000, 'i'), 500ms).how,
            How::TooLate);
  EXPECT_LT(ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID) - before, 0.2);
  EXPECT_EQ(programs.Run("trap '' TERM HUP; sleep 1000 & sleep 1000", "", 300ms).how, How::TooLate);
  const ChildEnd leaving = programs.Run("sleep 1000 & echo $!");
  EXPECT_EQ(leaving.how, How::Exited) << "although its own child keeps its output open";
  EXPECT_TRUE(Ends(std::atoi(leaving.output.c_str())));
  EXPECT_EQ(Child({"/nonexistent"}, "/", 0).Finish("", 1, 1, For(60s)).code, ENOENT);
}

TEST(GatewayChild, WithoutDescriptorsNothingStartsAndNothingIsLeft) {
  const Programs programs;
  const std::string scratch = programs.folder / "scratch";
  const std::size_t descriptors = OpenDescriptors();
  for (std::size_t count = 0; count <= 6; ++count) {
    const FewDescriptors few(count);
    const ChildEnd end = programs.Run("exit 0");
    EXPECT_EQ(std::pair(end.how, end.code), std::pair(How::NotStarted, EMFILE)) << count;
    EXPECT_EQ(gateway::ScratchFolder(scratch).Path().empty(), count == 0);
  }
  EXPECT_EQ(OpenDescriptors(), descriptors);
  EXPECT_TRUE(std::filesystem::is_empty(scratch));
}

TEST(GatewayChild, AProgramThatMisbehavesGivesItsCause) {
  const std::string failed = "yt-dlp failed; the gateway's log has its messages.";
  const std::pair<std::string, std::string> cases[] = {
      {"sleep 1000", "The site took too long."},
      {"kill -SEGV $$", "yt-dlp crashed."},
      {"head -c 67108865 /dev/zero", "The output of yt-dlp is too long."},
      {"head -c 65537 /dev/zero >&2", "The output of yt-dlp is too long."},
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
  for (const auto& [script, cause] : cases) {
    SiteSource source({programs.Write("yt-dlp", script), "", "", programs.folder / "scratch"}, limits);
    EXPECT_EQ(source.Tracks(CodeOf("code"), {}).cause, cause) << script;
    EXPECT_EQ(source.Text(CodeOf("code"), "en", {}).cause, cause) << script;
  }
  EXPECT_TRUE(std::filesystem::is_empty(programs.folder / "scratch"));
}

// A list of the tracks a to e. The text of b is written completely, but the program fails.
constexpr char kScript[] = R"sh(case "$*" in
*--print*)
  echo 'WARNING: a PO token was not provided' >&2
  for track in a b c d e; do
    tracks="$tracks${tracks:+,}\"$track\":[{\"ext\":\"srv1\",\"url\":\"https://host/?$track\"}]"
  done
  echo "{\"id\":\"code-------\",\"subtitles\":{$tracks}}";;
*)
  input=$(cat); text='<transcript><text start="1" dur="2">words</text></transcript>'
  case "$input" in
  *host/?a*) echo "$text" >c.c.srv1;;
  *host/?b*) echo "$text" >c.c.srv1; exit 1;;
  *host/?c*) >c.c.srv1;;
  *host/?d*) echo "ERROR: $(ulimit -f)" >&2;;
  *) echo '<html>' >c.c.srv1;;
  esac;;
esac)sh";

TEST(GatewayChild, AListWithAGapAndTextsThatFailHaveTheirCauses) {
  const std::pair<std::string, std::string> cases[] = {
      {"b", "yt-dlp failed; the gateway's log has its messages. "},
      {"c", "The site sent empty captions. "},
      {"d", "yt-dlp failed; the gateway's log has its messages. ERROR: 16384"},
      {"e", "The site sent no captions: this file is a web page. "}};
  const Programs programs;
  SiteSource source({programs.Write("yt-dlp", kScript), "", "", programs.folder / "scratch"}, Quick());
  const auto list = source.Tracks(CodeOf("code"), {});
  EXPECT_EQ(list.tracks.size(), 5u);
  EXPECT_EQ(list.cause, "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin.");
  EXPECT_NE(TextOf(source.Text(CodeOf("code"), "a", {})).find(">words<"), std::string::npos);
  for (const auto& [track, words] : cases) {
    testing::internal::CaptureStderr();
    const std::string cause = source.Text(CodeOf("code"), track, {}).cause;
    EXPECT_TRUE(words.starts_with(cause + " ")) << cause;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ravelyn-gateway: yt-dlp of code-------, " + track + ": " + words + "\n");
  }
}

TEST(GatewayChild, WhatPreventsAStartIsACause) {
  const Programs programs;
  const auto cause = [&](const std::string& program, const std::string& scratch) {
    return SiteSource({programs.folder / program, "", "", programs.folder / scratch}, Quick())
        .Tracks(CodeOf("code"), {})
        .cause;
  };
  programs.Write("yt-dlp", "");
  WriteFile(programs.Write("broken", ""), "#!/nonexistent");
  EXPECT_EQ(cause("none", "scratch"), "yt-dlp is not installed.");
  EXPECT_EQ(cause("broken", "scratch"), "yt-dlp can't be started; reinstall it.");
  EXPECT_EQ(cause("yt-dlp", "nowhere"), "There is no space for the files of yt-dlp.");
  SiteLimits limits;
  limits.betweenLists = 1h;
  limits.list = 300ms;
  SiteSource busy({programs.folder / "yt-dlp", "", "", programs.folder / "scratch"}, limits);
  busy.Tracks(CodeOf("first"), {});
  EXPECT_EQ(busy.Tracks(CodeOf("second"), {}).cause, "Too many videos are requested at a time; try again.");
}

TEST(GatewayChild, OnlyAFolderLeftByAKilledGatewayIsRemoved) {
  const TemporaryFolder folder;
  const gateway::ScratchFolder held(folder.Path());
  const std::string stale = folder / "ravelyn-fetch-stale", young = folder / "ravelyn-fetch-young",
                    other = folder / "ravelyn-fetched";
  for (const std::string& path : {stale, young, other}) std::filesystem::create_directories(path + "/a");
  std::filesystem::create_directory_symlink(other, folder / "ravelyn-fetch-link");
  WriteFile(stale + "/a/c.c.srv1", "left");
  const auto tenMinutesAgo = std::filesystem::file_time_type::clock::now() - 10min;
  for (const std::string& path : {held.Path(), stale, other})
    std::filesystem::last_write_time(path, tenMinutesAgo);
  const SiteSource starting({"/nonexistent", "", "", folder.Path()});
  EXPECT_FALSE(std::filesystem::exists(stale));
  for (const std::string& path : {held.Path(), young, other + "/a"})
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
  std::filesystem::create_directories(programs.folder / "folder/yt-dlp");
  std::filesystem::create_directory(programs.folder / "plain");
  WriteFile(programs.folder / "plain/yt-dlp", "");
  const std::string path = ::getenv("PATH"), home = programs.folder / "home";
  ::setenv("HOME", home.c_str(), 1);
  ::setenv("PATH",
           ("/nonexistent:" + programs.folder / "folder" + ":" + programs.folder / "plain" + ":" +
            programs.folder.Path() + ":" + path)
               .c_str(),
           1);
  const std::string inPath = programs.Write(
      "yt-dlp", "read x; [ \"$* $(ulimit -f)\" = '--ignore-config --version 131072' ] && echo 2026.10.26");
  EXPECT_EQ(found(""), inPath + " 2026.10.26");
  const std::string ofTheUser = programs.Write("home/.local/bin/yt-dlp", "echo 2026.10.26.232959");
  EXPECT_EQ(found(""), ofTheUser + " 2026.10.26.232959");
  EXPECT_EQ(found("yt-dlp"), inPath + " 2026.10.26");
  EXPECT_EQ(found("none"), " ");
  for (const std::string rubbish : {"echo youtube-dl 2021", "echo 2026.10.26; head -c 4086 /dev/zero",
                                    "exit 1", "echo 2026.10.26; exit 1"})
    EXPECT_EQ(found(programs.Write("rubbish", rubbish)), (programs.folder / "rubbish") + " ") << rubbish;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(gateway::CurrentYtDlp({}, programs.Write("hanging", "sleep 1000")).Get(For(300ms)).version, "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 8s);
  ::setenv("PATH", "", 1);
  ::setenv("HOME", "", 1);
  EXPECT_EQ(found(""), " ");

  SiteSource source({"", "", "", programs.folder / "scratch"}, Quick());
  const auto cause = [&] { return source.Tracks(CodeOf("code"), {}).cause; };
  EXPECT_EQ(cause(), "yt-dlp is not installed.");
  ::setenv("PATH", programs.folder.Path().c_str(), 1);
  programs.Write("yt-dlp", "echo 2023.03.04");
  EXPECT_EQ(cause(), "yt-dlp 2023.03.04 is too old for the site.") << "installed meanwhile";
  programs.Write("yt-dlp",
                 "[ $2 = --version ] && echo >> " + programs.folder / "asked" + " && echo 2999.01.01");
  std::filesystem::last_write_time(programs.folder / "yt-dlp", {});
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(cause(), "yt-dlp failed; the gateway's log has its messages.") << "updated meanwhile";
  EXPECT_EQ(ReadFile(programs.folder / "asked"), "\n") << "asked for its version once";
  ::setenv("PATH", path.c_str(), 1);
}

}  // namespace
