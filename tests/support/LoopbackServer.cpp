#include "support/LoopbackServer.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

#include "runtime/await.h"

namespace {

// A reset connection never lowers its count of unsent bytes.
bool IsGone(int connection) {
  pollfd state{connection, 0, 0};
  return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLERR | POLLHUP)) != 0;
}

// Waits until the peer's kernel has taken all bytes, or the connection is gone.
void AwaitTaken(int connection, const std::atomic<bool>& stop) {
  int waiting = 0;
  while (!stop && !IsGone(connection) && ::ioctl(connection, SIOCOUTQ, &waiting) == 0 && waiting > 0)
    ::sched_yield();
}

std::size_t DeclaredLength(const std::string& headers) {
  const std::size_t at = headers.find("Content-length: ");
  return at == std::string::npos ? 0 : std::stoul(headers.substr(at + 16, 20));
}

std::string ReadRequest(int connection, const std::atomic<bool>& stop) {
  std::string request;
  char bytes[64 * 1024];
  while (!stop) {
    const std::size_t end = request.find("\r\n\r\n");
    if (end != std::string::npos && request.size() >= end + 4 + DeclaredLength(request)) break;
    if (!IsReadyWithin(20, {connection, true, false})) continue;
    const ssize_t got = ::recv(connection, bytes, sizeof bytes, 0);
    if (got <= 0) break;
    request.append(bytes, static_cast<std::size_t>(got));
  }
  return request;
}

}  // namespace

std::string Page(const std::string& body) {
  return "HTTP/1.0 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string OpenPage(const std::string& body) { return "HTTP/1.0 200 OK\r\n\r\n" + body; }

int ListenOnLoopback(int& port) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ::bind(listener, reinterpret_cast<sockaddr*>(&address), size);
  ::listen(listener, 64);
  ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  port = ntohs(address.sin_port);
  return listener;
}

LoopbackServer::LoopbackServer() {
  listener_ = ListenOnLoopback(port_);
  thread_ = std::thread([this] { Serve(); });
}

LoopbackServer::~LoopbackServer() {
  stop_ = true;
  ::shutdown(listener_, SHUT_RDWR);  // wakes the thread
  thread_.join();
  for (const int connection : stalled_) ::close(connection);
  ::close(listener_);
}

void LoopbackServer::Answer(Reply reply) {
  const std::lock_guard lock(mutex_);
  replies_.push_back(std::move(reply));
}

void LoopbackServer::AnswerAt(const std::string& path, Reply reply) {
  const std::lock_guard lock(mutex_);
  pages_[path] = std::move(reply);
}

std::vector<std::string> LoopbackServer::Requests() {
  const std::lock_guard lock(mutex_);
  return requests_;
}

void LoopbackServer::Serve() {
  while (!stop_) {
    if (!IsReadyWithin(20, {listener_, true, false})) continue;
    const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (connection >= 0) Handle(connection);
  }
}

Reply LoopbackServer::NextInScript() {
  const std::lock_guard lock(mutex_);
  const Reply reply = replies_.empty() ? Reply{} : replies_.front();
  if (replies_.size() > 1) replies_.pop_front();
  return reply;
}

void LoopbackServer::TakeRequest(const std::string& request, Reply& reply) {
  const std::lock_guard lock(mutex_);
  const std::size_t path = std::min(request.find(' '), request.size() - 1) + 1;
  const auto page = pages_.find(request.substr(path, request.find(" HTTP/", path) - path));
  if (page != pages_.end()) reply = page->second;
  requests_.push_back(request);
}

void LoopbackServer::Handle(int connection) {
  Reply reply = NextInScript();
  const int on = 1;
  ::setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  if (!reply.beforeRequest) TakeRequest(ReadRequest(connection, stop_), reply);
  reply.bytes.append(reply.filler, 'x');
  const std::size_t piece = reply.piece ? reply.piece : std::max<std::size_t>(reply.bytes.size(), 1);
  for (std::size_t at = 0; at < reply.bytes.size() && !stop_; at += piece) {
    if (::send(connection, reply.bytes.data() + at, std::min(piece, reply.bytes.size() - at), MSG_NOSIGNAL) <
        0)
      break;
  }
  AwaitTaken(connection, stop_);
  if (reply.end == Reply::End::Reset) {
    const linger now{1, 0};
    ::setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  }
  if (reply.end == Reply::End::Stall) {
    stalled_.push_back(connection);
  } else {
    ::close(connection);
  }
  ++answered_;
}
