// The network of a fuzzer, played in process: every connection stands at once, gets one reply, and
// nothing takes time. What the program sends is kept.
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
  // Bytes that come with each Poll, in turn; what is left comes with the last. A 0 is a Poll in
  // which nothing comes.
  std::vector<std::size_t> pieces = {};
  // The end comes with the Poll that brings the last piece, not with the one behind it.
  bool endsAtOnce = false;
};

struct Connection {
  std::string address;
  std::int64_t port = 0;
  std::string request;
};

// Since the last Reset, oldest first.
const std::vector<Connection>& Connections();
// What each connection is answered, by its request.
void Reset(std::function<Reply(const std::string& request)> answer);

// "HTTP/1.0 200 OK" and the body, ended by the close.
std::string Page(const std::string& body);

}  // namespace wire
