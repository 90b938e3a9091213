#include "ravelyn/OwnGateway.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "ravelyn/gateway_process.h"
#include "runtime/Numbers.h"
#include "runtime/Text.h"

namespace {

constexpr std::chrono::minutes kStartsPeriod{1};
constexpr int kMostStarts = 3;     // in that period
constexpr int kLongestEnd = 4000;  // milliseconds; the gateway takes up to three seconds to finish replies
constexpr int kBacklog = 512;

void CloseOne(int& descriptor) {
  if (descriptor >= 0) ::close(std::exchange(descriptor, -1));
}

// The port on this machine that both requests go to; 0 if there is none.
std::uint16_t PortOf(const Endpoints& endpoints) {
  const std::string& endpoint = endpoints.TrackListEndpoint;
  const std::string host = NthField(endpoint, ":", 1);
  if (endpoint != endpoints.TimedTextEndpoint || (host != "127.0.0.1" && host != "localhost")) return 0;
  const std::int64_t port = ToInteger(Val(NthField(endpoint, ":", 2)));
  return port > 0 && port <= 65535 ? static_cast<std::uint16_t>(port) : 0;
}

// -1 if the port is taken, for example by the service manager's socket or by another gateway.
int ListenAt(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int on = 1;
  int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  ::setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  const auto* generic = static_cast<const sockaddr*>(static_cast<const void*>(&address));
  const bool listens =
      listener >= 0 && ::bind(listener, generic, sizeof address) == 0 && ::listen(listener, kBacklog) == 0;
  if (!listens) CloseOne(listener);
  return listener;
}

}  // namespace

OwnGateway::OwnGateway(const Endpoints& endpoints, CommandLine command)
    : command_(std::move(command)), port_(command_.empty() ? 0 : PortOf(endpoints)) {
  if (port_ != 0) listener_ = ListenAt(port_);
}

OwnGateway::~OwnGateway() {
  CloseOne(input_);
  pollfd waiting{ended_, POLLIN, 0};
  if (ended_ >= 0 && ::poll(&waiting, 1, kLongestEnd) > 0) Collect();
  CloseAll();
}

void OwnGateway::Start() {
  Collect();
  if (!IsListening() && port_ != 0) listener_ = ListenAt(port_);
  if (!IsListening()) return;
  if (!MayStart()) return CloseAll();
  int input[2];
  if (::pipe2(input, O_CLOEXEC) != 0) return CloseAll();
  process_ = StartGateway(command_, input[0], listener_);
  ::close(input[0]);
  input_ = input[1];
  ended_ = process_ < 0 ? -1 : static_cast<int>(::syscall(SYS_pidfd_open, process_, 0));
  if (ended_ < 0) CloseAll();
}

bool OwnGateway::MayStart() {
  const auto now = std::chrono::steady_clock::now();
  if (now - since_ > kStartsPeriod) since_ = now, starts_ = 0;
  return ++starts_ <= kMostStarts;
}

void OwnGateway::Collect() {
  CloseOne(input_);
  CloseOne(ended_);
  while (process_ >= 0 && ::waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
  process_ = -1;
}

void OwnGateway::CloseAll() {
  CloseOne(input_);
  CloseOne(ended_);
  CloseOne(listener_);
}
