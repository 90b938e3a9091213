// An HTTP server on 127.0.0.1 in a process of its own, so that its work is not counted with the
// client's. It answers one connection after the other and is gone with its owner.
//
//   /small            a page of 2,000 bytes
//   /large            a page of kLargePage bytes
//   /silent           nothing, for as long as the peer stays
//   ...&lang=N        timed text of N cues
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

class PageServer {
 public:
  static constexpr std::size_t kLargePage = 200'000'000;

  // To be made before the first thread. Raises std::runtime_error if no port can be had.
  PageServer();
  ~PageServer();
  PageServer(const PageServer&) = delete;
  PageServer& operator=(const PageServer&) = delete;

  std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  int port_ = 0;
  pid_t process_ = -1;
};
