// The simulated network of a fuzzer: every connection is made at once and gets one reply, and nothing takes
// time. The requests are recorded.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace wire {

enum class End { Close, Reset, Silence };

struct Reply {
  std::string bytes;
  End end = End::Close;
  // Bytes that arrive in each Poll, 0 for none; the Poll after the last of them receives the rest.
  std::vector<std::size_t> pieces = {};
  // The end comes in the same Poll as the last piece, not in the next one.
  bool endsAtOnce = false;
};

struct Connection {
  std::string address;
  std::int64_t port = 0;
  std::string request;
};

// All connections since the last Reset, oldest first.
const std::vector<Connection>& Connections();
// Forgets all connections; later ones get the reply that answer gives for their request.
void Reset(std::function<Reply(const std::string& request)> answer);

// "HTTP/1.0 200 OK" and the body, which ends when the connection closes.
std::string Page(const std::string& body);

}  // namespace wire
