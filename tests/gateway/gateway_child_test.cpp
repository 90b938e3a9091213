// A child process and its limits, and misbehaving programs in place of yt-dlp.

#include <csignal>

#include "gateway/sources/Child.h"
#include "gateway/sources/CurrentYtDlp.h"
#include "gateway/sources/ScratchFolder.h"
#include "site_fixture.h"
#include "support/clocks.h"

namespace {

using namespace site_test;
using namespace gateway;
using How = ChildEnd::How;

constexpr std::size_t kEnough = 1 << 20;
const std::string kCode = CodeOf("code");

// A scratch folder and shell scripts that replace yt-dlp.
struct Programs {
  Programs() { std::filesystem::create_directory(folder / "scratch"); }

  std::string Write(const std::string& name, const std::string& script) const {
    return WriteScript(folder / name, script);
  }
  std::string Scratch() const { return folder / "scratch"; }
  ChildEnd Run(const std::string& script, const std::string& input = "",
               std::chrono::milliseconds time = 60s) const {
    return Child({"/bin/sh", "-c", script}, Scratch(), 4096).Finish(input, kEnough, 1024, For(time));
  }

  TemporaryFolder folder;
};

TEST(GatewayChild, AChildGetsDescriptorsAFolderASessionAndNoBlockedSignals) {
  const Programs programs;
  sigset_t all, before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_BLOCK, &all, &before);
  const auto handler = ::signal(SIGHUP, SIG_IGN);
  const Descriptor inheritable(::dup(0));
  const Child other({"/bin/cat"}, "/", 0);  // its descriptors must not be inherited
  const ChildEnd end = programs.Run(
      "wc -c; pwd; ls /proc/self/fd | tr '\\n' ' '; grep SigBlk /proc/self/status; "
      "grep -q 'SigIgn.*0000000$' /proc/self/status && echo none ignored; ulimit -f; "
      "[ $(cut -d' ' -f6 /proc/$$/stat) = $$ ] && echo a session; echo words >&2; exit 7",
      std::string(300'000, 'i'));
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGHUP, handler);
  EXPECT_EQ(std::pair(end.how, end.code), std::pair(How::Exited, 7));
  EXPECT_EQ(end.output, "300000\n" + programs.Scratch() +
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
  EXPECT_LE(std::filesystem::file_size(programs.Scratch() + "/file"), 4096u);
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
  const std::size_t descriptors = OpenDescriptors();
  for (std::size_t count = 0; count <= 6; ++count) {
    const FewDescriptors few(count);
    const ChildEnd end = programs.Run("exit 0");
    EXPECT_EQ(std::pair(end.how, end.code), std::pair(How::NotStarted, EMFILE)) << count;
    EXPECT_EQ(ScratchFolder(programs.Scratch()).Path().empty(), count == 0);
  }
  EXPECT_EQ(OpenDescriptors(), descriptors);
  EXPECT_TRUE(std::filesystem::is_empty(programs.Scratch()));
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
      {"echo '{\"id\":\"another----\"}'", failed},
      {"echo '{\"id\":\"code-------\"}'; mkdir -p a/b; ln -s / a/b/c; touch d",
       "This video has no captions."},
  };
  const Programs programs;
  SiteLimits limits = Quick();
  limits.list = 3s;
  for (const auto& [script, cause] : cases) {
    SiteSource source({programs.Write("yt-dlp", script), "", "", programs.Scratch()}, limits);
    EXPECT_EQ(source.Tracks(kCode, {}).cause, cause) << script;
    EXPECT_EQ(source.Text(kCode, "en", {}).cause, cause) << script;
  }
  EXPECT_TRUE(std::filesystem::is_empty(programs.Scratch()));
}

TEST(GatewayChild, AListWithAGapAndTextsThatFailHaveTheirCauses) {
  const std::pair<std::string, std::string> cases[] = {
      {"b", "yt-dlp failed; the gateway's log has its messages. "},
      {"c", "The site sent empty captions. "},
      {"d", "yt-dlp failed; the gateway's log has its messages. ERROR: 16384"},
      {"e", "The site sent no captions: this file is a web page. "}};
  const Programs programs;
  SiteSource source({RAVELYN_SOURCE_DIR "/tests/gateway/failing_texts.sh", "", "", programs.Scratch()},
                    Quick());
  const auto list = source.Tracks(kCode, {});
  EXPECT_EQ(list.tracks.size(), 5u);
  EXPECT_EQ(list.cause, "The site holds captions back from yt-dlp; update yt-dlp or add a token plugin.");
  EXPECT_NE(TextOf(source.Text(kCode, "a", {})).find(">words<"), std::string::npos);
  for (const auto& [track, words] : cases) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(words.starts_with(source.Text(kCode, track, {}).cause + " ")) << track;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ravelyn-gateway: yt-dlp of code-------, " + track + ": " + words + "\n");
  }
}

TEST(GatewayChild, WhatPreventsAStartIsACause) {
  const Programs programs;
  const auto cause = [&](const std::string& program, const std::string& scratch) {
    return SiteSource({programs.folder / program, "", "", scratch}, Quick()).Tracks(kCode, {}).cause;
  };
  programs.Write("yt-dlp", "");
  WriteFile(programs.Write("broken", ""), "#!/nonexistent");
  EXPECT_EQ(cause("none", programs.Scratch()), "yt-dlp is not installed.");
  EXPECT_EQ(cause("broken", programs.Scratch()), "yt-dlp can't be started; reinstall it.");
  EXPECT_EQ(cause("yt-dlp", "/nowhere"), "There is no space for the files of yt-dlp.");
  SiteLimits limits;
  limits.betweenLists = 1h;
  limits.list = 300ms;
  SiteSource busy({programs.folder / "yt-dlp", "", "", programs.Scratch()}, limits);
  busy.Tracks(CodeOf("first"), {});
  EXPECT_EQ(busy.Tracks(CodeOf("second"), {}).cause, "Too many videos are requested at a time; try again.");
}

TEST(GatewayChild, OnlyAFolderLeftByAKilledGatewayIsRemoved) {
  const TemporaryFolder folder;
  const ScratchFolder held(folder.Path());
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
  const ScratchFolder folder(parent.Path());
  WriteFile(folder.Path() + "/file", "words");
  std::filesystem::create_symlink("file", folder.Path() + "/link");
  std::filesystem::create_directory(folder.Path() + "/folder");
  EXPECT_EQ(folder.Read("file", 5), "words");
  for (const auto& [name, largest] : {std::pair("file", 4u), {"link", 99u}, {"folder", 99u}, {"none", 99u}})
    EXPECT_EQ(folder.Read(name, largest), std::nullopt) << name;
}

TEST(GatewayChild, YtDlpIsFoundByNameInTheHomeFolderOrInPath) {
  const Programs programs;
  const auto found = [](const std::string& named) {
    const YtDlp ytDlp = FindYtDlp(named, 10s);
    return ytDlp.program + " " + ytDlp.version;
  };
  const std::string& root = programs.folder.Path();
  for (const std::string folder : {"/home/.local/bin", "/folder/yt-dlp", "/plain"})
    std::filesystem::create_directories(root + folder);
  WriteFile(root + "/plain/yt-dlp", "");
  const std::string path = ::getenv("PATH");
  ::setenv("HOME", (root + "/home").c_str(), 1);
  ::setenv("PATH", ("/nonexistent:" + root + "/folder:" + root + "/plain:" + root + ":" + path).c_str(), 1);
  const std::string inPath = programs.Write(
      "yt-dlp", "read x; [ \"$* $(ulimit -f)\" = '--ignore-config --version 131072' ] && echo 2026.10.26");
  EXPECT_EQ(found(""), inPath + " 2026.10.26");
  const std::string ofTheUser = programs.Write("home/.local/bin/yt-dlp", "echo 2026.10.26.232959");
  EXPECT_EQ(found(""), ofTheUser + " 2026.10.26.232959");
  EXPECT_EQ(found("yt-dlp"), inPath + " 2026.10.26");
  EXPECT_EQ(found("none"), " ");
  for (const std::string rubbish :
       {"echo youtube-dl 2021", "echo 2026.10.26; head -c 4086 /dev/zero", "echo 2026.10.26; exit 1"})
    EXPECT_EQ(found(programs.Write("rubbish", rubbish)), root + "/rubbish ") << rubbish;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(CurrentYtDlp({}, programs.Write("hanging", "sleep 1000")).Get(For(300ms)).version, "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 8s);
  for (const char* name : {"PATH", "HOME"}) ::setenv(name, "", 1);
  EXPECT_EQ(found(""), " ");

  SiteSource source({"", "", "", programs.Scratch()}, Quick());
  EXPECT_EQ(source.Tracks(kCode, {}).cause, "yt-dlp is not installed.");
  ::setenv("PATH", root.c_str(), 1);
  programs.Write("yt-dlp", "echo 2023.03.04");
  EXPECT_EQ(source.Tracks(kCode, {}).cause, "yt-dlp 2023.03.04 is too old for the site.");
  programs.Write("yt-dlp", "[ $2 = --version ] && echo >> " + root + "/asked && echo 2999.01.01");
  std::filesystem::last_write_time(root + "/yt-dlp", {});
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(source.Tracks(kCode, {}).cause, "yt-dlp failed; the gateway's log has its messages.");
  EXPECT_EQ(ReadFile(root + "/asked"), "\n") << "asked for its version once";
  ::setenv("PATH", path.c_str(), 1);
}

}  // namespace
