#include "gateway/server/Server.h"

#include <malloc.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

namespace gateway {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kIdleBeforeReturn = 2'000;  // of freed memory; milliseconds

// The next connection may succeed.
bool IsTransient(int error) {
  return error == EAGAIN || error == EWOULDBLOCK || error == EINTR || error == ECONNABORTED ||
         error == EPROTO || error == EPERM;
}

// Out of descriptors or memory: a client that leaves may free some.
bool IsShortage(int error) {
  return error == EMFILE || error == ENFILE || error == ENOBUFS || error == ENOMEM;
}

// Answers are sent in one or two pieces; the second must not wait for an acknowledgement of the first.
void SendAtOnce(int socket) {
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool IsOver(int input) {
  std::array<char, 4096> ignored;
  const ssize_t count = ::read(input, ignored.data(), ignored.size());
  return count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR);
}

}  // namespace

struct Server::Client {
  explicit Client(Descriptor connected) : socket(std::move(connected)) {}

  Descriptor socket;
  std::atomic<bool> done = false;
  std::thread thread;
};

Server::Server(CaptionSource& source, const Limits& limits)
    : answers_(source), limits_(limits), ended_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (!ended_) throw std::system_error(errno, std::system_category(), "can't make an event counter");
}

Server::~Server() { DismissAll(); }

void Server::Serve(int listener, const Stop& stop) {
  ReturnFreedMemory();
  for (;;) {
    const int accepting = clients_.size() < limits_.connections ? listener : -1;
    std::array<pollfd, 4> waiting{{{stop.event, POLLIN, 0},
                                   {stop.input, POLLIN, 0},
                                   {ended_.Number(), POLLIN, 0},
                                   {accepting, POLLIN, 0}}};
    const int patience = mayHoldFreedMemory_ && clients_.empty() ? kIdleBeforeReturn : -1;
    const int ready = ::poll(waiting.data(), waiting.size(), patience);
    if (ready == 0) ReturnFreedMemory();
    if (ready < 0) {
      if (errno == EINTR) continue;
      throw std::system_error(errno, std::system_category(), "can't wait for connections");
    }
    if (waiting[0].revents != 0 || (waiting[1].revents != 0 && IsOver(stop.input))) break;
    if (waiting[2].revents != 0) Reap();
    if (waiting[3].revents != 0) Accept(listener);
  }
  DismissAll();
}

void Server::Accept(int listener) {
  Descriptor socket(::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
  if (socket) return Start(std::move(socket));
  if (IsTransient(errno)) return;
  if (!IsShortage(errno)) {
    const int error = errno;
    DismissAll();
    throw std::system_error(error, std::system_category(), "can't accept connections");
  }
  AwaitAnEnd(100);
}

void Server::Start(Descriptor socket) {
  SendAtOnce(socket.Number());
  mayHoldFreedMemory_ = true;
  Client& client = clients_.emplace_back(std::move(socket));
  try {
    client.thread = std::thread([this, &client] { Run(client); });
  } catch (const std::system_error&) {  // no more threads: this client finds the connection closed
    clients_.pop_back();
  }
}

void Server::Run(Client& client) {
  try {
    Connection connection(client.socket.Number(), limits_);
    answers_.Serve(connection);
  } catch (const std::exception&) {  // out of memory: the connection ends, the server goes on
  }
  client.done = true;
  ::eventfd_write(ended_.Number(), 1);
}

// Sockets are closed here, after their threads have ended, so that no descriptor number is reused too early.
void Server::Reap() {
  eventfd_t count = 0;
  ::eventfd_read(ended_.Number(), &count);
  clients_.remove_if([](Client& client) {
    if (!client.done) return false;
    client.thread.join();
    return true;
  });
}

void Server::ShutDown(int direction) {
  for (const Client& client : clients_) ::shutdown(client.socket.Number(), direction);
}

// At the start, and after the last client: reading folders and large answers take memory that the allocator
// would otherwise keep.
void Server::ReturnFreedMemory() {
  mayHoldFreedMemory_ = false;
  ::malloc_trim(0);
}

void Server::DismissAll() {
  ShutDown(SHUT_RD);
  const auto deadline = Clock::now() + limits_.farewell;
  while (!clients_.empty() && Clock::now() < deadline) {
    AwaitAnEnd(50);
    Reap();
  }
  ShutDown(SHUT_RDWR);
  for (Client& client : clients_) client.thread.join();
  clients_.clear();
}

void Server::AwaitAnEnd(int milliseconds) {
  pollfd waiting{ended_.Number(), POLLIN, 0};
  ::poll(&waiting, 1, milliseconds);
}

}  // namespace gateway
