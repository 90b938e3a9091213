// The server with many, slow and hostile clients.

#include <fcntl.h>
#include <sys/resource.h>

#include <chrono>
#include <future>
#include <latch>
#include <semaphore>

#include "gateway/sources/OpenedFile.h"
#include "gateway_fixture.h"
#include "sources_fixture.h"
#include "support/clocks.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;

const std::string kText = GetRequest("/api/timedtext?&v=abc&lang=en");

auto Now() { return std::chrono::steady_clock::now(); }

// Makes all requests wait until it is opened.
struct Gate final : gateway::CaptionSource {
  gateway::TrackList Tracks(std::string_view, const gateway::Requester&) override { return {}; }
  gateway::CaptionText Text(std::string_view, std::string_view, const gateway::Requester&) override {
    inside.release();
    open.wait();
    return {"words", ""};
  }
  std::counting_semaphore<> inside{0};
  std::latch open{1};
};

// Gives one file to all requests.
struct OneFile final : gateway::CaptionSource {
  explicit OneFile(std::string name) : path(std::move(name)) {}
  gateway::TrackList Tracks(std::string_view, const gateway::Requester&) override { return {}; }
  gateway::CaptionText Text(std::string_view, std::string_view, const gateway::Requester&) override {
    gateway::CaptionText text{*gateway::OpenCaptionFile(AT_FDCWD, path).file, ""};
    std::filesystem::resize_file(path, 70'000);
    return text;
  }
  std::string path;
};

TEST(GatewayServer, ConnectionsOverTheLimitWait) {
  const auto gate = std::make_shared<Gate>();
  const RunningGateway server(gate, {.connections = 2});
  std::vector<Descriptor> clients;
  for (int i = 0; i < 5; ++i) clients.push_back(ConnectTo(server.Port(), kText));
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(gate->inside.try_acquire_for(30s));
  EXPECT_FALSE(gate->inside.try_acquire_for(200ms));
  gate->open.count_down();
  for (const Descriptor& client : clients) EXPECT_EQ(ReadReply(client).body, "words");
}

TEST(GatewayServer, AnAnsweredClientThatStaysOpenBlocksNoOther) {
  const RunningGateway server(std::make_shared<FakeSite>(), {.head = 20s, .linger = 20s, .connections = 1});
  const auto start = Now();
  std::vector<Descriptor> stayOpen;
  for (const char* method : {"HEAD", "GET", "GET"}) {
    stayOpen.push_back(ConnectTo(server.Port(), method + std::string(" / HTTP/1.0\r\n\r\n")));
    EXPECT_EQ(ReadReply(stayOpen.back()).Status(), "HTTP/1.1 404 Not Found");
  }
  EXPECT_LT(Now() - start, 10s);
}

TEST(GatewayServer, AClientThatLeavesDuringItsAnswerFreesItsPlace) {
  const auto site = std::make_shared<FakeSite>();
  site->texts["en"] = std::string(32 << 20, 'x');
  const RunningGateway server(site, {.connections = 1});
  char first = 0;
  EXPECT_EQ(::recv(ConnectTo(server.Port(), kText).Number(), &first, 1, 0), 1);
  EXPECT_EQ(server.List("abc").Status(), "HTTP/1.1 200 OK");
}

TEST(GatewayServer, AFileThatChangesMeanwhileIsSentUpToItsFormerSize) {
  const TemporaryFolder folder;
  const RunningGateway server(std::make_shared<OneFile>(folder / "file"));
  for (const std::size_t size : {60'000u, 80'000u}) {
    WriteFile(folder / "file", std::string(size, 'x'));
    const Reply reply = server.Captions("abc", "en");
    EXPECT_TRUE(reply.Has("Content-Length: " + std::to_string(size)));
    EXPECT_EQ(reply.body.size(), std::min<std::size_t>(size, 70'000));
  }
}

// The processor time of all threads. In 400 ms a loop without a wait uses up to 400 ms, on a busy machine 50;
// a server that waits uses one or two.
double ProcessorTime() { return ProcessorSeconds(CLOCK_PROCESS_CPUTIME_ID); }

// No new descriptor gets a number from `most` on.
class FewDescriptors {
 public:
  explicit FewDescriptors(rlim_t most) {
    ::getrlimit(RLIMIT_NOFILE, &before_);
    const rlimit few{most, before_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }

 private:
  rlimit before_{};
};

TEST(GatewayServer, SilenceAndALackOfDescriptorsUseNoProcessorTime) {
  const auto gate = std::make_shared<Gate>();
  const RunningGateway server(gate, {.head = 400ms, .connections = 1});
  const Descriptor first = ConnectTo(server.Port(), kText), next = ConnectTo(server.Port());
  ASSERT_TRUE(gate->inside.try_acquire_for(30s));
  SendAll(next, kText);
  double before = 0;
  {
    const FewDescriptors few(4);  // poll needs at least as many as it is passed
    gate->open.count_down();
    EXPECT_EQ(ReadReply(first).body, "words");
    before = ProcessorTime();
    pollfd answered{next.Number(), POLLIN, 0};
    EXPECT_EQ(::poll(&answered, 1, 400), 0) << "no descriptor is left for it";
    EXPECT_LT(ProcessorTime() - before, 0.025) << "in 400 ms without descriptors";
  }
  EXPECT_EQ(ReadReply(next).body, "words");
  before = ProcessorTime();
  ::poll(nullptr, 0, 2'100);
  EXPECT_EQ(ReadReply(ConnectTo(server.Port())).head, "");
  EXPECT_LT(ProcessorTime() - before, 0.025) << "in 2.5 s of silence, with and without a client";
}

TEST(GatewayServer, AListenerThatFailsThrowsAndEndsAllConnections) {
  FakeSite source;
  const Descriptor listener = gateway::ListenOnLoopback(0);
  gateway::Server server(source, {.head = 60s});
  auto serving = std::async([&] { server.Serve(listener.Number(), {}); });
  const std::uint16_t port = PortIn(gateway::AddressOf(listener));
  const Descriptor idle = ConnectTo(port);
  EXPECT_EQ(ReadReply(ConnectTo(port, kText)).Status(), "HTTP/1.1 404 Not Found");
  ::shutdown(listener.Number(), SHUT_RD);
  EXPECT_THROW(serving.get(), std::system_error);
  pollfd closed{idle.Number(), POLLIN, 0};
  EXPECT_EQ(::poll(&closed, 1, 0), 1);
}

TEST(GatewayServer, SlowClientsAreDisconnected) {
  const TemporaryFolder folder;
  WriteFile(folder / "t [abc].en.srv1", "words");
  WriteFile(folder / "t [abc].de.srv1", std::string(32 << 20, 'x'));
  const RunningGateway server(AsIs({folder.Path()}),
                              {.head = 200ms, .answer = 200ms, .linger = 50ms, .connections = 4});
  const std::string large = GetRequest("/api/timedtext?&v=abc&lang=de");
  std::vector<Descriptor> slow;
  for (int i = 0; i < 20; ++i) slow.push_back(ConnectTo(server.Port(), i % 2 == 0 ? "GET /timed" : large));
  std::thread drippingIn([&] {
    const Descriptor client = ConnectTo(server.Port());
    pollfd closed{client.Number(), POLLIN, 0};
    while (SendAll(client, "x") && ::poll(&closed, 1, 10) == 0) {
    }
  });
  std::size_t sipped = 0;
  std::thread sipping([&] {
    const Descriptor client = ConnectTo(server.Port(), large);
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
  RunningGateway server(AsIs({folder.Path()}), {.head = 60s, .farewell = 60s});
  const Descriptor idle = ConnectTo(server.Port(), "GET /"), reading = ConnectTo(server.Port(), kText);
  char first = 0;
  ASSERT_EQ(::recv(reading.Number(), &first, 1, 0), 1);
  for (int time = 0; time < 2; ++time)
    EXPECT_EQ(server.Ask(GetRequest("/")).Status(), "HTTP/1.1 404 Not Found") << "while others are busy";
  auto start = Now();
  std::thread stopping([&server] { server.Stop(); });
  EXPECT_EQ(ReadReply(idle).head, "");
  EXPECT_LT(Now() - start, 5s) << "an incomplete request is not waited for";
  EXPECT_EQ(ReadReply(reading).body.size(), std::size_t{32 << 20}) << "an answer under way is completed";
  stopping.join();
  EXPECT_LT(Now() - start, 30s) << "a stop ends with the last answer";

  RunningGateway brusque(AsIs({folder.Path()}), {.farewell = 0ms});
  const Descriptor stalled = ConnectTo(brusque.Port(), kText);
  ASSERT_EQ(::recv(stalled.Number(), &first, 1, 0), 1);
  start = Now();
  brusque.Stop();
  EXPECT_LT(Now() - start, 5s);
}

}  // namespace
