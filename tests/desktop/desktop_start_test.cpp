// How the program starts: from a shell, with a link, and without a screen.

#include <sys/wait.h>

#include "desktop_fixture.h"

namespace {

struct Outcome {
  int status;
  std::string printed, error;
};

// Runs the program to its end, from a shell with these variables and arguments.
Outcome runProgram(const std::string& environment, const std::string& arguments) {
  const TemporaryFolder folder;
  const std::string command = "env -u DISPLAY -u WAYLAND_DISPLAY " + environment + " " RAVELYN_PATH " " +
                              arguments + " < /dev/null > " + (folder / "out") + " 2> " + (folder / "err");
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(folder / "out"), ReadFile(folder / "err")};
}

}  // namespace

TEST(Start, HelpAndErrorsNeedNoScreen) {
  const std::string noScreen = "-u QT_QPA_PLATFORM", offscreen = "QT_QPA_PLATFORM=offscreen";
  Outcome help = runProgram(noScreen, "--help");
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.printed.substr(0, 35), "Usage: ravelyn [OPTION ...] [LINK]\n");
  EXPECT_EQ(help.error, "");
  EXPECT_EQ(runProgram(noScreen, "--version").printed, "ravelyn " RAVELYN_VERSION "\n");

  for (const std::string arguments : {"", "hB7rV2kQx0w"}) {
    const Outcome screenless = runProgram(noScreen, arguments);
    EXPECT_EQ(screenless.status, 1);
    EXPECT_EQ(screenless.printed, "");
    EXPECT_EQ(
        screenless.error,
        "ravelyn: there is no screen to show the window on; DISPLAY or WAYLAND_DISPLAY must name one\n");
  }
  const std::pair<std::string, std::string> faults[] = {
      {"--odd", "ravelyn: unknown option \"--odd\", see --help\n"},
      {"-x link", "ravelyn: unknown option \"-x\", see --help\n"},
      {"one -- -two", "ravelyn: more than one link, see --help\n"},
  };
  for (const auto& [arguments, error] : faults) {
    const Outcome wrong = runProgram(offscreen, arguments);
    EXPECT_EQ(wrong.status, 2);
    EXPECT_TRUE(wrong.error.ends_with(error)) << wrong.error;
  }
}

TEST_F(Desktop, ALinkOnTheCommandLineIsSearchedAtOnce) {
  Offer(server, "hB7rV2kQx0w", {{"en", "English", Document({{"0", "1", "x"}})}});
  form().UserGivesLink("https://youtu.be/hB7rV2kQx0w?si=x");
  draw();
  EXPECT_EQ(link().text(), QStringLiteral("https://www.youtube.com/watch?v=hB7rV2kQx0w"));
  EXPECT_EQ(languages().model()->rowCount(), 1);
}

int main(int count, char** arguments) { return runOffscreen(count, arguments); }
