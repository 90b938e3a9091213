// How the program starts: from a shell, by a link, and where it can't.

#include <sys/wait.h>

#include "desktop_fixture.h"

namespace {

struct Outcome {
  int status;
  std::string printed, complaint;
};

// The program with these words, started by a shell in this environment, to its end.
Outcome runProgram(const std::string& environment, const std::string& words) {
  const TemporaryFolder folder;
  const std::string command = "env -u DISPLAY -u WAYLAND_DISPLAY " + environment + " " RAVELYN_PATH " " +
                              words + " < /dev/null > " + (folder / "out") + " 2> " + (folder / "err");
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder / "out"), ReadFile(folder / "err")};
}

}  // namespace

TEST(Start, AnswersAShellWithoutAWindow) {
  const std::string noScreen = "-u QT_QPA_PLATFORM", offscreen = "QT_QPA_PLATFORM=offscreen";
  Outcome help = runProgram(noScreen, "--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.printed.substr(0, 35), "Usage: ravelyn [OPTION ...] [LINK]\n");
  EXPECT_EQ(help.complaint, "");
  EXPECT_EQ(runProgram(noScreen, "--version").printed, "ravelyn " RAVELYN_VERSION "\n");

  for (const std::string words : {"", "hB7rV2kQx0w"}) {
    const Outcome blind = runProgram(noScreen, words);
    EXPECT_EQ(blind.status, 1);
    EXPECT_EQ(blind.printed, "");
    EXPECT_EQ(
        blind.complaint,
        "ravelyn: there is no screen to show the window on; DISPLAY or WAYLAND_DISPLAY must name one\n");
  }
  const std::pair<std::string, std::string> faults[] = {
      {"--odd", "ravelyn: unknown option \"--odd\", see --help\n"},
      {"-x link", "ravelyn: unknown option \"-x\", see --help\n"},
      {"one -- -two", "ravelyn: more than one link, see --help\n"},
  };
  for (const auto& [words, complaint] : faults) {
    const Outcome wrong = runProgram(offscreen, words);
    EXPECT_EQ(wrong.status, 2);
    EXPECT_TRUE(wrong.complaint.ends_with(complaint)) << wrong.complaint;
  }
}

TEST_F(Desktop, ALinkThatIsHandedOverIsSearchedAtOnce) {
  Offer(server, "hB7rV2kQx0w", {{"en", "English", Document({{"0", "1", "x"}})}});
  form().PersonHandsOver("https://youtu.be/hB7rV2kQx0w?si=x");
  draw();
  EXPECT_EQ(link().text(), QStringLiteral("https://www.youtube.com/watch?v=hB7rV2kQx0w"));
  EXPECT_EQ(languages().model()->rowCount(), 1);
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
