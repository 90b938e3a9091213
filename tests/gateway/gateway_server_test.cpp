// The server with many, slow and hostile clients.

#include <sys/resource.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "gateway_fixture.h"
#include "sources_fixture.h"
#include "support/clocks.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using gateway::Limits;

// Makes all requests wait until it is opened.
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
  // Whether `count` requests wait inside before the time is over.
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

TEST(GatewayServer, ConnectionsOverTheLimitWait) {
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

TEST(GatewayServer, AnAnsweredClientThatStaysOpenBlocksNoOther) {
  Limits limits;
  limits.connections = 1;
  limits.linger = limits.head = 20s;
  const RunningGateway server(std::make_shared<FakeSite>(), limits);
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

// The processor time of all threads. In 400 ms a loop without a wait uses up to 400 ms, on a busy machine 50;
// a server that waits uses one or two.
double ProcessorTime() { return ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID); }

TEST(GatewayServer, SilenceAndALackOfDescriptorsUseNoProcessorTime) {
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
  const rlimit none{4, files.rlim_max};  // poll needs at least as many as it is passed
  ::setrlimit(RLIMIT_NOFILE, &none);
  gate->Open();
  EXPECT_EQ(ReadReply(first).body, "words");
  double before = ProcessorTime();
  pollfd answered{next.Number(), POLLIN, 0};
  EXPECT_EQ(::poll(&answered, 1, 400), 0) << "no descriptor is left for it";
  EXPECT_LT(ProcessorTime() - before, 0.025) << "in 400 ms without descriptors";
  ::setrlimit(RLIMIT_NOFILE, &files);
  EXPECT_EQ(ReadReply(next).body, "words");
  before = ProcessorTime();
  EXPECT_EQ(ReadReply(ConnectTo(server.Port())).head, "");
  EXPECT_LT(ProcessorTime() - before, 0.025) << "in 400 ms of silence";
}

TEST(GatewayServer, ASocketThatDoesNotListenThrows) {
  FakeSite source;
  const Descriptor deaf(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  EXPECT_THROW(gateway::Server(source).Serve(deaf.Number(), {}), std::system_error);
}

TEST(GatewayServer, SlowClientsAreDisconnected) {
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
  EXPECT_LT(ReadReply(slow[1]).body.size(), std::size_t{32 << 20}) << "disconnected while it did not read";
}

TEST(GatewayServer, AStopDropsIdleClientsAndFinishesAnswers) {
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
  EXPECT_LT(now() - start, 5s) << "an incomplete request is not waited for";
  EXPECT_EQ(ReadReply(reading).body.size(), std::size_t{32 << 20}) << "an answer under way is completed";
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
