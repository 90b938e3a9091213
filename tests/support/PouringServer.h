// A server on 127.0.0.1 whose replies have no end: a head, then the same piece again and again, until
// the client goes.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "support/LoopbackServer.h"

class PouringServer {
 public:
  // pause is the time between two pieces.
  PouringServer(std::string head, std::string piece, std::chrono::milliseconds pause = {})
      : head_(std::move(head)), piece_(std::move(piece)), pause_(pause) {
    listener_ = ListenOnLoopback(port_);
    thread_ = std::thread([this] { Serve(); });
  }
  ~PouringServer() {
    stop_ = true;
    thread_.join();
    ::close(listener_);
  }
  PouringServer(const PouringServer&) = delete;
  PouringServer& operator=(const PouringServer&) = delete;

  std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }
  // Connections that the client has left.
  int Left() const { return left_; }

 private:
  bool Ready(int descriptor, std::chrono::milliseconds wait) const {
    pollfd waiting{descriptor, POLLIN, 0};
    return ::poll(&waiting, 1, static_cast<int>(wait.count())) > 0;
  }
  void Serve() {
    while (!stop_) {
      if (!Ready(listener_, std::chrono::milliseconds(20))) continue;
      const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      const timeval most{0, 100'000};  // for a client that takes nothing
      ::setsockopt(connection, SOL_SOCKET, SO_SNDTIMEO, &most, sizeof most);
      Pour(connection);
      ::close(connection);
    }
  }
  void Pour(int connection) {
    char request[4096];
    if (::recv(connection, request, sizeof request, 0) <= 0) return;
    std::string bytes = head_ + piece_;
    while (!stop_) {
      const ssize_t sent = ::send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      const bool isLeft = sent < 0 ? errno != EAGAIN : pause_.count() > 0 && Ready(connection, pause_);
      if (isLeft) {
        ++left_;
        return;
      }
      if (sent > 0) bytes.erase(0, static_cast<std::size_t>(sent));
      if (bytes.empty()) bytes = piece_;
    }
  }

  std::string head_;
  std::string piece_;
  std::chrono::milliseconds pause_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> left_{0};
  std::atomic<bool> stop_{false};
  std::thread thread_;
};
