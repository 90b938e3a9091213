// How the gateway behaves towards many, slow and hostile clients, and as a process.

#include <fcntl.h>
#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include "app/Endpoints.h"
#include "gateway/options.h"
#include "gateway/sources/CaptionCache.h"
#include "gateway/sources/JoinedSource.h"
#include "gateway_process.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::Limits;
using Lines = std::vector<std::string>;

TEST(GatewayServer, RefusesWhatItDoesNotServe) {
  const std::string notFound = "HTTP/1.1 404 Not Found", bad = "HTTP/1.1 400 Bad Request";
  const std::string tooLarge = "HTTP/1.1 431 Request Header Fields Too Large";
  const std::string notAllowed = "HTTP/1.1 405 Method Not Allowed";
  const std::pair<std::string, std::string> cases[] = {
      {GetRequest("/"), notFound},
      {GetRequest("/etc/passwd"), notFound},
      {GetRequest("/../../etc/passwd"), notFound},
      {GetRequest("/api/timedtext"), notFound},
      {GetRequest("/timedtext?type=track&v=abc"), notFound},
      {"POST /timedtext?type=list&v=abc HTTP/1.0\r\nContent-Length: 3\r\n\r\nabc", notAllowed},
      {"DELETE /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n\r\n", notAllowed},
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
    EXPECT_NE(reply.head.find("\r\nRavelyn-Cause: "), std::string::npos) << request.substr(0, 60);
    EXPECT_EQ(reply.body, "");
  }
}

// Counts what it is asked, and has nothing.
struct AskedSource final : gateway::CaptionSource {
  gateway::TrackList Tracks(std::string_view, const gateway::Asker&) override {
    ++asked;
    return {};
  }
  gateway::CaptionText Text(std::string_view, std::string_view, const gateway::Asker&) override {
    ++asked;
    return {};
  }
  std::atomic<int> asked = 0;
};

TEST(GatewayServer, LetsNoWebPageIn) {
  const Lines allowed = {"",
                         "Accept: */*\r\nAccept-Language: en\r\nHost: 127.0.0.1:17733\r\n",
                         "Host: 127.0.0.1\r\n",
                         "hOST:localhost:1\r\n",
                         "Host: \t LocalHost \t\r\n",
                         "Host: [::1]\r\n",
                         "Host: [::1]:65535\n",
                         "Sec-Fetch-Site: none\r\nX-Origin: https://evil.example\r\nReferers: x\r\n"};
  const Lines refused = {
      "Host: evil.example\r\n",
      "Host: evil.example:17733\r\n",
      "Host: 127.0.0.1.evil.example\r\n",
      "Host: localhost.evil.example:17733\r\n",
      "Host: localhost.\r\n",
      "Host: 127.0.0.1:\r\n",
      "Host: 127.0.0.1:80x\r\n",
      "Host: 127.0.0.1:177330\r\n",
      "Host: user@127.0.0.1\r\n",
      "Host: 127.0.0.1, evil.example\r\n",
      "Host: 127.0.0.1 evil.example\r\n",
      "Host: 127.1\r\n",
      "Host: 127.0.0.2\r\n",
      "Host: 2130706433\r\n",
      "Host: 0x7f000001\r\n",
      "Host: 127.000.000.001\r\n",
      "Host: ::1\r\n",
      "Host: [::1\r\n",
      "Host: [0:0:0:0:0:0:0:1]\r\n",
      "Host: [::ffff:127.0.0.1]\r\n",
      "Host:\r\n",
      "Host: 127.0.0.1\r\nHost: evil.example\r\n",
      "Host: evil.example\r\nHost: 127.0.0.1\r\n",
      "Host: 127.0.0.1\r\nhost: 127.0.0.1\r\n",
      "Host: 127.0.0.1\r\n evil.example\r\n",
      "Host:\r\n 127.0.0.1\r\n",
      "X: y\r\n\tHost: evil.example\r\n",
      "Host : 127.0.0.1\r\n",
      "Host : evil.example\r\n",
      " Host: evil.example\r\n",
      "Host\r\n",
      "X: y\rHost: evil.example\r\n",
      "Origin: https://evil.example\r\n",
      "Host: 127.0.0.1:17733\r\noRIGIN: http://127.0.0.1:17733\r\n",
      "Origin: null\r\n",
      "Origin:\r\n",
      "Referer: https://evil.example/page\r\n",
      "Referer: http://127.0.0.1:17733/\r\n",
      "Sec-Fetch-Site: cross-site\r\n",
      "Sec-Fetch-Site: same-origin\r\n",
      "Sec-Fetch-Site:\r\n",
      "Sec-Fetch-Site: none\r\nSec-Fetch-Site: cross-site\r\n",
  };
  const auto source = std::make_shared<AskedSource>();
  const RunningGateway server(source);
  const auto ask = [&](const std::string& method, const std::string& headers) {
    return server.Ask(method + " /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n" + headers + "\r\n");
  };
  for (const std::string& headers : allowed)
    EXPECT_EQ(ask("GET", headers).Status(), "HTTP/1.1 404 Not Found") << headers;
  EXPECT_EQ(source->asked, static_cast<int>(allowed.size()));
  source->asked = 0;
  for (const std::string& headers : refused) {
    for (const char* method : {"GET", "HEAD", "OPTIONS", "POST"}) {
      const Reply reply = ask(method, headers);
      EXPECT_EQ(reply.Status(), "HTTP/1.1 403 Forbidden") << method << " " << headers;
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

TEST(GatewayServer, ServesManyAtOnceWithoutMixingThem) {
  constexpr int kClients = 100;
  const TemporaryFolder folder;
  const auto bytesOf = [](int i) {
    return std::string(100'000 + static_cast<std::size_t>(i), static_cast<char>(i));
  };
  for (int i = 0; i < kClients; ++i)
    WriteFile(folder / ("t [c" + std::to_string(i) + "].en.srv1"), bytesOf(i));
  for (const std::size_t places : {1u, 7u, 256u}) {
    Limits limits;
    limits.connections = places;
    const RunningGateway server(AsIs({folder.Path()}), limits);
    std::vector<Descriptor> clients;
    for (int i = 0; i < kClients; ++i) clients.push_back(ConnectTo(server.Port()));
    for (std::size_t i = kClients; i-- > 0;)
      SendAll(clients[i], GetRequest("/api/timedtext?&v=c" + std::to_string(i) + "&lang=en"));
    for (int i = 0; i < kClients; ++i)
      EXPECT_TRUE(ReadReply(clients[static_cast<std::size_t>(i)]).body == bytesOf(i))
          << i << " of " << places;
  }
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

// Processor time of all threads since the start. Who spins takes some 400 ms of 400, 50 on a machine with
// much else to do; who rests takes one or two.
std::chrono::nanoseconds Used() {
  timespec used{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

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
  auto before = Used();
  pollfd answered{next.Number(), POLLIN, 0};
  EXPECT_EQ(::poll(&answered, 1, 400), 0) << "there is no descriptor for it";
  EXPECT_LT(Used() - before, 25ms) << "in 400 ms without descriptors";
  ::setrlimit(RLIMIT_NOFILE, &files);
  EXPECT_EQ(ReadReply(next).body, "words");
  before = Used();
  EXPECT_EQ(ReadReply(ConnectTo(server.Port())).head, "");
  EXPECT_LT(Used() - before, 25ms) << "in 400 ms of silence";
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

TEST(GatewayProcess, TellsWhatItServesAndEndsOnASignal) {
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  WriteFile(folder / "u [abc].de.srt", "00:01,000 --> 00:02,000\nWorte\n");
  WriteFile(folder / "odd.srv1", "");
  for (const int signal : {SIGTERM, SIGINT}) {
    Process process({"--folder", folder.Path(), "--port=0"});
    const std::string line = process.ReadLine();
    const std::string address = Address(line);
    EXPECT_EQ(line, "ravelyn-gateway: http://127.0.0.1:" + std::to_string(PortIn(address)) +
                        "/ serves 1 video with 2 tracks from " + folder.Path() +
                        "; 1 caption file left out, see --help; fetches nothing");
    const Descriptor hanging = ConnectTo(PortIn(address));
    const Descriptor client = ConnectTo(PortIn(address));
    SendAll(client, GetRequest("/api/timedtext?&v=abc&lang=de"));
    EXPECT_NE(ReadReply(client).body.find(">Worte</text>"), std::string::npos);
    EXPECT_EQ(process.End(signal), 0);
  }
}

TEST(GatewayProcess, RefusesBadOptions) {
  const std::pair<Lines, std::string> cases[] = {
      {{}, "there is no --folder to serve, and no --fetch"},
      {{"--port", "0", "--as-is"}, "there is no --folder to serve, and no --fetch"},
      {{"--folder"}, "--folder wants a value"},
      {{"--folder", ""}, "--folder wants a value"},
      {{"--fetch", "--cache="}, "--cache wants a value"},
      {{"--fetch=yes"}, "unknown option \"--fetch=yes\""},
      {{"--folder", "/tmp", "--port", "65536"}, "--port wants a number from 0 to 65535, not \"65536\""},
      {{"--folder", "/tmp", "--port=-1"}, "--port wants a number from 0 to 65535, not \"-1\""},
      {{"--folder", "/tmp", "--port", "80x"}, "--port wants a number from 0 to 65535, not \"80x\""},
      {{"--folder", "/tmp", "more"}, "unknown option \"more\""},
  };
  for (const auto& [arguments, message] : cases) {
    Process process(arguments);
    EXPECT_EQ(process.ReadLine(), "ravelyn-gateway: " + message);
    EXPECT_EQ(process.ReadLine(), gateway::kUsage);
    EXPECT_EQ(process.End(), 2) << message;
  }
}

std::string Counted(auto count, const char* unit) { return std::to_string(count) + " " + unit; }

// The text in one line, and as a man page shows it.
std::string Flattened(const std::string& text) {
  std::string flat;
  for (const char c : text) {
    if (c == '\\') continue;
    if (c != '\n' && c != ' ') {
      flat += c;
    } else if (!flat.ends_with(' ')) {
      flat += ' ';
    }
  }
  return flat;
}

TEST(GatewayOptions, AreDescribedWithTheBoundsThatHold) {
  const Limits limits;
  const gateway::CacheLimits cache;
  const auto seconds = [](auto time) {
    return Counted(std::chrono::duration_cast<std::chrono::seconds>(time).count(), "seconds");
  };
  const std::string port = std::to_string(gateway::kDefaultPort);
  const std::string phrases[] = {
      "Default: " + port,
      "may have " + Counted(limits.headBytes >> 10, "KiB") + " and take " + seconds(limits.head) +
          ", its answer " + seconds(limits.answer),
      Counted(limits.connections, "connections are served at a time"),
      "are given up to " + seconds(limits.farewell),
      "of more than " + Counted(gateway::kLargestCaptionFile >> 20, "MiB"),
      "kept for " + Counted(cache.age.count() / 86'400, "days, ") + Counted(cache.bytes >> 20, "MiB in all"),
      seconds(gateway::kSitePatience) + " for the site",
  };
  const std::string root = RAVELYN_SOURCE_DIR;
  const std::string help = Flattened(gateway::HelpText());
  std::string man = Flattened(ReadFile(root + "/packaging/man/ravelyn-gateway.1"));
  for (const std::string& phrase : phrases) {
    EXPECT_NE(help.find(phrase), help.npos) << phrase;
    EXPECT_NE(man.find(phrase), man.npos) << phrase;
  }
  for (const auto& format : gateway::CaptionFormats()) {
    EXPECT_NE(help.find(" " + std::string(format.ending)), help.npos);
    EXPECT_NE(man.find(" " + std::string(format.ending)), man.npos);
  }
  EXPECT_EQ(gateway::ParseOptions(std::array<const char*, 1>{"--fetch"}).port, gateway::kDefaultPort);
  EXPECT_EQ(Endpoints().TrackListEndpoint, "127.0.0.1:" + port);
  EXPECT_EQ(Endpoints().TimedTextEndpoint, "127.0.0.1:" + port);
  const std::string unit = ReadFile(root + "/packaging/systemd/ravelyn-gateway.socket");
  EXPECT_NE(unit.find("ListenStream=127.0.0.1:" + port + "\n"), unit.npos);
}

TEST(GatewayProcess, EndsWithItsInput) {
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  Process process({"--folder", RAVELYN_SAMPLES_DIR, "--port=0", "--stop-with-input"}, reading);
  const std::uint16_t port = PortIn(Address(process.ReadLine()));
  ASSERT_EQ(::write(writing.Number(), "more", 4), 4);
  const Descriptor client = ConnectTo(port);
  SendAll(client, GetRequest("/timedtext?type=list&v=hB7rV2kQx0w"));
  EXPECT_EQ(ReadReply(client).Status(), "HTTP/1.1 200 OK") << "what it reads means nothing";
  writing = Descriptor();
  EXPECT_EQ(process.End(), 0);
}

TEST(GatewayProcess, TellsMissingFoldersAndATakenPort) {
  Process missing({"--folder", "/nowhere/at all", "--port", "0"});
  const std::string lines = missing.ReadLine() + "\n" + missing.ReadLine();
  EXPECT_NE(lines.find("can't read the folder /nowhere/at all"), std::string::npos) << lines;
  EXPECT_NE(lines.find("serves 0 videos with 0 tracks"), std::string::npos) << lines;
  EXPECT_EQ(missing.End(SIGTERM), 0);

  const Descriptor taken = gateway::ListenOnLoopback(0);
  const std::string port = std::to_string(PortIn(gateway::AddressOf(taken)));
  Process second({"--folder", "/tmp", "--port", port});
  EXPECT_EQ(second.ReadLine(),
            "ravelyn-gateway: can't listen at 127.0.0.1, port " + port + ": Address already in use");
  EXPECT_EQ(second.End(), 1);
}

TEST(GatewayProcess, ServesASocketThatItIsHanded) {
  const Descriptor listener = gateway::ListenOnLoopback(0);
  const std::uint16_t port = PortIn(gateway::AddressOf(listener));
  const std::string handOver = "LISTEN_FDS=1 LISTEN_PID=$$ exec \"$@\"";
  const std::vector<std::string> arguments = {"--folder", RAVELYN_SAMPLES_DIR};
  const auto flags = [&] { return ::fcntl(listener.Number(), F_GETFL); };
  for (int time = 0; time < 2; ++time) {
    const Descriptor early = ConnectTo(port);  // comes before there is anybody to serve it
    ::fcntl(listener.Number(), F_SETFL, flags() & ~O_NONBLOCK);
    Process process(handOver, arguments, listener.Number());
    EXPECT_NE(process.ReadLine().find(":" + std::to_string(port) + "/ serves 3 videos"), std::string::npos);
    EXPECT_NE(flags() & O_NONBLOCK, 0) << "a client that is gone before it is accepted must hold nobody up";
    SendAll(early, GetRequest("/timedtext?type=list&v=hB7rV2kQx0w"));
    EXPECT_EQ(ReadReply(early).Status(), "HTTP/1.1 200 OK");
    EXPECT_EQ(process.End(SIGTERM), 0) << "and the socket lives on for the next";
  }
  Process noSocket(handOver, arguments, Descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC)).Number());
  EXPECT_EQ(noSocket.ReadLine(), "ravelyn-gateway: was handed a descriptor that is no listening socket");
  EXPECT_EQ(noSocket.End(), 1);
  Process others("LISTEN_FDS=1 LISTEN_PID=1 exec \"$@\"", {"--folder", RAVELYN_SAMPLES_DIR, "--port", "0"},
                 listener.Number());
  const std::string line = others.ReadLine();
  EXPECT_NE(line.find("serves 3 videos"), std::string::npos) << line;
  EXPECT_EQ(line.find(":" + std::to_string(port)), std::string::npos) << "meant for another process";
}

}  // namespace
