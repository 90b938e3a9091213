#include "PageServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <stdexcept>
#include <vector>

#include "samples.h"

namespace {

bool SendAll(int peer, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(peer, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::string Head(std::size_t length) {
  return "HTTP/1.0 200 OK\r\nContent-Type: text/xml; charset=UTF-8\r\nContent-Length: " +
         std::to_string(length) + "\r\n\r\n";
}

std::string Request(int peer) {
  std::string request;
  char bytes[4096];
  while (request.find("\r\n\r\n") == std::string::npos) {
    const ssize_t got = ::recv(peer, bytes, sizeof bytes, 0);
    if (got <= 0) break;
    request.append(bytes, static_cast<std::size_t>(got));
  }
  return request;
}

void SendLargePage(int peer) {
  static const std::string piece(1'000'000, 'x');
  bool taken = SendAll(peer, Head(PageServer::kLargePage));
  for (std::size_t sent = 0; taken && sent < PageServer::kLargePage; sent += piece.size()) {
    taken = SendAll(peer, piece);
  }
}

void SendTimedText(int peer, std::string_view cues) {
  static std::map<std::size_t, std::string> pages;
  std::size_t count = 0;
  std::from_chars(cues.data(), cues.data() + cues.size(), count);
  std::string& page = pages[count];
  if (page.empty()) page = TimedTextDocument(count);
  SendAll(peer, Head(page.size()));
  SendAll(peer, page);
}

void Answer(int peer) {
  static const std::string small = Head(2000) + std::string(2000, 'x');
  const std::string request = Request(peer);
  const std::size_t lang = request.find("&lang=");
  char rest[64];
  if (lang != std::string::npos) {
    SendTimedText(peer, std::string_view(request).substr(lang + 6));
  } else if (request.starts_with("GET /large ")) {
    SendLargePage(peer);
  } else if (request.starts_with("GET /small ")) {
    SendAll(peer, small);
  } else {
    while (::recv(peer, rest, sizeof rest, 0) > 0) {
    }
  }
  ::close(peer);
}

[[noreturn]] void Serve(int listener) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (;;) {
    const int peer = ::accept(listener, nullptr, nullptr);
    if (peer >= 0) Answer(peer);
  }
}

}  // namespace

PageServer::PageServer() {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(listener, generic, length) != 0 || ::listen(listener, 64) != 0 ||
      ::getsockname(listener, generic, &length) != 0) {
    throw std::runtime_error("no port on the loopback");
  }
  port_ = ntohs(address.sin_port);
  process_ = ::fork();
  if (process_ == 0) Serve(listener);
  ::close(listener);
  if (process_ < 0) throw std::runtime_error("no process for the server");
}

PageServer::~PageServer() {
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}
