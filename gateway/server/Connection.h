// One client's connection, with limits that keep a slow or hostile client from holding it indefinitely. A
// time limit covers a whole phase, so a client that drips bytes gains nothing.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <string_view>

#include "gateway/server/request_line.h"

namespace gateway {

struct Limits {
  std::chrono::milliseconds head{10'000};     // to receive a request's complete head
  std::chrono::milliseconds answer{60'000};   // to send an answer
  std::chrono::milliseconds linger{1'000};    // to receive and discard bytes after the answer
  std::chrono::milliseconds farewell{3'000};  // to finish answers under way when the server stops
  std::size_t headBytes = 16u << 10;          // request line and headers
  std::size_t connections = 256;              // at a time; others wait
};

class Connection {
 public:
  enum class Head { Complete, TooLarge, Malformed, Gone };

  // Requires: `socket` is connected, does not block, and stays open while this exists. It stays the caller's.
  Connection(int socket, const Limits& limits) : socket_(socket), limits_(limits) {}

  int Socket() const { return socket_; }

  // Reads a request's head up to the blank line; lines may end with CR LF or LF. Malformed: the head contains
  // control characters. Gone: the client closed the connection or took too long. `head` is set only if
  // Complete.
  Head ReadHead(RequestHead& head);

  // False once the client is gone or took too long, and from then on. The first call starts the time limit
  // for the answer.
  bool Send(std::string_view bytes);

  // Ends the answer. If unread bytes are there, or `expectMore`, then receives and discards what the client
  // still sends, within Limits::linger: closing a socket with unread bytes would discard the answer.
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
