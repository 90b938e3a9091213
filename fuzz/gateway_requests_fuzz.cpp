// Any bytes as a request to the gateway: the answer is one complete reply of a known kind, without a byte of
// a file that is not served.

#include <fcntl.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>

#include "gateway/server/Answers.h"
#include "gateway/server/Connection.h"
#include "gateway/sources/Descriptor.h"
#include "gateway/sources/FolderSource.h"
#include "support/Harness.h"

namespace {

using gateway::Descriptor;

constexpr char kSecret[] = "not for anybody";
constexpr char kEnglish[] = "<transcript>English</transcript>";
constexpr char kGerman[] = "<transcript>Deutsch</transcript>";

// Two videos, and what must not be served: a file of another type, a link, and a file in the folder above.
const std::string& Captions() {
  static const std::string folder = [] {
    const std::string captions = fuzz::Folder() / "captions";
    std::filesystem::create_directory(captions);
    WriteFile(fuzz::Folder() / "Above [abc].en.srv1", kSecret);
    WriteFile(captions + "/One [abc].en.srv1", kEnglish);
    WriteFile(captions + "/One [abc].de.srv1", kGerman);
    WriteFile(captions + "/Two [x-Y_z.~].pt-BR.srv1", "");
    WriteFile(captions + "/secret", kSecret);
    std::filesystem::create_symlink("secret", captions + "/Linked [abc].fr.srv1");
    return captions;
  }();
  return folder;
}

std::string Reply(const std::string& request) {
  static gateway::FolderSource source({Captions()}, gateway::FolderSource::Manner::AsIs);
  static const gateway::Answers answers(source);
  std::array<int, 2> ends{};
  HOLDS(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()) == 0);
  const Descriptor client(ends[0]), server(ends[1]);
  HOLDS(::send(client.Number(), request.data(), request.size(), 0) == static_cast<ssize_t>(request.size()));
  ::shutdown(client.Number(), SHUT_WR);
  gateway::Connection connection(server.Number(), {});
  answers.Serve(connection);
  std::string reply;
  std::array<char, 65536> bytes;
  ssize_t got = 0;
  while ((got = ::recv(client.Number(), bytes.data(), bytes.size(), 0)) > 0) {
    reply.append(bytes.data(), static_cast<std::size_t>(got));
  }
  return reply;
}

std::string Header(const std::string& head, const std::string& name) {
  const std::size_t at = head.find("\r\n" + name + ": ");
  HOLDS(at != std::string::npos);
  const std::size_t value = at + name.size() + 4;
  return head.substr(value, head.find("\r\n", value) - value);
}

bool StartsWith(const std::string& line, const std::string& name) {
  return ::strncasecmp(line.c_str(), name.c_str(), name.size()) == 0;
}

// A request with a header that only a web page sends is refused, wherever that header is.
void CheckAsker(const std::string& request) {
  const std::size_t end = std::min(request.find("\n\r\n"), request.find("\n\n"));
  for (const std::string& line :
       fuzz::Lines(request.substr(request.find('\n') + 1, end - request.find('\n')))) {
    HOLDS(!StartsWith(line, "Origin:") && !StartsWith(line, "Referer:") && line[0] != ' ');
    HOLDS(!StartsWith(line, "Sec-Fetch-Site:") || ::strcasestr(line.c_str(), "none"));
    HOLDS(!StartsWith(line, "Host:") ||
          StartsWith(line.substr(line.find_first_not_of(" \t", 5)), "localhost") ||
          line.find("127.0.0.1") != line.npos || line.find("[::1]") != line.npos);
  }
}

void CheckReply(const std::string& request, const std::string& reply) {
  HOLDS(reply.find(kSecret) == std::string::npos);
  const std::size_t end = reply.find("\r\n\r\n");
  HOLDS(end != std::string::npos && reply.starts_with("HTTP/1."));
  const std::string head = reply.substr(0, end + 2);
  const std::string body = reply.substr(end + 4);
  const std::string status = head.substr(9, 3);
  HOLDS(status == "200" || status == "400" || status == "403" || status == "404" || status == "405" ||
        status == "431");
  HOLDS(Header(head, "Connection") == "close" && head.find("Access-Control") == head.npos);
  if (status == "200" || status == "404" || status == "405") CheckAsker(request);
  if (request.starts_with("HEAD ")) return HOLDS(body.empty());
  HOLDS(Header(head, "Content-Length") == std::to_string(body.size()));
  if (status != "200") return HOLDS(body.empty() && !Header(head, "Ravelyn-Cause").empty());
  HOLDS(request.starts_with("GET "));
  HOLDS(body.empty() || body == kEnglish || body == kGerman || body.ends_with("</transcript_list>"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string request(reinterpret_cast<const char*>(data), size);
  if (request.size() > 100'000) return -1;
  const std::string reply = Reply(request);
  // Headers that never end get no answer: the client has gone by then.
  if (reply.empty()) {
    HOLDS(request.size() <= gateway::Limits{}.headBytes);
  } else {
    CheckReply(request, reply);
  }
  return 0;
}
