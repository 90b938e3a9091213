// The socket alone.

#include "runtime/TCPSocket.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "runtime/Application.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/clocks.h"
#include "support/rows.h"

using namespace std::literals;

// A name with two addresses, nobody listens at the first, and a name without one.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  if (name == "none.invalid"sv) return EAI_NONAME;
  if (name != "two.invalid"sv) return real(name, service, hints, found);
  real("127.0.0.2", service, hints, found);
  return real("127.0.0.1", service, hints, &(*found)->ai_next);
}

namespace {

using Lines = std::vector<std::string>;

class Socket : public TCPSocket {
 public:
  // Runs until an error or until `bytes` have arrived. Gives the events, one line each.
  Lines Run(std::size_t bytes = SIZE_MAX) {
    while (!over && Lookahead().size() < bytes) Wait(kForever), Poll();
    return events;
  }
  Lines events;
  bool over = false;

 private:
  void Event_Connected() override { events.push_back("connected"); }
  void Event_DataAvailable() override {
    if (events.back() != "data") events.push_back("data");
  }
  void Event_SendComplete(bool cancelled) override { events.push_back(cancelled ? "cancelled" : "sent"); }
  void Event_Error() override { events.push_back("error " + std::to_string(LastErrorCode())), over = true; }
};

}  // namespace

TEST(Connecting, NoChildInheritsAConnection) {
  const auto inAnyChild = [] {
    const TemporaryFolder folder;
    ::pclose(::popen(("ls /proc/$$/fd > '" + (folder / "list") + "'").c_str(), "w"));
    return ReadFile(folder / "list");
  };
  const std::string before = inAnyChild();
  LoopbackServer server;
  server.Answer({"x", Reply::End::Stall, 0, true});
  Socket byNumber, byName;
  byNumber.Address = "127.0.0.1", byName.Address = "two.invalid";
  for (Socket* socket : {&byNumber, &byName}) {
    socket->Port = server.Port();
    socket->Connect();
    ASSERT_EQ(socket->Run(1), (Lines{"connected", "data"})) << "the second address is tried";
  }
  EXPECT_EQ(inAnyChild(), before);
}

TEST(Connecting, AFailureIsReportedWithItsCode) {
  const auto connect = [](const std::string& address, std::int64_t port) {
    Socket socket;
    socket.Address = address;
    if (port != 0) socket.Port = port;
    socket.Connect();
    return socket.Run();
  };
  for (const auto& row :
       Rows("111~127.0.0.1~1|111~127.0.0.1~65535|10003~127.0.0.1~0|10003~127.0.0.1~65536|10003~127.0.0.1~-1|"
            "10003~~1|10003~a\0b~1|10002~none.invalid~1|111~two.invalid~1"s))
    EXPECT_EQ(connect(row[1], std::stoll(row[2])), Lines{"error " + row[0]}) << row[1] << " " << row[2];
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &none);
  for (const char* address : {"127.0.0.1", "two.invalid"})
    EXPECT_EQ(connect(address, 1), Lines{"error 24"}) << address;
  ::setrlimit(RLIMIT_NOFILE, &before);
}

// A connection to a peer that the test controls.
struct Pair {
  Pair() {
    socket.Address = "127.0.0.1";
    int port = 0;
    const int listener = ListenOnLoopback(port);
    socket.Port = port;
    socket.Connect();
    while (!socket.IsConnected()) socket.Wait(kForever), socket.Poll();
    peer = ::accept(listener, nullptr, nullptr);
    ::close(listener);
  }
  Socket socket;
  int peer = -1;
};

TEST(Reading, GivesTheBytesInOrderUntilTheyArePurged) {
  Pair pair;
  for (const char* text : {"x", "yz"}) {
    pair.socket.Write(text);
    EXPECT_EQ(pair.socket.BytesToSend(), 0u);
    pair.socket.Wait(kForever), pair.socket.Poll();
  }
  EXPECT_EQ(pair.socket.events, (Lines{"connected", "sent", "sent"}));
  const auto receive = [&](const std::string& text) {
    EXPECT_EQ(::send(pair.peer, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    pair.socket.Run(text.size());
  };
  receive("abcdef");
  for (const auto& [count, text] : {std::pair(2, "ab"), {1, "c"}}) EXPECT_EQ(pair.socket.Read(count), text);
  EXPECT_EQ(pair.socket.Lookahead(), "def");
  for (const char* text : {"def", ""}) EXPECT_EQ(pair.socket.Read(9), text);
  receive("ghi");
  EXPECT_EQ(pair.socket.Read(1), "g");
  pair.socket.Purge();
  receive("jk");
  EXPECT_EQ(pair.socket.ReadAll(), "jk");
  EXPECT_FALSE(pair.socket.Eof() || pair.socket.ReadError());
  receive("l");
  char taken[9] = "";
  EXPECT_EQ(::recv(pair.peer, taken, 8, 0), 3) << "otherwise the close is a reset";
  EXPECT_STREQ(taken, "xyz");
  ::close(pair.peer);
  EXPECT_EQ(pair.socket.Run(), (Lines{"connected", "sent", "sent", "data", "error 10001"}));
  EXPECT_FALSE(pair.socket.Eof() || pair.socket.ReadError() || pair.socket.IsConnected());
  EXPECT_EQ(pair.socket.ReadAll(), "l");
  EXPECT_TRUE(pair.socket.Eof());
}

TEST(Reading, DisconnectKeepsTheReceivedBytesAndRaisesNothing) {
  Pair pair;
  EXPECT_EQ(::send(pair.peer, "abc", 3, 0), 3);
  pair.socket.Run(3);
  pair.socket.Disconnect();
  pair.socket.Flush();
  pair.socket.Poll();
  EXPECT_EQ(pair.socket.events, (Lines{"connected", "data"}));
  EXPECT_FALSE(pair.socket.IsConnected() || pair.socket.Eof());
  EXPECT_EQ(pair.socket.ReadAll(), "abc");
  ::close(pair.peer);
}

TEST(Sending, AResetIsReportedOnceWithItsErrno) {
  Pair pair;
  pair.socket.Write(std::string(64 << 20, 'x'));
  pair.socket.Purge();
  EXPECT_EQ(pair.socket.BytesToSend(), 0u);
  pair.socket.Write(std::string(64 << 20, 'x'));
  const linger now{1, 0};
  ::setsockopt(pair.peer, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  ::close(pair.peer);
  EXPECT_EQ(pair.socket.Run(), (Lines{"connected", "cancelled", "error " + std::to_string(ECONNRESET)}));
  EXPECT_TRUE(pair.socket.WriteError());
  for (int i = 0; i < 3; ++i) pair.socket.Poll();
  EXPECT_EQ(pair.socket.events.size(), 3U);
  pair.socket.Connect();
  EXPECT_EQ(pair.socket.LastErrorCode(), 0) << "of the new connection";
}

TEST(Waiting, SleepsWhileAConnectionIsSilent) {
  Pair pair;
  int waits = 0;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(200);
  for (; std::chrono::steady_clock::now() < end; ++waits) pair.socket.Wait(200);
  EXPECT_LT(waits, 20);
  ::close(pair.peer);
}

// Sixteen times the content to a peer that reads little at a time: if every piece moved the rest, it would be
// 256 times the work.
TEST(Sending, TakesLinearTime) {
  const auto secondsFor = [](std::size_t size) {
    Pair pair;
    std::vector<char> taken(32 * 1024);
    const double start = ProcessorSeconds();
    for (pair.socket.Write(std::string(size, 'x')); pair.socket.BytesToSend() > 0; pair.socket.Poll())
      if (::recv(pair.peer, taken.data(), taken.size(), 0) <= 0) return 1e9;
    ::close(pair.peer);
    return ProcessorSeconds() - start;
  };
  const double little = std::min(secondsFor(8 << 20), secondsFor(8 << 20));
  EXPECT_LT(secondsFor(128 << 20), 128 * std::max(little, 0.002));
}
