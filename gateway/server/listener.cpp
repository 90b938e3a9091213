#include "gateway/server/listener.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace gateway {
namespace {

constexpr int kBacklog = 512;
constexpr int kHandedOver = 3;

// The socket functions take addresses of all families through one pointer type.
template <class Address>
sockaddr* Generic(Address& address) {
  return static_cast<sockaddr*>(static_cast<void*>(&address));
}

std::int64_t NumberFrom(const char* variable) {
  const char* text = std::getenv(variable);
  std::int64_t number = -1;
  if (text != nullptr) std::from_chars(text, text + std::strlen(text), number);
  return number;
}

bool IsListening(int socket) {
  int listening = 0, type = 0;
  socklen_t size = sizeof(int);
  return ::getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &listening, &size) == 0 && listening != 0 &&
         ::getsockopt(socket, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

}  // namespace

Descriptor ListenOnLoopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int on = 1;
  Descriptor listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!listener || ::setsockopt(listener.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
      ::bind(listener.Number(), Generic(address), sizeof address) != 0 ||
      ::listen(listener.Number(), kBacklog) != 0)
    throw std::system_error(errno, std::system_category(),
                            "can't listen at 127.0.0.1, port " + std::to_string(port));
  return listener;
}

std::optional<Descriptor> TakeHandedOver() {
  const bool ours = NumberFrom("LISTEN_PID") == ::getpid();
  const std::int64_t count = NumberFrom("LISTEN_FDS");
  for (const char* variable : {"LISTEN_PID", "LISTEN_FDS", "LISTEN_FDNAMES"}) ::unsetenv(variable);
  if (!ours || count < 1) return std::nullopt;
  if (count > 1) throw std::runtime_error("was handed " + std::to_string(count) + " sockets, can serve one");
  if (!IsListening(kHandedOver))
    throw std::runtime_error("was handed a descriptor that is not a listening socket");
  Descriptor socket(kHandedOver);
  ::fcntl(kHandedOver, F_SETFD, FD_CLOEXEC);
  ::fcntl(kHandedOver, F_SETFL, ::fcntl(kHandedOver, F_GETFL) | O_NONBLOCK);
  return socket;
}

std::string AddressOf(const Descriptor& listener) {
  sockaddr_storage storage{};
  socklen_t size = sizeof storage;
  ::getsockname(listener.Number(), Generic(storage), &size);
  if (storage.ss_family != AF_INET) return "the socket that was handed over";
  sockaddr_in address{};
  std::memcpy(&address, &storage, sizeof address);
  std::array<char, INET_ADDRSTRLEN> host{};
  ::inet_ntop(AF_INET, &address.sin_addr, host.data(), host.size());
  return "http://" + std::string(host.data()) + ":" + std::to_string(ntohs(address.sin_port)) + "/";
}

}  // namespace gateway
