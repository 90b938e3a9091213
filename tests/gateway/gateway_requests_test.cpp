// Requests that the gateway refuses.

#include <map>

#include "gateway_fixture.h"
#include "runtime/Text.h"
#include "sources_fixture.h"
#include "support/recorded.h"

namespace {

using namespace gateway_test;
using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

TEST(GatewayRequests, InvalidRequestsGetTheirStatusAndCause) {
  const std::string notFound = "HTTP/1.1 404 Not Found", bad = "HTTP/1.1 400 Bad Request",
                    tooLarge = "HTTP/1.1 431 Request Header Fields Too Large",
                    notAllowed = "HTTP/1.1 405 Method Not Allowed";
  const std::map<std::string, std::string> headers = {
      {notFound, "Ravelyn-Cause: The gateway serves nothing at this address.\r\n"},
      {bad, "Ravelyn-Cause: The gateway can't read this request.\r\n"},
      {tooLarge, "Ravelyn-Cause: The request's head is too large.\r\n"},
      {notAllowed, "Allow: GET, HEAD\r\nRavelyn-Cause: The gateway answers only GET and HEAD.\r\n"}};
  std::vector<std::pair<std::string, std::string>> cases = {
      {GetRequest("/") + std::string(10 << 20, 'a'), notFound},
      {"GET / HTTP/1.0\n\n", notFound},
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
      {"GET / HTTP/1.0\r\nX: " + std::string(16'364, 'a') + "\r\n\r\n", notFound},
      {"GET / HTTP/1.0\r\nX: " + std::string(16'365, 'a') + "\r\n\r\n", tooLarge},
      {"GET / HTTP/1.0\r\nX: " + std::string(10 << 20, 'a') + "\r\n\r\n", tooLarge},
      {std::string(100'000, '\r'), tooLarge},
  };
  for (const char* method : {"POST", "PUT", "DELETE", "CONNECT", "OPTIONS", "TRACE", "PATCH"})
    cases.emplace_back(std::string(method) + " /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n\r\n", notAllowed);
  // The blank line arrives in one piece with the bytes before it, or in two.
  for (std::size_t length = 2020; length < 2040; ++length)
    cases.emplace_back("GET / HTTP/1.0\r\nX: " + std::string(length, 'a') + "\r\n\r\n", notFound);
  const RunningGateway server(std::make_shared<FakeSite>(), {.linger = 20s});
  for (const auto& [request, status] : cases) {
    const Descriptor client = ConnectTo(server.Port());
    EXPECT_TRUE(SendAll(client, request)) << "received completely: " << request.substr(0, 60);
    const Reply reply = ReadReply(client);
    EXPECT_EQ(reply.head + reply.body,
              status + "\r\nConnection: close\r\n" + headers.at(status) + "Content-Length: 0\r\n\r\n")
        << request.substr(0, 60);
  }
}

TEST(GatewayRequests, ACauseIsSentAsOneLineOfAscii) {
  const auto source = std::make_shared<FakeSite>();
  const RunningGateway server(source);
  for (const auto& [cause, line] : {std::pair<std::string, std::string>{"", "no captions"},
                                    {"caf\u00E9\n ~\x7F", "caf??? ~?"},
                                    {std::string(201, 'c'), std::string(200, 'c')}}) {
    source->cause = source->list.cause = cause;
    for (const Reply& reply : {server.List("abc"), server.Captions("abc", "en")})
      EXPECT_TRUE(reply.Has("Ravelyn-Cause: " + line)) << reply.head;
  }
}

TEST(GatewayRequests, RequestsThatAWebPageCouldSendAreRefused) {
  const Lines allowed = {"",
                         "Accept: */*\r\nAccept-Language: en\r\nHost: 127.0.0.1:17733\r\n",
                         "Host: 127.0.0.1\r\n",
                         "hOST:localhost:1\r\n",
                         "Host: \t LocalHost \t\r\n",
                         "Host: [::1]\r\n",
                         "Host: [::1]:65535\n",
                         "!#$%&'*+-.^_`|~0: x\r\nOrigin9: https://evil.example\r\nReferers: x\r\n",
                         "Sec-Fetch-Site: none\r\n"};
  const auto source = std::make_shared<FakeSite>();
  const RunningGateway server(source);
  const auto ask = [&](const std::string& method, const std::string& headers) {
    return server.Ask(method + " /api/timedtext?&v=abc&lang=en HTTP/1.1\r\n" + headers + "\r\n");
  };
  for (const std::string& headers : allowed)
    EXPECT_EQ(ask("GET", headers).Status(), "HTTP/1.1 404 Not Found") << headers;
  EXPECT_EQ(source->asked, static_cast<int>(allowed.size()));
  source->asked = 0;
  for (const std::string& lines : PartsOf("gateway/refused_headers.txt", "\n\n")) {
    std::string headers = ReplaceAll(lines, "\n", "\r\n") + "\r\n";
    headers = ReplaceAll(ReplaceAll(headers, "[TAB]", "\t"), "[CR]", "\r");
    for (const char* method : {"GET", "HEAD", "OPTIONS", "POST"}) {
      const Reply reply = ask(method, headers);
      EXPECT_EQ(
          reply.head,
          "HTTP/1.1 403 Forbidden\r\nConnection: close\r\nRavelyn-Cause: The gateway answers only programs of this machine, at 127.0.0.1, localhost or [::1].\r\nContent-Length: 0\r\n\r\n")
          << method << " " << headers;
    }
  }
  EXPECT_EQ(source->asked, 0) << "refused before a source is asked";
}

TEST(GatewayRequests, AnIncompleteHeadGetsNoAnswer) {
  const RunningGateway server(std::make_shared<FakeSite>());
  const std::string request = GetRequest("/timedtext?type=list&v=abc");
  for (std::size_t length = 0; length < request.size(); ++length) {
    const Descriptor client = ConnectTo(server.Port(), request.substr(0, length));
    ::shutdown(client.Number(), SHUT_WR);
    EXPECT_EQ(ReadReply(client).head, "") << length;
  }
  const Descriptor dripping = ConnectTo(server.Port());
  for (const char c : request) SendAll(dripping, {&c, 1});
  EXPECT_EQ(ReadReply(dripping).Status(), "HTTP/1.1 200 OK")
      << "a complete head is answered even if it drips";
}

}  // namespace
