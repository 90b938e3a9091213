// The socket on the simulated network.

#include "support/Wire.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include "runtime/TCPSocket.h"

namespace {

std::vector<wire::Connection> connections;
std::function<wire::Reply(const std::string&)> answerOf;

}  // namespace

const std::vector<wire::Connection>& wire::Connections() { return connections; }

void wire::Reset(std::function<Reply(const std::string&)> answer) {
  connections.clear();
  answerOf = std::move(answer);
}

std::string wire::Page(const std::string& body) { return "HTTP/1.0 200 OK\r\n\r\n" + body; }

struct SocketCore::Connection {
  std::size_t index = 0;
  bool isConnected = false;
  bool isBad = false;
  std::optional<wire::Reply> reply;
  std::size_t at = 0;
  std::size_t piece = 0;

  std::string NextPiece() {
    const std::size_t left = reply->bytes.size() - at;
    const std::size_t take = piece < reply->pieces.size() ? std::min(reply->pieces[piece], left) : left;
    ++piece;
    at += take;
    return reply->bytes.substr(at - take, take);
  }
  bool IsOver() const { return reply && at == reply->bytes.size(); }
};

SocketCore::~SocketCore() { SocketCore::Close(); }

void SocketCore::Connect() {
  SocketCore::Close();
  lastError_ = 0;
  connection_ = std::make_shared<Connection>();
  connection_->index = connections.size();
  connection_->isBad = Port < 1 || Port > 65535 || Address.empty() || Address.find('\0') != std::string::npos;
  connections.push_back({Address, Port, ""});
}

void SocketCore::Close() { connection_.reset(); }

void SocketCore::Purge() {
  received_.clear();
  receivedFrom_ = 0;
}

void SocketCore::Poll() {
  const auto c = connection_;
  if (!c) return;
  const auto isSame = [&] { return connection_ == c; };
  const auto fail = [&](int code) {
    lastError_ = code;
    Close();
    Event_Error();
  };
  if (c->isBad) return fail(kErrorBadAddress);
  if (!c->isConnected) {
    c->isConnected = true;
    Event_Connected();
    if (isSame()) Event_SendComplete(false);
    return;
  }
  if (!c->reply) c->reply = answerOf(connections[c->index].request);
  const bool wasOver = c->IsOver();
  if (!wasOver) {
    const std::string bytes = c->NextPiece();
    received_ += bytes;
    if (!bytes.empty()) Event_DataAvailable();
  }
  if (!isSame() || !c->IsOver() || (!wasOver && !c->reply->endsAtOnce)) return;
  if (c->reply->end == wire::End::Close) fail(kErrorPeerClosed);
  if (c->reply->end == wire::End::Reset) fail(ECONNRESET);
}

// Never waits: there is always something to handle.
void SocketCore::Wait(int) const {}

std::size_t SocketCore::BytesToSend() const { return 0; }

bool SocketCore::IsConnected() const { return connection_ && connection_->isConnected; }

void TCPSocket::Write(std::string_view bytes) {
  if (connection_) connections[connection_->index].request.append(bytes);
}

void TCPSocket::Flush() {}
