// How the gateway behaves towards many, slow and hostile clients.

#include <fcntl.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>

#include "gateway_process.h"
#include "runtime/Text.h"
#include "support/clocks.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::Limits;
using Lines = std::vector<std::string>;

TEST(GatewayServer, RefusesWhatItDoesNotServe) {
  const std::string notFound = "HTTP/1.1 404 Not Found", bad = "HTTP/1.1 400 Bad Request",
                    tooLarge = "HTTP/1.1 431 Request Header Fields Too Large",
                    notAllowed = "HTTP/1.1 405 Method Not Allowed";
  const std::map<std::string, std::string> causes = {
      {notFound, "The gateway serves nothing at this address."},
      {bad, "The gateway can't read this request."},
      {tooLarge, "The request's head is too large."},
      {notAllowed, "The gateway answers only GET and HEAD."}};
  std::vector<std::pair<std::string, std::string>> cases = {
      {GetRequest("/"), notFound},
      {GetRequest("/etc/passwd"), notFound},
      {GetRequest("/../../etc/passwd"), notFound},
      {GetRequest("/timedtext?type=track&v=abc"), notFound},
      {"POST /timedtext?type=list&v=abc HTTP/1.0\r\nContent-Length: 3\r\n\r\nabc", notAllowed},
      {"BREW /timedtext?type=list&v=abc HTTP/1.1\r\n\r\n", bad},
      {"GET /timedtext?type=list&v=abc\r\n\r\n", bad},
      {"GET /timedtext?type=list&v=abc HTTP/9.9\r\n\r\n", bad},
      {"GET  HTTP/1.0\r\n\r\n", bad},
      {"\r\n\r\n", bad},
      {std::string("GET /a\0b HTTP/1.0\r\n\r\n", 21), bad},
      {"GET / HTTP/1.0\r\nX: \x1b[2J\r\n\r\n", bad},
      {"GET /" + std::string(20'000, 'a') + " HTTP/1.0\r\n\r\n", tooLarge},
      {"GET / HTTP/1.0\r\nX: " + std::string(16'300, 'a') + "\r\n\r\n", notFound},
      {"GET / HTTP/1.0\r\nX: " + std::string(16'384, 'a') + "\r\n\r\n", tooLarge},
      {"GET / HTTP/1.0\r\nX: " + std::string(10 << 20, 'a') + "\r\n\r\n", tooLarge},
      {std::string(100'000, '\r'), tooLarge},
  };
  for (const char* method : {"POST", "PUT", "DELETE", "CONNECT", "OPTIONS", "TRACE", "PATCH"})
    cases.emplace_back(std::string(method) + " /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n\r\n", notAllowed);
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  Limits limits;
  limits.linger = 20s;
  const RunningGateway server(AsIs({folder.Path()}), limits);
  for (const auto& [request, status] : cases) {
    const Descriptor client = ConnectTo(server.Port());
    EXPECT_TRUE(SendAll(client, request)) << "taken in whole: " << request.substr(0, 60);
    const Reply reply = ReadReply(client);
    EXPECT_EQ(reply.Status(), status) << request.substr(0, 60);
    EXPECT_TRUE(reply.Has("Content-Length: 0")) << request.substr(0, 60);
    EXPECT_EQ(reply.Has("Allow: GET, HEAD"), status == notAllowed) << request.substr(0, 60);
    EXPECT_TRUE(reply.Has("Ravelyn-Cause: " + causes.at(status))) << request.substr(0, 60);
    EXPECT_EQ(reply.body, "");
  }
}

// Counts what it is asked, and has nothing.
struct AskedSource final : gateway::CaptionSource {
  gateway::TrackList Tracks(std::string_view, const gateway::Asker&) override {
    return ++asked, gateway::TrackList{{}, "", cause};
  }
  gateway::CaptionText Text(std::string_view, std::string_view, const gateway::Asker&) override {
    return ++asked, gateway::CaptionText{std::nullopt, cause};
  }
  std::atomic<int> asked = 0;
  std::string cause;
};

TEST(GatewayServer, NamesACauseInOneLineOfAscii) {
  const auto source = std::make_shared<AskedSource>();
  const RunningGateway server(source);
  for (const auto& [cause, line] : {std::pair<std::string, std::string>{"", "no captions"},
                                    {"caf\u00E9\n ~\x7F", "caf??? ~?"},
                                    {std::string(201, 'c'), std::string(200, 'c')}}) {
    source->cause = cause;
    for (const Reply& reply : {server.List("abc"), server.Captions("abc", "en")})
      EXPECT_TRUE(reply.Has("Ravelyn-Cause: " + line)) << reply.head;
  }
}

TEST(GatewayServer, LetsNoWebPageIn) {
  const Lines allowed = {"",
                         "Accept: */*\r\nAccept-Language: en\r\nHost: 127.0.0.1:17733\r\n",
                         "Host: 127.0.0.1\r\n",
                         "hOST:localhost:1\r\n",
                         "Host: \t LocalHost \t\r\n",
                         "Host: [::1]\r\n",
                         "Host: [::1]:65535\n",
                         "Sec-Fetch-Site: none\r\nX-Origin: https://evil.example\r\nReferers: x\r\n"};
  // "/" stands for a line's end.
  const std::string refused =
      "Host: evil.example|Host: evil.example:17733|Host: 127.0.0.1.evil.example|Host: "
      "localhost.evil.example:17733|"
      "Host: localhost.|Host: 127.0.0.1:|Host: 127.0.0.1:80x|Host: 127.0.0.1:177330|Host: user@127.0.0.1|"
      "Host: 127.0.0.1, evil.example|Host: 127.0.0.1 evil.example|Host: 127.1|Host: 127.0.0.2|Host: "
      "2130706433|"
      "Host: 0x7f000001|Host: 127.000.000.001|Host: ::1|Host: [::1|Host: [0:0:0:0:0:0:0:1]|Host: "
      "[::ffff:127.0.0.1]|"
      "Host:|Host: 127.0.0.1/Host: evil.example|Host: evil.example/Host: 127.0.0.1|Host: 127.0.0.1/host: "
      "127.0.0.1|"
      "Host: 127.0.0.1/ evil.example|Host:/ 127.0.0.1|X: y/\tHost: evil.example|Host : 127.0.0.1|"
      "Host : evil.example| Host: evil.example|Host|X: y\rHost: evil.example|: y|Origin: https:evil.example|"
      "Host: 127.0.0.1:17733/oRIGIN: http:127.0.0.1:17733|Origin: null|Origin:|Referer: https:evil.example|"
      "Referer: http:127.0.0.1:17733|Sec-Fetch-Site: cross-site|Sec-Fetch-Site: same-origin|Sec-Fetch-Site:|"
      "Sec-Fetch-Site: none/Sec-Fetch-Site: cross-site";
  const auto source = std::make_shared<AskedSource>();
  const RunningGateway server(source);
  const auto ask = [&](const std::string& method, const std::string& headers) {
    return server.Ask(method + " /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n" + headers + "\r\n");
  };
  for (const std::string& headers : allowed)
    EXPECT_EQ(ask("GET", headers).Status(), "HTTP/1.1 404 Not Found") << headers;
  EXPECT_EQ(source->asked, static_cast<int>(allowed.size()));
  source->asked = 0;
  for (const std::string& lines : Split(refused, "|")) {
    const std::string headers = ReplaceAll(lines, "/", "\r\n") + "\r\n";
    for (const char* method : {"GET", "HEAD", "OPTIONS", "POST"}) {
      const Reply reply = ask(method, headers);
      EXPECT_EQ(reply.Status(), "HTTP/1.1 403 Forbidden") << method << " " << headers;
      EXPECT_TRUE(
          reply.Has("Ravelyn-Cause: The gateway answers only programs of this machine, at 127.0.0.1, "
                    "localhost or [::1]."));
      EXPECT_EQ(reply.head.find("Access-Control"), std::string::npos);
    }
  }
  EXPECT_EQ(source->asked, 0) << "before anything is looked for";
}

TEST(GatewayServer, AnswersAHeadThatIsCutAnywhereWithNothing) {
  const TemporaryFolder folder;
  const RunningGateway server(AsIs({folder.Path()}));
  const std::string request = GetRequest("/timedtext?type=list&v=abc");
  for (std::size_t length = 0; length < request.size(); ++length) {
    const Descriptor client = ConnectTo(server.Port());
    SendAll(client, request.substr(0, length));
    ::shutdown(client.Number(), SHUT_WR);
    EXPECT_EQ(ReadReply(client).head, "") << length;
  }
  const Descriptor dripping = ConnectTo(server.Port());
  for (const char c : request) SendAll(dripping, {&c, 1});
  EXPECT_EQ(ReadReply(dripping).Status(), "HTTP/1.1 200 OK") << "a whole one that drips in is answered";
}

// Keeps everybody who asks until it is opened.
class Gate final : public gateway::CaptionSource {
 public:
  gateway::TrackList Tracks(std::string_view, const gateway::Asker&) override { return {}; }
  gateway::CaptionText Text(std::string_view, std::string_view, const gateway::Asker&) override {
    std::unique_lock lock(mutex_);
    ++inside_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
    return {"words", ""};
  }
  // Whether so many have come in before the time is over.
  bool HasIn(int count, std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [&] { return inside_ >= count; });
  }
  void Open() {
    const std::lock_guard lock(mutex_);
    open_ = true;
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int inside_ = 0;
  bool open_ = false;
};

TEST(GatewayServer, ServesNoMoreAtATimeThanItHasPlaces) {
  Limits limits;
  limits.connections = 2;
  const auto gate = std::make_shared<Gate>();
  const RunningGateway server(gate, limits);
  std::vector<Descriptor> clients;
  for (int i = 0; i < 5; ++i) {
    clients.push_back(ConnectTo(server.Port()));
    SendAll(clients.back(), GetRequest("/api/timedtext?&v=abc&lang=en"));
  }
  EXPECT_TRUE(gate->HasIn(2, 30s));
  EXPECT_FALSE(gate->HasIn(3, 200ms));
  gate->Open();
  for (const Descriptor& client : clients) EXPECT_EQ(ReadReply(client).body, "words");
}

TEST(GatewayServer, GivesThePlaceOnAsSoonAsItHasAnswered) {
  Limits limits;
  limits.connections = 1;
  limits.linger = limits.head = 20s;
  const RunningGateway server(std::make_shared<AskedSource>(), limits);
  const auto start = std::chrono::steady_clock::now();
  std::vector<Descriptor> stayOpen;
  for (const char* request :
       {"HEAD / HTTP/1.0\r\n\r\n", "GET / HTTP/1.0\r\n\r\n", "GET / HTTP/1.0\r\n\r\n"}) {
    stayOpen.push_back(ConnectTo(server.Port()));
    SendAll(stayOpen.back(), request);
    EXPECT_EQ(ReadReply(stayOpen.back()).Status(), "HTTP/1.1 404 Not Found");
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

// Of all threads. Who spins takes some 400 ms of 400, 50 on a machine with much else to do; who rests takes
// one or two.
double Used() { return ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID); }

TEST(GatewayServer, RestsAfterAClientAndWithoutDescriptors) {
  Limits limits;
  limits.connections = 1;
  limits.head = 400ms;
  const auto gate = std::make_shared<Gate>();
  const RunningGateway server(gate, limits);
  const std::string request = GetRequest("/api/timedtext?&v=abc&lang=en");
  const Descriptor first = ConnectTo(server.Port()), next = ConnectTo(server.Port());
  SendAll(first, request);
  ASSERT_TRUE(gate->HasIn(1, 30s));
  SendAll(next, request);
  rlimit files{};
  ::getrlimit(RLIMIT_NOFILE, &files);
  const rlimit none{4, files.rlim_max};  // poll wants as many as it is given
  ::setrlimit(RLIMIT_NOFILE, &none);
  gate->Open();
  EXPECT_EQ(ReadReply(first).body, "words");
  double before = Used();
  pollfd answered{next.Number(), POLLIN, 0};
  EXPECT_EQ(::poll(&answered, 1, 400), 0) << "there is no descriptor for it";
  EXPECT_LT(Used() - before, 0.025) << "in 400 ms without descriptors";
  ::setrlimit(RLIMIT_NOFILE, &files);
  EXPECT_EQ(ReadReply(next).body, "words");
  before = Used();
  EXPECT_EQ(ReadReply(ConnectTo(server.Port())).head, "");
  EXPECT_LT(Used() - before, 0.025) << "in 400 ms of silence";
}

TEST(GatewayServer, EndsWhereItsSocketTakesNoConnections) {
  AskedSource source;
  const Descriptor deaf(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  EXPECT_THROW(gateway::Server(source).Serve(deaf.Number(), {}), std::system_error);
}

TEST(GatewayServer, LetsSlowClientsGo) {
  Limits limits;
  limits.head = 200ms;
  limits.answer = 200ms;
  limits.linger = 50ms;
  limits.connections = 4;
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  WriteFile(folder / "t [abc].de.srv1", std::string(32 << 20, 'x'));
  const RunningGateway server(AsIs({folder.Path()}), limits);
  std::vector<Descriptor> slow;
  for (int i = 0; i < 20; ++i) {
    slow.push_back(ConnectTo(server.Port()));
    SendAll(slow.back(), i % 2 == 0 ? "GET /timed" : GetRequest("/api/timedtext?&v=abc&lang=de"));
  }
  std::thread drippingIn([&server] {
    const Descriptor client = ConnectTo(server.Port());
    pollfd closed{client.Number(), POLLIN, 0};
    while (SendAll(client, "x") && ::poll(&closed, 1, 10) == 0) {
    }
  });
  std::size_t sipped = 0;
  std::thread sipping([&server, &sipped] {
    const Descriptor client = ConnectTo(server.Port());
    SendAll(client, GetRequest("/api/timedtext?&v=abc&lang=de"));
    std::vector<char> sip(65536);
    for (ssize_t count; (count = ::recv(client.Number(), sip.data(), sip.size(), 0)) > 0;) {
      sipped += static_cast<std::size_t>(count);
      ::poll(nullptr, 0, 5);
    }
  });
  EXPECT_EQ(server.Captions("abc", "en").body, "words");
  drippingIn.join();
  sipping.join();
  EXPECT_LT(sipped, std::size_t{32 << 20});
  EXPECT_EQ(ReadReply(slow[0]).head, "");
  EXPECT_LT(ReadReply(slow[1]).body.size(), std::size_t{32 << 20}) << "cut off while it didn't read";
}

TEST(GatewayServer, StopsWhileClientsHang) {
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", std::string(32 << 20, 'x'));
  Limits limits;
  limits.head = limits.farewell = 60s;
  RunningGateway server(AsIs({folder.Path()}), limits);
  const Descriptor idle = ConnectTo(server.Port()), reading = ConnectTo(server.Port());
  SendAll(idle, "GET /");
  SendAll(reading, GetRequest("/api/timedtext?&v=abc&lang=en"));
  char first = 0;
  ASSERT_EQ(::recv(reading.Number(), &first, 1, 0), 1);
  const auto now = [] { return std::chrono::steady_clock::now(); };
  auto start = now();
  std::thread stopping([&server] { server.Stop(); });
  EXPECT_EQ(ReadReply(idle).head, "");
  EXPECT_LT(now() - start, 5s) << "half a request is not waited for";
  EXPECT_EQ(ReadReply(reading).body.size(), std::size_t{32 << 20}) << "an answer under way is ended whole";
  stopping.join();

  limits.farewell = 0ms;
  RunningGateway brusque(AsIs({folder.Path()}), limits);
  const Descriptor stalled = ConnectTo(brusque.Port());
  SendAll(stalled, GetRequest("/api/timedtext?&v=abc&lang=en"));
  ASSERT_EQ(::recv(stalled.Number(), &first, 1, 0), 1);
  start = now();
  brusque.Stop();
  EXPECT_LT(now() - start, 5s);
}

}  // namespace
