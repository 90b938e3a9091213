#include "runtime/TCPSocket.h"

#include <algorithm>
#include <array>
#include <asio.hpp>
#include <chrono>
#include <thread>
#include <utility>

using asio::ip::tcp;

namespace {

// What one Poll takes from the kernel, so that a fast peer can't keep it from returning.
constexpr std::size_t kReceiveAtOnce = 1 << 20;
constexpr std::size_t kReceiveStep = 256 * 1024;

int CodeOf(const asio::error_code& error) {
  return error == asio::error::eof ? kErrorPeerClosed : error.value();
}

}  // namespace

// What happens is noted here by the completions, and told by Poll afterwards, so that an event may
// close or renew the connection. A look-up that hangs keeps its Connection alive, and nothing else.
struct SocketCore::Connection : std::enable_shared_from_this<Connection> {
  asio::io_context io{1};
  asio::executor_work_guard<asio::io_context::executor_type> work = asio::make_work_guard(io);
  tcp::socket socket{io};
  std::string toSend;
  bool isConnected = false;
  bool isReadable = false;
  bool sending = false;
  bool tellConnected = false;
  bool tellSent = false;
  int failure = 0;  // to be told

  void Start(const std::string& address, std::int64_t port);
  void LookUp(const std::string& address, std::uint16_t port);
  template <typename Endpoints>
  void ConnectTo(const Endpoints& endpoints);
  void AwaitBytes();
  void Send();
  bool Receive(std::string& into);
  void Fail(int code) {
    failure = code;
    asio::error_code ignored;
    socket.close(ignored);
  }
};

void SocketCore::Connection::Start(const std::string& address, std::int64_t port) {
  asio::error_code notNumeric;
  const auto numeric = asio::ip::make_address(address, notNumeric);
  const bool isAddress = !address.empty() && address.find('\0') == std::string::npos;
  if (port < 1 || port > 65535 || !isAddress) {
    asio::post(io, [this] { Fail(kErrorBadAddress); });
  } else if (!notNumeric) {
    ConnectTo(std::array{tcp::endpoint(numeric, static_cast<std::uint16_t>(port))});
  } else {
    LookUp(address, static_cast<std::uint16_t>(port));
  }
}

// The system's look-up blocks and can't be broken off, so it has a thread that nobody waits for.
void SocketCore::Connection::LookUp(const std::string& address, std::uint16_t port) {
  try {
    std::thread([self = shared_from_this(), address, port] {
      asio::io_context own;
      asio::error_code error;
      const auto found = tcp::resolver(own).resolve(address, std::to_string(port), error);
      asio::post(self->io, [connection = self.get(), error, found] {
        if (error || found.empty()) return connection->Fail(kErrorNameNotFound);
        connection->ConnectTo(found);
      });
    }).detach();
  } catch (const std::system_error& e) {
    asio::post(io, [this, code = e.code().value()] { Fail(code); });
  }
}

template <typename Endpoints>
void SocketCore::Connection::ConnectTo(const Endpoints& endpoints) {
  asio::async_connect(socket, endpoints, [this](const asio::error_code& error, const tcp::endpoint&) {
    if (error == asio::error::operation_aborted) return;
    if (error) return Fail(CodeOf(error));
    asio::error_code ignored;
    socket.non_blocking(true, ignored);
    isConnected = tellConnected = true;
    AwaitBytes();
    Send();
  });
}

void SocketCore::Connection::AwaitBytes() {
  socket.async_wait(tcp::socket::wait_read, [this](const asio::error_code& error) {
    if (!error) isReadable = true;
  });
}

// Takes what the kernel holds; true if there was anything.
bool SocketCore::Connection::Receive(std::string& into) {
  isReadable = false;
  const std::size_t before = into.size();
  asio::error_code error;
  while (!error && into.size() - before < kReceiveAtOnce) {
    const std::size_t filled = into.size();
    into.resize(filled + kReceiveStep);
    const std::size_t got = socket.read_some(asio::buffer(into.data() + filled, kReceiveStep), error);
    into.resize(filled + got);
    if (got < kReceiveStep) break;
  }
  if (!error || error == asio::error::would_block || error == asio::error::try_again) {
    AwaitBytes();
  } else {
    Fail(CodeOf(error));
  }
  return into.size() > before;
}

void SocketCore::Connection::Send() {
  if (!isConnected || sending || toSend.empty()) return;
  asio::error_code error;
  const std::size_t sent = socket.write_some(asio::buffer(toSend), error);
  toSend.erase(0, sent);
  // A failure to send is told by the reading side, behind the bytes that the peer sent before it.
  if (error && error != asio::error::would_block) toSend.clear();
  tellSent |= toSend.empty();
  if (toSend.empty()) return;
  sending = true;
  socket.async_wait(tcp::socket::wait_write, [this](const asio::error_code& failed) {
    sending = false;
    if (!failed) Send();
  });
}

SocketCore::SocketCore() = default;
SocketCore::~SocketCore() { SocketCore::Close(); }

void SocketCore::Connect() {
  SocketCore::Close();
  lastError_ = 0;
  connection_ = std::make_shared<Connection>();
  connection_->Start(Address, Port);
}

void SocketCore::Close() {
  if (!connection_) return;
  asio::error_code ignored;
  connection_->socket.close(ignored);
  connection_.reset();
}

void SocketCore::Purge() {
  received_.clear();
  receivedFrom_ = 0;
  if (connection_) connection_->toSend.clear();
}

void SocketCore::Poll() {
  const auto c = connection_;  // keeps it alive through events that close it
  if (!c) return std::this_thread::sleep_for(std::chrono::milliseconds(kPollWait));
  const auto isSame = [&] { return connection_ == c; };
  if (!c->isReadable) {
    c->io.restart();
    if (c->io.run_one_for(std::chrono::milliseconds(kPollWait)) > 0) c->io.poll();
  }
  if (std::exchange(c->tellConnected, false)) Event_Connected();
  if (isSame() && std::exchange(c->tellSent, false)) Event_SendComplete(false);
  if (isSame() && c->isReadable && c->Receive(received_)) Event_DataAvailable();
  if (!isSame() || c->failure == 0) return;
  lastError_ = c->failure;
  const bool cancelled = !c->toSend.empty();
  Close();
  if (cancelled) Event_SendComplete(true);
  Event_Error();
}

bool SocketCore::IsConnected() const { return connection_ && connection_->isConnected; }

std::string_view TCPSocket::Lookahead() const { return std::string_view(received_).substr(receivedFrom_); }

std::string TCPSocket::Read(std::int64_t count) {
  const std::size_t have = received_.size() - receivedFrom_;
  const std::size_t take = count < 1 ? have : std::min(static_cast<std::size_t>(count), have);
  std::string bytes;
  if (receivedFrom_ == 0 && take == have) {
    bytes.swap(received_);
    return bytes;
  }
  bytes.assign(received_, receivedFrom_, take);
  receivedFrom_ += take;
  if (receivedFrom_ == received_.size()) received_.clear(), receivedFrom_ = 0;
  return bytes;
}

void TCPSocket::Write(std::string_view bytes) {
  if (!connection_) return;
  connection_->toSend.append(bytes);
  connection_->Send();
}

void TCPSocket::Flush() {
  if (connection_) connection_->Send();
}
