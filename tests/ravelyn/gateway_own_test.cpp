// The program's own gateway, with real processes and sockets. This file is four programs: the tests, a
// gateway that replies with the state in which it was started, a program that is killed, and one that only
// looks for its gateway.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "http/HTTPSocket.h"
#include "ravelyn/OwnGateway.h"
#include "ravelyn/gateway_process.h"
#include "runtime/Text.h"
#include "runtime/await.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/captions.h"
#include "support/processes.h"

namespace {

namespace fs = std::filesystem;

const std::string kSelf = fs::read_symlink("/proc/self/exe");

int FreePort() {
  int port = 0;
  ::close(ListenOnLoopback(port));
  return port;
}

std::string At(int port) { return "127.0.0.1:" + std::to_string(port); }

std::string Ask(int port, const std::string& path = "/") {
  HTTPSocket client;
  return client.Get("http://" + At(port) + path, 20);
}

// Whether the process with this descriptor ends within ten seconds.
bool Ends(int process) { return IsReadyWithin(10'000, {process, true, false}); }

// Descriptors, variables and signals of this process, in one line.
std::string OwnState() {
  std::string state = "pid " + std::to_string(::getpid()) + " descriptors";
  for (int i = 0; i < 1000; ++i) {
    if (::fcntl(i, F_GETFD) >= 0) state += " " + std::to_string(i);
  }
  const bool isNamed = std::getenv("LISTEN_PID") == std::to_string(::getpid());
  state += isNamed && std::getenv("LISTEN_FDS") == std::string("1") ? " handed over" : "";
  sigset_t blocked;
  ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
  state += ::sigismember(&blocked, SIGTERM) != 0 ? " blocked" : "";
  for (const int signal : {SIGPIPE, SIGHUP, SIGINT, SIGTERM})
    state += ::signal(signal, SIG_IGN) == SIG_IGN ? " ignoring" : "";
  state += std::getenv("LISTEN_FDNAMES") ? " named" : "";
  return state + " writes to " + fs::read_symlink("/proc/self/fd/1").string();
}

// Replies to every request with its state; ends with its input, or at once on "/crash".
int RunGateway() {
  const std::string state = OwnState();
  for (;;) {
    pollfd waiting[] = {{0, POLLIN, 0}, {3, POLLIN, 0}};
    ::poll(waiting, 2, -1);
    if (waiting[0].revents) return 0;
    const int client = ::accept(3, nullptr, nullptr);
    if (client < 0) continue;
    char request[4096];
    const ssize_t size = ::read(client, request, sizeof request);
    if (std::string_view(request, static_cast<std::size_t>(std::max<ssize_t>(size, 0)))
            .starts_with("GET /crash"))
      ::abort();
    const std::string page = Page(state);
    ::send(client, page.data(), page.size(), MSG_NOSIGNAL);
    ::close(client);
  }
}

// Starts a gateway, and a child that outlives both; reports the child's process ID and waits to be killed.
int RunProgram(const std::string& endpoint) {
  OwnGateway gateway(EndpointsAt(endpoint), {kSelf, "--gateway"});
  gateway.Start();
  const pid_t other = Spawn({"sleep", "20"}, {});
  const std::string line = std::to_string(other) + "\n";
  const ssize_t written = ::write(1, line.data(), line.size());
  for (;;) ::pause();
  return written < 0;
}

// Sets a variable of the environment for its own lifetime.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    ::setenv(name, value.c_str(), 1);
  }
  ~Variable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

struct Running {
  explicit Running(int at = FreePort()) : port(at) {}
  int port;
  OwnGateway gateway{EndpointsAt(At(port)), {kSelf, "--gateway"}};
};

}  // namespace

TEST(OwnGateway, ARequestBeforeTheStartIsAnswered) {
  sigset_t term;
  ::sigemptyset(&term);
  ::sigaddset(&term, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &term, nullptr);
  for (const int signal : {SIGPIPE, SIGHUP, SIGINT}) ::signal(signal, SIG_IGN);
  const Variable names("LISTEN_FDNAMES", "another's");
  const int leaky = ::fcntl(0, F_DUPFD, 4);

  Running own;
  HTTPSocket early;
  std::string answer;
  early.PageReceived = [&](const std::string&, int, auto, const std::string& page) { answer = page; };
  early.Get("http://" + At(own.port) + "/");
  while (!early.IsConnected()) early.Wait(kForever), early.Poll();
  own.gateway.Start();
  while (answer.empty() && early.LastErrorCode() == 0) early.Wait(kForever), early.Poll();
  const std::string pid = NthField(answer, " ", 2);
  EXPECT_EQ(answer, "pid " + pid + " descriptors 0 1 2 3 handed over writes to /dev/null");
  EXPECT_EQ(::getpgid(std::stoi(pid)), std::stoi(pid)) << "a group of its own";

  HTTPSocket other;
  EXPECT_EQ(other.Get("http://127.0.0.2:" + std::to_string(own.port) + "/", 20), "");
  EXPECT_EQ(other.LastErrorCode(), ECONNREFUSED) << "it listens at 127.0.0.1 alone";

  ::close(leaky);
  for (const int signal : {SIGPIPE, SIGHUP, SIGINT}) ::signal(signal, SIG_DFL);
  ::sigprocmask(SIG_UNBLOCK, &term, nullptr);
}

TEST(OwnGateway, EndsWithAKilledProgram) {
  int output[2];
  ASSERT_EQ(::pipe2(output, O_CLOEXEC), 0);
  const int port = FreePort();
  const pid_t program = Spawn({kSelf, "--program", At(port)}, {-1, output[1]});
  char line[32] = {};
  ASSERT_GT(::read(output[0], line, sizeof line - 1), 0);
  const pid_t gateway = std::stoi(NthField(Ask(port), " ", 2)), other = std::stoi(line);
  const int ended = static_cast<int>(::syscall(SYS_pidfd_open, gateway, 0));
  ::kill(program, SIGKILL);
  ::waitpid(program, nullptr, 0);
  EXPECT_TRUE(Ends(ended));
  EXPECT_TRUE(Running(port).gateway.IsListening());
  EXPECT_EQ(::kill(other, SIGKILL), 0) << "which another child of the program did not keep";
  for (const int descriptor : {output[0], output[1], ended}) ::close(descriptor);
}

TEST(OwnGateway, OtherEndpointsOrATakenPortStartNothing) {
  int taken = 0;
  const int listener = ListenOnLoopback(taken);
  Endpoints two = EndpointsAt(At(FreePort()));
  two.TimedTextEndpoint = At(FreePort());
  const std::string port = ":" + std::to_string(FreePort());
  for (const Endpoints& where : {EndpointsAt(At(taken)), two, EndpointsAt("captions.example" + port),
                                 EndpointsAt("127.0.0.1"), EndpointsAt("127.0.0.1:99999")}) {
    OwnGateway gateway(where, {kSelf, "--gateway"});
    gateway.Start();
    EXPECT_EQ(std::pair(gateway.Ended(), gateway.Process()), std::pair(-1, -1)) << where.TrackListEndpoint;
    EXPECT_FALSE(gateway.IsListening()) << where.TrackListEndpoint;
  }
  Running later(taken);
  later.gateway.Start();
  EXPECT_EQ(later.gateway.Ended(), -1);
  ::close(listener);
  later.gateway.Start();
  EXPECT_TRUE(Ask(taken).starts_with("pid ")) << "when the other has gone";
  for (const std::string& where : {"localhost" + port, std::string("127.0.0.1:65535")})
    EXPECT_TRUE(OwnGateway(EndpointsAt(where), {kSelf}).IsListening()) << where;
  EXPECT_FALSE(OwnGateway(EndpointsAt("127.0.0.1" + port), {}).IsListening()) << "nothing to start";
}

TEST(OwnGateway, RestartsThreeTimesAMinuteAfterCrashes) {
  const auto descriptors = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
  Running own;
  own.gateway.Start();
  EXPECT_NE(Ask(own.port), "") << "the client's first call opens descriptors that stay open";
  const auto open = descriptors();
  for (int crashes = 1; crashes <= 3; ++crashes) {
    const pid_t process = own.gateway.Process();
    EXPECT_TRUE(Ask(own.port).starts_with("pid " + std::to_string(process) + " "));
    EXPECT_EQ(Ask(own.port, "/crash"), "");
    ASSERT_TRUE(Ends(own.gateway.Ended()));
    own.gateway.Start();
    EXPECT_EQ(::kill(process, 0), -1) << "it is waited for";
    EXPECT_EQ(descriptors(), crashes < 3 ? open : open - 3);
  }
  EXPECT_EQ(std::pair(own.gateway.Ended(), own.gateway.Process()), std::pair(-1, -1));
  EXPECT_FALSE(own.gateway.IsListening());
}

TEST(OwnGateway, AProgramThatCantRunClosesThePort) {
  OwnGateway gateway(EndpointsAt(At(FreePort())), {"/nowhere/ravelyn-gateway"});
  for (int i = 0; i < 4 && gateway.IsListening(); ++i) {
    gateway.Start();
    EXPECT_TRUE(gateway.Ended() < 0 || Ends(gateway.Ended()));
  }
  EXPECT_FALSE(gateway.IsListening());
  int status = 0;
  ::waitpid(StartGateway({"/nowhere/ravelyn-gateway"}, 0, 0), &status, 0);
  EXPECT_EQ(WEXITSTATUS(status), 127);
}

TEST(OwnGateway, IsFoundBesideTheProgramOrInThePathAndServesTwoFolders) {
  const TemporaryFolder folder;
  for (const char* name : {"plain", "bin"}) {
    fs::create_directory(folder / name);
    WriteFile(folder / name + "/ravelyn-gateway", "");
  }
  fs::create_directories(folder / "no/ravelyn-gateway");
  fs::permissions(folder / "bin/ravelyn-gateway", fs::perms::owner_all);
  const Variable home("HOME", "/home/user");
  const std::string none = ":relative:" + (folder / "no") + ":" + (folder / "plain");
  EXPECT_TRUE((Variable("PATH", none), GatewayCommand().empty()));
  fs::copy_file(kSelf, folder / "bin/self");
  const pid_t beside = (Variable("PATH", none), Spawn({folder / "bin/self", "--find"}, {}));
  int status = -1;
  ::waitpid(beside, &status, 0);
  EXPECT_EQ(status, 0);
  const Variable path("PATH", none + ":" + (folder / "bin"));
  EXPECT_EQ(GatewayCommand(),
            (OwnGateway::CommandLine{folder / "bin/ravelyn-gateway", "--fetch", "--stop-with-input",
                                     "--folder", "/home/user/.local/share/ravelyn/captions", "--folder",
                                     folder / "share/ravelyn/captions"}));
  const Variable noHome("HOME", "home/user");
  EXPECT_EQ(GatewayCommand().at(4),
            ::getpwuid(::getuid())->pw_dir + std::string("/.local/share/ravelyn/captions"));
}

// With no yt-dlp in PATH, so that nothing is fetched.
TEST(OwnGateway, ServesTheUsersFilesAndEndsInOrder) {
  const TemporaryFolder folder;
  const Variable home("HOME", folder.Path()), cache("XDG_CACHE_HOME", folder / "cache");
  const Variable path("PATH", fs::path(RAVELYN_GATEWAY_PATH).parent_path());
  fs::create_directories(folder / ".local/share/ravelyn/captions");
  WriteFile(folder / ".local/share/ravelyn/captions/A walk [abcdefghijk].en.srv1",
            Document({{"1.500", "2.000", "Hello"}}));
  const int port = FreePort();
  pid_t process = -1;
  {
    OwnGateway gateway(EndpointsAt(At(port)), GatewayCommand());
    gateway.Start();
    process = gateway.Process();
    EXPECT_EQ(Ask(port, TrackPath("abcdefghijk", "en")), Document({{"1.500", "2.000", "Hello"}}));
  }
  EXPECT_EQ(::kill(process, 0), -1) << "it is waited for";
  EXPECT_TRUE(Running(port).gateway.IsListening()) << "and the next program finds the port free";
}

int main(int count, char** arguments) {
  const std::string part = count > 1 ? arguments[1] : "";
  if (part == "--gateway") return RunGateway();
  if (part == "--program") return RunProgram(arguments[2]);
  if (part == "--find") return GatewayCommand().empty() ? 1 : 0;
  ::testing::InitGoogleTest(&count, arguments);
  return RUN_ALL_TESTS();
}
