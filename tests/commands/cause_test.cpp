// The cause shown below a message, for each reply of the endpoint.

#include <gtest/gtest.h>
#include <unistd.h>

#include "ravelyn/commands.h"
#include "support/Program.h"

namespace {

// The cause below the one message; "-" if there was none.
std::string CauseIn(const std::vector<std::string>& calls) {
  if (calls.size() != 1 || !calls[0].starts_with("message: ")) return "-";
  const std::size_t at = calls[0].find("\ncause: ");
  return at == std::string::npos ? "" : calls[0].substr(at + 8);
}

// The causes after this reply to a search and to a download.
std::pair<std::string, std::string> CausesOf(Program& program, const Reply& reply) {
  const auto cause = [&](const std::function<void()>& command) {
    const int before = program.server.Answered();
    program.host.onYield = [&] {  // moves the clock to the time-out of a stalled reply
      const bool isOut = program.server.Answered() > before;
      if (isOut && reply.end == Reply::End::Stall) program.host.ticks += 1500;
    };
    program.Calls();
    command();
    program.host.onYield = nullptr;
    return CauseIn(program.Calls());
  };
  program.server.AnswerAt(ListPath("abc"), reply);
  const std::string ofSearch = cause([&] { program.Search({}); });
  program.server.AnswerAt(ListPath("abc"), {Page(TrackList({{"en", "English", ""}}))});
  program.Search({0});
  program.Click("SRTBox");
  program.server.AnswerAt(TrackPath("abc", "en"), reply);
  return {ofSearch, cause([&] { program.Click("PushButton1"); })};
}

// A reply head that names this cause.
std::string Naming(const std::string& cause, const std::string& length = "0") {
  return "HTTP/1.0 404 Not Found\r\nContent-Length: " + length + "\r\nRavelyn-Cause: " + cause + "\r\n\r\n";
}

}  // namespace

TEST(Causes, ComeFromTheGatewayOrFromTheClient) {
  Program program;
  const std::string most(200, 'c'), brokeOff = "The reply broke off before the first byte of its text.";
  const std::string emptyList = TrackList({}), error = "HTTP/1.0 404 File not found\r\nServer: another\r\n";
  const std::string foreign =
      "What answers at " + program.server.Host() + " is not Ravelyn's gateway: status ";
  const struct {
    Reply reply;
    std::string search, download;
  } cases[] = {
      {{Naming("<b>not</b> ~so")}, "<b>not</b> ~so", "<b>not</b> ~so"},
      {{Naming("no captions", std::to_string(emptyList.size())) + emptyList}, "no captions", "-"},
      {{Naming(most + "c")}, most, most},
      {{Naming("caf\xC3\xA9")}, "", ""},
      {{Naming("a\tb")}, "", ""},
      {{Naming("no network", "9"), Reply::End::Reset}, "no network", "no network"},
      {{OpenPage("")}, "", ""},
      {{Page("")}, "", ""},
      {{Page("an error page")}, "", "-"},
      {{"HTTP/1.0 200 OK\r\nContent-Length: 1\r\n\r\n"}, brokeOff, brokeOff},
      {{""}, brokeOff, brokeOff},
      {{"", Reply::End::Reset}, brokeOff, brokeOff},
      {{"", Reply::End::Stall}, "No answer came in time.", "-"},
      {{"HTTP/1.0 200 OK\r\nContent-Length: 9\r\n\r\nhalf", Reply::End::Stall}, "", "-"},
      {{error + "\r\n<html>no</html>"}, foreign + "404.", "-"},
      {{error + "Content-Length: 0\r\n\r\n"}, foreign + "404.", foreign + "404."},
      {{"HTTP/1.0 400 Bad Request\r\n\r\n"}, foreign + "400.", foreign + "400."},
  };
  for (const auto& [reply, search, download] : cases)
    EXPECT_EQ(CausesOf(program, reply), std::pair(search, download)) << reply.bytes;
}

TEST(Causes, AClosedPortIsNamed) {
  int port = 0;
  ::close(ListenOnLoopback(port));
  const std::string nobody = "127.0.0.1:" + std::to_string(port);
  WaitingPlatform host;
  App app(host, kCommands, EndpointsAt(nobody));
  Window1& form = Window1::Get();
  form.TextField1.UserTypes("https://host/watch?v=abc");
  form.PushButton2.UserClicks();
  EXPECT_EQ(CauseIn(host.calls), "Nothing listens at " + nobody + ".");
}
