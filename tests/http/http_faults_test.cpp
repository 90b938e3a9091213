// The HTTP client against servers that cut, stall, drip, reset and lie, and on bad addresses.

#include <gtest/gtest.h>

#include <cerrno>
#include <utility>

#include "http/HTTPSocket.h"
#include "runtime/Application.h"
#include "runtime/Text.h"
#include "support/FakePlatform.h"
#include "support/LoopbackServer.h"
#include "support/TemporaryFolder.h"
#include "support/rows.h"

namespace {

using namespace std::string_literals;
using Result = std::pair<std::string, int>;  // body and error code
constexpr std::int64_t kTimeOut = 30;

// The clock stands still until the server has sent its whole reply, then runs fast during silence: what the
// client receives before its time-out does not depend on the machine's speed.
struct Faults : testing::Test {
  Faults() { RunClockAfter(server); }
  void RunClockAfter(const LoopbackServer& of) {
    host.onSilence = [this, &of] {
      if (of.Answered() > 0) host.ticks += kTimeOut * 25;
    };
  }
  Result Request(std::int64_t timeOut, const std::string& tail = "/") {
    std::string body = socket.Get(server.Host() + tail, timeOut);
    return {body, socket.ErrorCode()};
  }

  FakePlatform host;
  Application app{host};
  LoopbackServer server;
  HTTPSocket socket;
};

// Result of a reply that is cut after length bytes of text.
Result Expected(const std::string& text, std::size_t length, bool declared, Reply::End end) {
  const std::size_t headerEnd = text.find("\r\n\r\n") + 4;
  const bool closes = end != Reply::End::Stall;
  if (length < headerEnd) return {"", closes && length == 0 ? 0 : kErrorTimeOut};
  const bool whole = declared && length == text.size();
  return {text.substr(headerEnd, length - headerEnd), whole || closes ? 0 : kErrorTimeOut};
}

struct Cuts : Faults, testing::WithParamInterface<std::tuple<Reply::End, std::size_t>> {};

TEST_P(Cuts, AtEveryByteGiveTheBodySoFar) {
  const auto [end, piece] = GetParam();
  for (const bool declared : {true, false}) {
    const std::string text = declared ? "HTTP/1.0 200 OK\r\nContent-Length: 6\r\n\r\na\r\n\r\nb"s
                                      : "HTTP/1.0 200 OK\r\nX: y\r\n\r\nbody";
    for (std::size_t length = 0; length <= text.size(); ++length) {
      LoopbackServer own;
      own.Answer(Reply{text.substr(0, length), end, piece});
      RunClockAfter(own);
      HTTPSocket fresh;
      const std::string body = fresh.Get(own.Host() + "/", kTimeOut);
      EXPECT_EQ(Result(body, fresh.ErrorCode()), Expected(text, length, declared, end)) << declared << length;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, Cuts,
                         testing::Combine(testing::Values(Reply::End::Close, Reply::End::Reset,
                                                          Reply::End::Stall),
                                          testing::Values(0, 1)));

TEST_F(Faults, ATimeOutKeepsTheBodySoFar) {
  server.Answer(Reply{"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Reply::End::Stall});
  const std::int64_t last = kTimeOut * 60;  // the last tick of the time-out still waits
  // The first silence after the body stands still: the time-out may start only after it.
  host.onSilence = [&, silences = 0]() mutable {
    if (socket.HTTPStatusCode() == 200 && ++silences > 1) host.ticks = std::max(host.ticks + 1, last - 3);
  };
  EXPECT_EQ(Request(kTimeOut), Result("half", -1));
  EXPECT_EQ(host.ticks, last + 1);
  EXPECT_EQ(socket.LastErrorCode(), 0);
  EXPECT_FALSE(socket.IsConnected());
  EXPECT_EQ(socket.HTTPStatusCode(), 200);
}

TEST_F(Faults, EachPieceOfTheBodyRestartsTheTimeOut) {
  // A third of the time-out passes with each piece of the body, many time-outs with the whole of it.
  const std::string body(30'000, 'd');
  server.Answer(Reply{Page(body), Reply::End::Stall, 1});
  host.betweenEvents = kForever;
  host.onYield = [&] { host.ticks += socket.HTTPStatusCode() == 200 ? kTimeOut * 20 : 0; };
  EXPECT_EQ(Request(kTimeOut), Result(body, 0));
  EXPECT_GT(host.ticks, kTimeOut * 60 * 3);
}

TEST_F(Faults, BytesOfADownloadDoNotRestartTheTimeOut) {
  const TemporaryFolder folder;
  server.Answer(Reply{"HTTP/1.0 200 OK\r\n\r\npart", Reply::End::Stall});
  server.Answer(Page("next"));
  EXPECT_FALSE(socket.Get(server.Host() + "/", std::make_shared<FolderItem>(folder / "f"), kTimeOut));
  EXPECT_EQ(socket.ErrorCode(), kErrorTimeOut);
  EXPECT_EQ(ReadFile(folder / "f"), "part");
  EXPECT_EQ(Request(0), Result("next", 0)) << "the next page is in memory again";
}

TEST_F(Faults, WithoutATimeOutOnlyTheReplyEndsTheWait) {
  host.onSilence = nullptr;
  host.ticksEachYield = 1'000'000;
  server.Answer(Reply{OpenPage("late"), Reply::End::Close, 1});
  for (const std::int64_t none : {0L, -1L, INT64_MIN, INT64_MAX})
    EXPECT_EQ(Request(none), Result("late", 0)) << none;
}

TEST_F(Faults, AReplyBeforeTheRequestIsAccepted) {
  server.Answer(Reply{Page("eager"), Reply::End::Stall, 0, true});
  EXPECT_EQ(Request(kTimeOut), Result("eager", 0));
}

TEST_F(Faults, HeadersBeyondTheirLimitAreRefused) {
  const std::size_t limit = 1 << 20;
  const std::string head = "HTTP/1.0 200 OK\r\nX: ";
  server.Answer(Reply{head, Reply::End::Stall, 0, false, 3 << 20});
  for (const std::size_t more : {1u, 0u})
    server.Answer(head + std::string(limit - head.size() + more, 'x') + "\r\n\r\nbody");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Request(kTimeOut), Result("", 10005));
    EXPECT_EQ(socket.LastErrorCode(), 10005);
  }
  EXPECT_EQ(Request(kTimeOut), Result("body", 0));
}

TEST_F(Faults, ABodyBeyondItsLimitIsRefused) {
  Reply endless{OpenPage(""), Reply::End::Close, 0, false, 256 << 20};
  LoopbackServer exact;
  exact.Answer(endless);
  RunClockAfter(exact);
  EXPECT_EQ(socket.Get(exact.Host() + "/", kTimeOut).size(), endless.filler);
  EXPECT_EQ(socket.ErrorCode(), 0);
  ++endless.filler;
  RunClockAfter(server);
  server.Answer(endless);
  EXPECT_EQ(Request(kTimeOut), Result("", kErrorReplyTooLarge));
  EXPECT_EQ(socket.LastErrorCode(), kErrorReplyTooLarge);
}

TEST_F(Faults, AURLWithLineBreaksOrNULsIsNotSent) {
  server.Answer(Page("page"));
  for (const std::string& tail : {"/\r"s, "/\n"s, "/a\0b"s, "\r\n/"s, "/ HTTP/1.0\r\nX: y"s}) {
    EXPECT_EQ(Request(kTimeOut, tail), Result("", kErrorBadURL));
    EXPECT_EQ(socket.LastErrorCode(), kErrorBadURL);
  }
  socket.SendRequest("GET /\r\n", server.Host(), kTimeOut);
  EXPECT_EQ(socket.ErrorCode(), kErrorBadURL);
  EXPECT_EQ(Request(kTimeOut), Result("page", 0));
  EXPECT_EQ(server.Requests().size(), 1u);
}

TEST_F(Faults, AFailedConnectionIsAnError) {
  for (const auto& row :
       Rows("127.0.0.1:1~111|http:///p~10003|~10003|127.0.0.1:65536/~10003|127.0.0.1:-1/~10003|"
            "127.0.0.1:99999999999999999999/~10003|no-such-host.invalid/~10002|a b/~10002|" +
            std::string(5000, 'h') + "/~10002")) {
    HTTPSocket fresh;
    EXPECT_EQ(fresh.Get(row[0], kTimeOut), "") << row[0];
    EXPECT_EQ(std::tuple(fresh.ErrorCode(), fresh.LastErrorCode(), fresh.HTTPStatusCode()),
              std::tuple(std::stoi(row[1]), std::stoi(row[1]), 0))
        << row[0];
  }
}

TEST(Waiting, SleepsUntilTheTimeOut) {
  SilentPlatform host;
  const Application app(host);
  LoopbackServer server;
  server.Answer(Reply{"HTTP/1.0 200 OK\r\n\r\n", Reply::End::Stall});
  HTTPSocket socket;
  socket.Get(server.Host() + "/", 1);
  EXPECT_EQ(socket.ErrorCode(), kErrorTimeOut);
  EXPECT_LT(host.waits, 8);
}

// Half the time-out passes with each piece that is sent, and hardly any time in between.
TEST(Uploads, EachPieceSentRestartsTheTimeOut) {
  FakePlatform host;
  const Application app(host);
  LoopbackServer server;
  server.Answer(Page("taken"));
  HTTPSocket socket;
  std::size_t left = 0;
  int steps = 0;
  host.onYield = [&] {
    const bool moved = socket.BytesToSend() != std::exchange(left, socket.BytesToSend());
    host.ticks += moved ? kTimeOut * 30 : 1;
    steps += moved;
  };
  socket.SetRequestContent(std::string(32 << 20, 'u'), "text/plain");
  EXPECT_EQ(socket.Post(server.Host() + "/", kTimeOut), "taken");
  EXPECT_GT(steps, 4);
}

}  // namespace
