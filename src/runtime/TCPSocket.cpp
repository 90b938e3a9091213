#include "runtime/TCPSocket.h"

#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <asio.hpp>
#include <cerrno>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "runtime/Application.h"

using asio::ip::tcp;

namespace {

// The most that one Poll reads: it fits into the processor's cache, and Poll returns even with a fast peer.
constexpr std::size_t kReceiveAtOnce = 128 * 1024;

using Endpoints = std::vector<tcp::endpoint>;

// Sockets belong to a context; nothing runs in it, since Poll looks at its own socket only.
asio::io_context& Context() {
  static auto* context = new asio::io_context(1);  // never destroyed: it outlives every socket
  return *context;
}

bool IsForLater(const asio::error_code& error) {
  return error == asio::error::would_block || error == asio::error::try_again ||
         error == asio::error::interrupted;
}

// The result of a name look-up, and a descriptor that is readable once it is there. The system's look-up
// blocks and cannot be cancelled, so it runs in a detached thread, which shares this object.
struct LookUp {
  int done = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::mutex mutex;
  Endpoints found;

  ~LookUp() { ::close(done); }

  void Run(const std::string& address, std::uint16_t port) {
    try {
      asio::io_context own;
      asio::error_code error;
      const auto results = tcp::resolver(own).resolve(address, std::to_string(port), error);
      const std::lock_guard lock(mutex);
      for (const auto& result : results) found.push_back(result.endpoint());
    } catch (const std::exception&) {
      // Without memory or descriptors nothing is found.
    }
    ::eventfd_write(done, 1);
  }
  Endpoints Take() {
    const std::lock_guard lock(mutex);
    return std::exchange(found, {});
  }
};

}  // namespace

// The stages of one connection. A step only records what happened; Poll reports it afterwards, so that an
// event may close or renew the connection.
struct SocketCore::Connection {
  enum class Stage { LookingUp, Connecting, Connected, Failed };

  Stage stage = Stage::Failed;
  std::shared_ptr<LookUp> lookUp;
  Endpoints endpoints;  // not tried yet
  tcp::socket socket{Context()};
  std::string toSend;
  std::size_t sent = 0;  // bytes of toSend that the kernel has taken
  int sendFailure = 0;   // an errno; nothing more is sent after it
  bool reportConnected = false;
  bool reportSent = false;
  int failure = 0;  // to report

  void Start(const std::string& address, std::int64_t port);
  void StartLookUp(const std::string& address, std::uint16_t port);
  void TryNext(int lastError);
  bool WantsToSend() const { return sent < toSend.size() && sendFailure == 0; }
  void Open(const tcp& protocol, asio::error_code& error);
  // What the current stage waits for.
  Awaited Next();
  // These do what is possible now. Receive is true if bytes arrived.
  void TakeLookUp();
  void TakeConnection();
  bool Receive(std::string& into);
  void Send();
  void Queue(std::string_view bytes) {
    // Sent bytes are removed once they are the greater part, so that appending stays linear.
    if (sent > toSend.size() / 2) toSend.erase(0, std::exchange(sent, 0));
    toSend.append(bytes);
  }
  void DropUnsent() {
    toSend.clear();
    sent = 0;
  }
  void Fail(int code) {
    failure = code;
    stage = Stage::Failed;
  }
};

void SocketCore::Connection::Start(const std::string& address, std::int64_t port) {
  const bool isAddress = !address.empty() && address.find('\0') == std::string::npos;
  if (port < 1 || port > 65535 || !isAddress) return Fail(kErrorBadAddress);
  asio::error_code notNumeric;
  const auto numeric = asio::ip::make_address(address, notNumeric);
  if (notNumeric) return StartLookUp(address, static_cast<std::uint16_t>(port));
  endpoints = {{numeric, static_cast<std::uint16_t>(port)}};
  TryNext(0);
}

void SocketCore::Connection::StartLookUp(const std::string& address, std::uint16_t port) {
  stage = Stage::LookingUp;
  lookUp = std::make_shared<LookUp>();
  if (lookUp->done < 0) return Fail(EMFILE);
  try {
    std::thread([shared = lookUp, address, port] { shared->Run(address, port); }).detach();
  } catch (const std::system_error& e) {
    Fail(e.code().value());
  }
}

Awaited SocketCore::Connection::Next() {
  if (stage == Stage::LookingUp) return {lookUp->done, true, false};
  return {socket.native_handle(), stage == Stage::Connected, stage == Stage::Connecting || WantsToSend()};
}

void SocketCore::Connection::TakeLookUp() {
  if (!IsReadyWithin(0, Next())) return;
  endpoints = lookUp->Take();
  TryNext(kErrorNameNotFound);
}

// Opens a socket that no child process can inherit, not even for a moment.
void SocketCore::Connection::Open(const tcp& protocol, asio::error_code& error) {
  const int type = SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK;
  const int descriptor = ::socket(protocol.family(), type, protocol.protocol());
  if (descriptor < 0) {
    error.assign(errno, asio::error::get_system_category());
    return;
  }
  socket.assign(protocol, descriptor, error);
  if (error) ::close(descriptor);
  if (!error) socket.non_blocking(true, error);
}

// Starts a connection to the next endpoint; without one, fails with lastError.
void SocketCore::Connection::TryNext(int lastError) {
  while (!endpoints.empty()) {
    const tcp::endpoint peer = endpoints.front();
    endpoints.erase(endpoints.begin());
    asio::error_code error;
    socket.close(error);
    Open(peer.protocol(), error);
    lastError = error.value();
    if (error) continue;
    stage = Stage::Connecting;
    if (::connect(socket.native_handle(), peer.data(), static_cast<socklen_t>(peer.size())) == 0) return;
    lastError = errno;
    if (lastError == EINPROGRESS) return;
  }
  Fail(lastError);
}

void SocketCore::Connection::TakeConnection() {
  if (!IsReadyWithin(0, Next())) return;
  int error = 0;
  socklen_t size = sizeof error;
  ::getsockopt(socket.native_handle(), SOL_SOCKET, SO_ERROR, &error, &size);
  if (error != 0) return TryNext(error);
  stage = Stage::Connected;
  reportConnected = true;
  Send();
}

bool SocketCore::Connection::Receive(std::string& into) {
  static thread_local std::array<char, kReceiveAtOnce> bytes;
  Send();
  asio::error_code error;
  const std::size_t got = socket.read_some(asio::buffer(bytes), error);
  if (error && !IsForLater(error)) Fail(error == asio::error::eof ? kErrorPeerClosed : error.value());
  // The system reports a send error once; afterwards a reset reads like an orderly close.
  if (sendFailure != 0 && got == 0) Fail(sendFailure);
  into.append(bytes.data(), got);
  return got > 0;
}

// Receive reports a failure, after the bytes that the peer sent before it.
void SocketCore::Connection::Send() {
  if (stage != Stage::Connected || !WantsToSend()) return;
  asio::error_code error;
  sent += socket.write_some(asio::buffer(toSend.data() + sent, toSend.size() - sent), error);
  if (error && !IsForLater(error)) sendFailure = error.value();
  if (sent < toSend.size()) return;
  DropUnsent();
  reportSent = true;
}

SocketCore::~SocketCore() { SocketCore::Close(); }

void SocketCore::Connect() {
  SocketCore::Close();
  lastError_ = 0;
  connection_ = std::make_shared<Connection>();
  connection_->Start(Address, Port);
}

void SocketCore::Close() {
  if (const auto connection = std::move(connection_)) {
    asio::error_code ignored;
    connection->socket.close(ignored);
  }
}

void SocketCore::Purge() {
  received_.clear();
  receivedFrom_ = 0;
  if (connection_) connection_->DropUnsent();
}

void SocketCore::Poll() {
  const auto c = connection_;  // keeps it alive through events that close it
  if (!c) return;
  const auto isSame = [&] { return connection_ == c; };
  using Stage = Connection::Stage;
  if (c->stage == Stage::LookingUp) c->TakeLookUp();
  if (c->stage == Stage::Connecting) c->TakeConnection();
  if (std::exchange(c->reportConnected, false)) Event_Connected();
  if (isSame() && std::exchange(c->reportSent, false)) Event_SendComplete(false);
  if (isSame() && c->stage == Stage::Connected && c->Receive(received_)) Event_DataAvailable();
  if (!isSame() || c->failure == 0) return;
  lastError_ = c->failure;
  const bool cancelled = c->sent < c->toSend.size();
  SocketCore::Close();
  if (cancelled) Event_SendComplete(true);
  Event_Error();
}

void SocketCore::Wait(int milliseconds) const {
  const auto& c = connection_;
  if (c && (c->failure != 0 || c->reportConnected || c->reportSent)) return;
  const Awaited next = c ? c->Next() : Awaited{};
  // If it is ready already, the host is not asked.
  if (next.descriptor < 0 || !IsReadyWithin(0, next)) AwaitCooperatively(milliseconds, next);
}

std::size_t SocketCore::BytesToSend() const {
  return connection_ ? connection_->toSend.size() - connection_->sent : 0;
}

bool SocketCore::IsConnected() const {
  return connection_ && connection_->stage == Connection::Stage::Connected;
}

void TCPSocket::Write(std::string_view bytes) {
  if (!connection_) return;
  connection_->Queue(bytes);
  connection_->Send();
}

void TCPSocket::Flush() {
  if (connection_) connection_->Send();
}
