// The socket alone, and the descriptors that child processes inherit.

#include "runtime/TCPSocket.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "runtime/Application.h"
#include "runtime/Shell.h"
#include "support/FakePlatform.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/clocks.h"

// A name with two addresses; nobody listens at the first.
constexpr char kTwoAddresses[] = "two.invalid";
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  static const auto real = reinterpret_cast<decltype(&getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
  if (!name || std::string_view(name) != kTwoAddresses) return real(name, service, hints, found);
  real("127.0.0.2", service, hints, found);
  return real("127.0.0.1", service, hints, &(*found)->ai_next);
}

namespace {

using Lines = std::vector<std::string>;

class Socket : public TCPSocket {
 public:
  // Runs until an error or until `bytes` have arrived. Gives the events, one line each.
  Lines Run(std::size_t bytes = SIZE_MAX) {
    for (int i = 0; i < 5000 && !over && Lookahead().size() < bytes; ++i) Wait(100), Poll();
    return events;
  }
  Lines events;
  bool over = false;

 private:
  void Event_Connected() override { events.push_back("connected"); }
  void Event_SendComplete(bool cancelled) override { events.push_back(cancelled ? "cancelled" : "sent"); }
  void Event_Error() override { events.push_back("error " + std::to_string(LastErrorCode())), over = true; }
};

// The descriptors of a shell that runs a command.
std::string DescriptorsIn(const std::function<void(const std::string&)>& run) {
  const TemporaryFolder folder;
  run("exec > '" + (folder / "list") + "'; ls /proc/$$/fd; :");
  return ReadFile(folder / "list");
}

}  // namespace

TEST(Descriptors, NoChildInheritsAConnection) {
  const auto inAnyChild = [] {
    return DescriptorsIn([](const std::string& command) { ::pclose(::popen(command.c_str(), "w")); });
  };
  const std::string before = inAnyChild();
  LoopbackServer server;
  server.Answer({"x", Reply::End::Stall, 0, true});
  Socket byNumber, byName;
  byNumber.Address = "127.0.0.1", byName.Address = kTwoAddresses;
  for (Socket* socket : {&byNumber, &byName}) {
    socket->Port = server.Port();
    socket->Connect();
    ASSERT_EQ(socket->Run(1), Lines{"connected"}) << "the second address is tried";
  }
  EXPECT_EQ(inAnyChild(), before);

  const int inheritable = ::open("/dev/null", O_RDONLY);  // inheritable, as a library might open it
  EXPECT_EQ(DescriptorsIn([](const std::string& command) { Shell().Execute(command); }), "0\n1\n2\n");
  ::close(inheritable);
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
  EXPECT_EQ(pair.socket.BytesToSend() + Socket().BytesToSend(), 0u);
  pair.socket.Write("x");
  pair.socket.Poll();
  EXPECT_EQ(pair.socket.events, (Lines{"connected", "sent"}));
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
  char taken = 0;
  EXPECT_EQ(::recv(pair.peer, &taken, 1, 0), 1) << "otherwise the close is a reset";
  ::close(pair.peer);
  EXPECT_EQ(pair.socket.Run().back(), "error 10001");
  EXPECT_FALSE(pair.socket.Eof() || pair.socket.ReadError() || pair.socket.IsConnected());
  EXPECT_EQ(pair.socket.ReadAll(), "l");
  EXPECT_TRUE(pair.socket.Eof());
}

TEST(Reading, DisconnectKeepsTheReceivedBytesAndRaisesNothing) {
  Pair pair;
  EXPECT_EQ(::send(pair.peer, "abc", 3, 0), 3);
  pair.socket.Run(3);
  pair.socket.Disconnect();
  pair.socket.Poll();
  EXPECT_EQ(pair.socket.events, Lines{"connected"});
  EXPECT_FALSE(pair.socket.IsConnected() || pair.socket.Eof());
  EXPECT_EQ(pair.socket.ReadAll(), "abc");
  ::close(pair.peer);
}

TEST(Sending, AResetIsReportedOnceWithItsErrno) {
  Pair pair;
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

// Sixteen times the content to a peer that reads little at a time: if every piece moved the rest, it would be
// 256 times the work.
TEST(Sending, TakesLinearTime) {
  const auto secondsFor = [](std::size_t size) {
    Pair pair;
    std::vector<char> taken(32 * 1024);
    const double start = ProcessorSeconds();
    for (pair.socket.Write(std::string(size, 'x')); pair.socket.BytesToSend() > 0; pair.socket.Flush()) {
      if (::recv(pair.peer, taken.data(), taken.size(), 0) <= 0) return 1e9;
    }
    ::close(pair.peer);
    return ProcessorSeconds() - start;
  };
  const double little = std::min(secondsFor(8 << 20), secondsFor(8 << 20));
  EXPECT_LT(secondsFor(128 << 20), 128 * std::max(little, 0.002));
}
