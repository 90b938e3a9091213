// An HTTP server on 127.0.0.1, in a process of its own so that its work does not count as the client's. It
// answers one connection after the other and ends with its owner.
//
//   /small            a page of 2,000 bytes
//   /large            a page of kLargePage bytes
//   /silent           nothing until the peer disconnects
//   ...&lang=N        timed text of N cues
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

class PageServer {
 public:
  static constexpr std::size_t kLargePage = 200'000'000;

  // Raises std::runtime_error if there is no free port. Requires: this process has no other thread.
  PageServer();
  ~PageServer();
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;

  std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  int port_ = 0;
  pid_t process_ = -1;
};
