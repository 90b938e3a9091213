// Requests as they are sent, and well-formed replies to blocking requests.

#include <cerrno>
#include <utility>

#include "http_fixture.h"
#include "support/rows.h"

namespace {

using namespace std::string_literals;

const std::string kDefaults = "Accept: */*\r\nAccept-Language: en\r\n";

TEST_F(HTTP, ARequestHasExactlyTheseBytes) {
  server.Answer(Page("ok"));
  const std::string rest = " HTTP/1.0\r\n" + kDefaults + HostLine() + "\r\n\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {Url("/p?x=1"), "GET /p?x=1"},
      {"https://" + server.Host() + "/p", "GET /p"},
      {"://" + server.Host() + "/p", "GET /p"},
      {server.Host(), "GET /"},
      {server.Host() + "/a b/%41?q=\xC3\xA9#f", "GET /a b/%41?q=\xC3\xA9#f"},
      {"host/p?u=http://" + server.Host() + "/q", "GET /q"},
      {"a://" + server.Host() + "//b://c", "GET //b://c"},
  };
  Lines expected;
  for (const auto& [url, line] : cases) {
    EXPECT_EQ(HTTPSocket().Get(url, kPatience), "ok") << url;
    expected.push_back(line + rest);
  }
  EXPECT_EQ(server.Requests(), expected);
}

TEST_F(HTTP, APortStaysUntilAnotherURLNamesOne) {
  server.Answer(Page("ok"));
  socket.Get(Url("/1"), kPatience);
  for (const char* url : {"127.0.0.1/2", "http://127.0.0.1:0/3", "127.0.0.1:port/4"}) {
    EXPECT_EQ(socket.Get(url, kPatience), "ok") << url;
  }
  EXPECT_EQ(socket.Port, server.Port());
  EXPECT_EQ(server.Requests().at(2), "GET /3 HTTP/1.0\r\n" + kDefaults + "Host: 127.0.0.1:0\r\n\r\n");
  HTTPSocket fresh;
  fresh.Get("\x01?x=1", 1);
  EXPECT_EQ(fresh.Port, 80);
  EXPECT_EQ(fresh.Address, "\x01?x=1") << "without a slash everything is the host";
}

TEST_F(HTTP, PostedContentIsSentAgainAndItsLengthIsNot) {
  server.Answer(Page("ok"));
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  socket.SetPostContent("a\r\n\0b"s, "text/x ");
#pragma GCC diagnostic pop
  socket.Post(Url("/1"), kPatience);
  socket.Post(Url("/2"), kPatience);
  socket.SetRequestContent("", "");
  socket.SendRequest("PUT", Url("/3"), kPatience);
  const std::string type = "\r\nContent-type: text/x ", head = " HTTP/1.0\r\n" + kDefaults + HostLine();
  const std::string content = type + "\r\nContent-length: 5\r\n\r\na\r\n\0b"s;
  EXPECT_EQ(server.Requests(), Lines({"POST /1" + head + content, "POST /2" + head + content,
                                      "PUT /3" + head + type + "\r\n\r\n"}));
}

TEST_F(HTTP, FormsAreEncodedByReplacementInAFixedOrder) {
  server.Answer(Page("ok"));
  socket.SetFormData(Dictionary({{"a b"s, "1&2=3%"s}, {"n"s, std::int64_t{7}}, {"\xC3\xA9?"s, "\r\n"s}}));
  socket.Post(Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(0).substr(server.Requests().at(0).find("Content-type")),
            "Content-type: application/x-www-form-urlencoded\r\nContent-length: 31\r\n\r\n"
            "a+b=1%262%3D3%25&n=7&\xC3\xA9?=%0D%0A");
  EXPECT_EQ(socket.EncodeFormData(Dictionary({{"k"s, "%&=,/\\][{}`~-_()*^$#!+;<>"s}})),
            "k=%25%26%3D%2C%2F%5C%5D%5B%7B%7D%60%7E%2D%5F%28%29%2A%5E%24%23%21%2B%3B%3C%3E");
  EXPECT_EQ(socket.EncodeFormData(Dictionary()), "");
  socket.SetFormData(std::nullopt);
  socket.ClearRequestHeaders();
  socket.SendRequest("", Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(1), "GET / HTTP/1.0\r\n" + HostLine() + "\r\n\r\n");
}

TEST_F(HTTP, RequestHeadersStayUntilTheyAreCleared) {
  server.Answer(Page("ok"));
  socket.SetRequestHeader("X-A", "1\r\nX-Evil: 2");
  socket.SetRequestHeader("accept-language", "");
  socket.GetRequestHeaders()->AppendHeader("X-A", "3");
  socket.Get(Url("/"), kPatience);
  EXPECT_EQ(server.Requests().at(0),
            "GET / HTTP/1.0\r\nAccept: */*\r\nX-A: 1X-Evil: 2\r\nX-A: 3\r\n" + HostLine() + "\r\n\r\n");
}

TEST_F(HTTP, AProxyIsAskedForTheWholeURL) {
  server.Answer(Page("via"));
  socket.HTTPProxyAddress = "127.0.0.1";
  socket.HTTPProxyPort = server.Port();
  EXPECT_EQ(socket.Get("http://far.example:8080/p?q", kPatience), "via");
  EXPECT_EQ(server.Requests(), Lines({"GET http://far.example:8080/p?q HTTP/1.0\r\n" + kDefaults +
                                      "Host: far.example:8080\r\n\r\n"}));
  HTTPSocket fresh;
  fresh.HTTPProxyAddress = "\x01";
  fresh.Get("http://far.example:8080/p?q", 1);
  EXPECT_EQ(fresh.Port, 80) << "of a proxy without a port";
}

TEST_F(HTTP, HEADGivesHeadersAndNoBody) {
  server.Answer("HTTP/1.0 200 OK\r\nContent-Length: 99\r\nX: y\r\n\r\n");
  socket.SetRequestContent("dropped", "text/plain");
  const auto headers = socket.GetHeaders(Url("/h"), kPatience);
  ASSERT_NE(headers, nullptr);
  EXPECT_EQ(headers->_FormatHTTPHeaders(), "Content-Length: 99\r\nX: y");
  EXPECT_EQ(server.Requests(), Lines({"HEAD /h HTTP/1.0\r\n" + kDefaults + HostLine() + "\r\n\r\n"}));
  EXPECT_EQ(socket.ErrorCode(), 0);
  EXPECT_EQ(socket.GetHeaders("127.0.0.1:1/", kPatience), nullptr) << "not the previous request's";
}

TEST_F(HTTP, EveryStatusIsAPage) {
  for (const auto& row :
       Rows("404~HTTP/1.0 404 Not Found|302~HTTP/1.1 302 Found\r\nLocation: /x|500~ICY 500|401~HTTP/1.0 401 "
            "Who|0~HTTP/1.0|0~nonsense \xFF|204~HTTP/1.0 204.9 x|2147483647~HTTP/1.0 4294967697 "
            "x|-7~HTTP/1.0 -7")) {
    LoopbackServer own;
    own.Answer(row[1] + "\r\nContent-Length: 4\r\n\r\npage");
    EXPECT_EQ(socket.Get(own.Host() + "/", kPatience), "page") << row[1];
    EXPECT_EQ(std::to_string(socket.HTTPStatusCode()), row[0]) << row[1];
    EXPECT_EQ(socket.ErrorCode(), 0) << row[1];
    EXPECT_EQ(own.Requests().size(), 1u) << row[1];
  }
}

TEST_F(HTTP, TheBodyEndsAtItsLengthOrAtTheClose) {
  // Stalled connections end by the length alone.
  const std::string ok = "HTTP/1.0 200 OK\r\n";
  const struct {
    std::string reply;
    Reply::End end;
    const char* body;
  } cases[] = {
      {ok + "Content-Length: 5\r\n\r\nhello", Reply::End::Stall, "hello"},
      {ok + "content-length:  5\r\n\r\nhello, world", Reply::End::Stall, "hello"},
      {"HTTP/1.0 200 OK\nContent-Length: 5\n\nhello", Reply::End::Stall, "hello"},
      {"HTTP/1.0 200 OK\rContent-Length: 5\r\rhello", Reply::End::Stall, "hello"},
      {ok + "X: y\n\nhello", Reply::End::Close, "hello"},
      {"\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 0\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 1\r\n\r\nh", Reply::End::Stall, "h"},
      {ok + "Content-Length: 99\r\n\r\nhello", Reply::End::Reset, "hello"},
      {ok + "Content-Length: 99999999999999999999999\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: -99999999999999999999999\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: five\r\n\r\nhello", Reply::End::Close, "hello"},
      {ok + "Content-Length: 5x\r\nContent-Length: 7\r\n\r\nhello", Reply::End::Stall, "hello"},
      {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n", Reply::End::Close,
       "5\r\nhello\r\n0\r\n\r\n"},
  };
  for (const auto& c : cases) {
    for (const std::size_t piece : {0U, 1U, 7U}) {
      LoopbackServer own;
      own.Answer(Reply{c.reply, c.end, piece});
      HTTPSocket fresh;
      EXPECT_EQ(fresh.Get(own.Host() + "/", kPatience), c.body) << c.reply << piece;
      EXPECT_EQ(fresh.ErrorCode(), 0) << c.reply;
      EXPECT_FALSE(fresh.IsConnected()) << c.reply;
    }
  }
  server.Answer({ok + "Content-Length: 3000000\r\n\r\n", Reply::End::Stall, 0, false, 4'000'000});
  EXPECT_EQ(socket.Get(Url("/"), kPatience).size(), 3'000'000u);
}

TEST_F(HTTP, OneObjectMakesManyRequests) {
  const std::string ok = "HTTP/1.0 200 OK\r\n";
  const struct {
    Reply reply;
    std::string body;
    int status, lastError;  // 0 if the length ended the reply, 10001 if the peer did
  } cases[] = {
      {{"HTTP/1.0 404 No\r\nX: 1\r\nContent-Length: 3\r\n\r\none"}, "one", 404, 0},
      {{ok + "\r\nsecond"}, "second", 200, 10001},
      {{ok + "\r\n"}, "", 200, 10001},
      {{ok + "\r\n" + std::string(200, 'b')}, std::string(200, 'b'), 200, 10001},
      {{""}, "", 0, 10001},
      {{Page("4")}, "4", 200, 0},
  };
  EXPECT_EQ(socket.ErrorCode() + socket.HTTPStatusCode(), 0);
  EXPECT_EQ(socket.PageHeaders(), nullptr);
  for (const auto& c : cases) {
    server.AnswerAt("/", c.reply);
    EXPECT_EQ(socket.Get(Url("/"), kPatience), c.body);
    EXPECT_EQ(std::tuple(socket.ErrorCode(), socket.HTTPStatusCode(), socket.LastErrorCode()),
              std::tuple(0, c.status, c.lastError))
        << c.body;
    EXPECT_EQ(socket.PageHeaders() != nullptr, c.reply.bytes.find(": ") != std::string::npos)
        << "nil for none";
  }
  EXPECT_TRUE(socket.Get(Url("/"), nullptr, kPatience));
  EXPECT_EQ(socket.Get("127.0.0.1:1/", kPatience), "") << "not the previous page";
  EXPECT_EQ(socket.ErrorCode(), ECONNREFUSED);
  EXPECT_EQ(socket.HTTPStatusCode(), 200) << "of the last reply until the next connection";
}

}  // namespace
