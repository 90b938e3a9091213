// One client's connection, with the bounds that keep a slow or hostile client from holding it for good. Time
// runs against a whole phase, not against silence: a client that drips bytes gains nothing.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <string_view>

#include "gateway/server/request_line.h"

namespace gateway {

struct Limits {
  std::chrono::milliseconds head{10'000};     // for a request's head to arrive whole
  std::chrono::milliseconds answer{60'000};   // for the client to take its answer
  std::chrono::milliseconds linger{1'000};    // for a client that has more to send than it should
  std::chrono::milliseconds farewell{3'000};  // for the answers under way when the server stops
  std::size_t headBytes = 16u << 10;          // request line and headers
  std::size_t connections = 256;              // at a time; the next ones wait for a place
};

class Connection {
 public:
  enum class Head { Complete, TooLarge, Malformed, Gone };

  // `socket` doesn't block, is connected, and stays its owner's.
  Connection(int socket, const Limits& limits) : socket_(socket), limits_(limits) {}

  int Socket() const { return socket_; }

  // Reads a request's head, up to the blank line, whose lines may end in CR LF or LF. Malformed: there are
  // control characters in the head. Gone: the client closed or kept waiting. `head` is only set when
  // Complete.
  Head ReadHead(RequestHead& head);

  // False once the client is gone or took too long; then it stays so. The first call starts the answer's
  // time.
  bool Send(std::string_view bytes);

  // Ends the answer. If more bytes have come, or `expectMore`, what the client still sends is taken in,
  // within bounds: closing with bytes unread would have the system take the answer back.
  void Finish(bool expectMore);

 private:
  using Clock = std::chrono::steady_clock;

  bool HasUnread() const;
  bool WaitFor(short events, Clock::time_point deadline) const;
  ssize_t Receive(char* buffer, std::size_t capacity, Clock::time_point deadline) const;

  int socket_;
  Limits limits_;
  Clock::time_point answerDeadline_{};
  bool broken_ = false;
};

}  // namespace gateway
