// The start and the end of the program, in real processes: from a shell, and from all sides while its own
// event loop runs, driven from inside by the events of a user.

#include <sys/wait.h>

#include <QEvent>
#include <csignal>
#include <map>

#include "desktop/run.h"
#include "desktop_fixture.h"
#include "ravelyn/commands.h"

namespace {

// The program on Qt's own platform, with one answer for the save dialog.
class Answering : public QtPlatform {
 public:
  explicit Answering(std::string path) : path_(std::move(path)) {}
  std::optional<std::string> AskSavePath(const std::string&, const std::string&) override { return path_; }

 private:
  std::string path_;
};

void end(const std::string& how) {
  if (how == "session") {
    QEvent quit(QEvent::Quit);  // what Qt sends when the session manager ends the session
    QCoreApplication::sendEvent(qApp, &quit);
  } else if (how == "screen") {
    std::exit(1);  // what Qt does when the connection to the screen breaks
  } else {
    if (how == "TERM" && ::signal(SIGHUP, SIG_IGN) != SIG_IGN) std::_Exit(1);
    ::raise(how == "TERM" ? SIGTERM : how == "INT" ? SIGINT : SIGHUP);
  }
}

// Chooses SRT, and not to open saved files; then works until `moment`, at which end is called.
void workUntil(const std::string& moment, const std::function<bool()>& isTime,
               const std::function<void()>& end) {
  Window1& form = Window1::Get();
  const bool saves = moment == "fetching" || moment == "writing";
  form.SRTBox.UserClicks();
  form.openBox.UserClicks();
  if (saves) {
    form.TextField1.UserTypes("https://host/watch?v=abc");
    form.PushButton2.UserClicks();
    form.Listbox1.UserSelects({0});
  }
  when(isTime, end);
  if (moment == "message") form.PushButton2.UserClicks();
  if (saves) form.PushButton1.UserClicks();
}

// arguments: "--program", how the program ends, when, its server, and the folder of its saved files.
int runProgram(int count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication qt(count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  const std::string how = arguments[2], moment = arguments[3], folder = arguments[5];
  Answering platform(folder + "/a.srt");
  App app(platform, kCommands, EndpointsAt(arguments[4]));
  const std::map<std::string, std::function<bool()>> isTime = {
      {"idle", [] { return !QApplication::windowIcon().isNull(); }},
      {"message", [] { return shownDialog() != nullptr; }},
      {"fetching", [&app] { return app.IsCommandRunning(); }},
      {"writing", [folder] { return !std::filesystem::is_empty(folder); }}};
  when([&app] { return app.preferencesLoaded; },
       [&] { workUntil(moment, isTime.at(moment), [how] { end(how); }); });
  return run(app, platform);
}

// The exit status, the number of files and the preferences that are left; status -1 is an end by a signal.
std::string runAndEnd(const std::string& how, const std::string& moment, const std::string& server) {
  const TemporaryFolder config, folder;
  const std::string self = std::filesystem::read_symlink("/proc/self/exe");
  const pid_t process = ::fork();
  if (process == 0) {
    ::setenv("XDG_CONFIG_HOME", config.Path().c_str(), 1);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::signal(signal, SIG_DFL);
    if (how == "TERM") ::signal(SIGHUP, SIG_IGN);  // as under nohup
    ::alarm(60);
    ::execl(self.c_str(), "ravelyn", "--program", how.c_str(), moment.c_str(), server.c_str(),
            folder.Path().c_str(), nullptr);
  }
  int status = -1;
  ::waitpid(process, &status, 0);
  return std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + " " + std::to_string(folder.Count()) +
         " " + ReadFile(config / "com.tarnvale.ravelyn.user.prefs");
}

// Runs the program from a shell with this variable of the environment, and gives its exit status and what it
// printed.
std::string runFromShell(const std::string& variable, const std::string& arguments) {
  const TemporaryFolder folder;
  const std::string command = "</dev/null >" + (folder / "out") + " 2>" + (folder / "err") +
                              " env -u DISPLAY -u WAYLAND_DISPLAY " + variable +
                              " XDG_RUNTIME_DIR=" + folder.Path() + " " RAVELYN_PATH " " + arguments;
  const int status = std::system(command.c_str());
  return std::to_string(WEXITSTATUS(status)) + " " + ReadFile(folder / "out") + "/" +
         ReadFile(folder / "err");
}

}  // namespace

TEST(Start, HelpAndErrorsNeedNoScreen) {
  const std::string noScreen = "-u QT_QPA_PLATFORM", offscreen = "QT_QPA_PLATFORM=offscreen";
  EXPECT_TRUE(runFromShell(noScreen, "--help").starts_with("0 Usage: ravelyn [OPTION ...] [LINK]\n"));
  EXPECT_EQ(runFromShell(noScreen, "--version"), "0 ravelyn " RAVELYN_VERSION "\n/");
  EXPECT_EQ(runFromShell(noScreen, "--version >/dev/full"), "1 /");
  const std::string missing =
      "there is no screen to show the window on; DISPLAY or WAYLAND_DISPLAY must name one";
  const std::string cases[][4] = {{noScreen, "", "1", missing},
                                  {noScreen, "hB7rV2kQx0w", "1", missing},
                                  {offscreen, "--odd", "2", "unknown option \"--odd\", see --help"},
                                  {offscreen, "-x link", "2", "unknown option \"-x\", see --help"},
                                  {offscreen, "one -- -two", "2", "more than one link, see --help"}};
  for (const auto& [variable, arguments, status, error] : cases)
    EXPECT_EQ(runFromShell(variable, arguments), status + " /ravelyn: " + error + "\n");
}

TEST(End, EveryEndKeepsThePreferencesAndLeavesNoPartialFile) {
  LoopbackServer server;
  std::vector<Cue> cues(300'000, Cue{"1", "2", "many words"});
  Offer(server, "abc", {{"en", "English", Document(cues)}});
  LoopbackServer stalling;
  stalling.AnswerAt(ListPath("abc"), {Page(TrackList({{"en", "English", ""}}))});
  stalling.Answer({"HTTP/1.0 200 OK\r\nContent-Length: 999\r\n\r\nhalf", Reply::End::Stall});
  for (const std::string how : {"TERM", "INT", "HUP", "session", "screen"}) {
    for (const std::string moment : {"idle", "message", "fetching", "writing"}) {
      if (how == "screen" && moment == "writing") continue;
      const std::string& host = moment == "fetching" ? stalling.Host() : server.Host();
      EXPECT_EQ(runAndEnd(how, moment, host),
                (how == "screen" ? "1" : "0") + std::string(" 0 SRT\nfalse\nfalse\nfalse\nfalse\n"))
          << how << " while " << moment;
    }
  }
}

int main(int count, char** arguments) {
  if (count > 1 && arguments[1] == std::string("--program")) return runProgram(count, arguments);
  return runOffscreen(count, arguments);
}
