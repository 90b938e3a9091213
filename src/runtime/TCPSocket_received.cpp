// The receive buffer of a socket.

#include <algorithm>
#include <utility>

#include "runtime/TCPSocket.h"

std::string_view TCPSocket::Lookahead() const { return std::string_view(received_).substr(receivedFrom_); }

std::string TCPSocket::Read(std::int64_t count) {
  const std::size_t have = received_.size() - receivedFrom_;
  const std::size_t take = count < 1 ? have : std::min(static_cast<std::size_t>(count), have);
  if (receivedFrom_ == 0 && take == have) return std::exchange(received_, {});
  std::string bytes(received_, receivedFrom_, take);
  receivedFrom_ += take;
  if (receivedFrom_ == received_.size()) received_.clear(), receivedFrom_ = 0;
  return bytes;
}
