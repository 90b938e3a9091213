// A server on 127.0.0.1 that misbehaves on order. It answers one connection after the other from a
// script and keeps what it was sent.
#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// What happens on one connection, once the request's headers (and the announced content) are in.
struct Reply {
  std::string bytes;
  enum class End { Close, Reset, Stall } end = End::Close;
  std::size_t piece = 0;       // bytes a write, 0 for all at once
  bool beforeRequest = false;  // answer without waiting for the request
  std::size_t filler = 0;      // so many bytes "x" behind the others
};

// "HTTP/1.0 200 OK", a Content-Length and the body.
std::string Page(const std::string& body);
// The same without a length, ended by the close.
std::string OpenPage(const std::string& body);

// A listening socket on a free port of 127.0.0.1, which the caller closes.
int ListenOnLoopback(int& port);

class LoopbackServer {
 public:
  LoopbackServer();
  ~LoopbackServer();
  LoopbackServer(const LoopbackServer&) = delete;
  LoopbackServer& operator=(const LoopbackServer&) = delete;

  int Port() const { return port_; }
  std::string Host() const { return "127.0.0.1:" + std::to_string(port_); }
  // The next connection gets the next reply; with none left the last one is repeated.
  void Answer(Reply reply);
  void Answer(const std::string& bytes) { Answer(Reply{bytes}); }
  // From now on every request for this path, with its query, gets this reply in place of the script's.
  void AnswerAt(const std::string& path, Reply reply);
  // How many replies are out; what they hold then lies in the client's kernel buffers.
  int Answered() const { return answered_; }
  // All requests so far, byte for byte.
  std::vector<std::string> Requests();

 private:
  void Serve();
  void Handle(int connection);
  Reply NextInScript();
  void TakeRequest(const std::string& request, Reply& reply);
  int listener_ = -1;
  int port_ = 0;
  std::mutex mutex_;
  std::deque<Reply> replies_;
  std::map<std::string, Reply> pages_;
  std::vector<std::string> requests_;
  std::vector<int> stalled_;
  std::atomic<bool> stop_{false};
  std::atomic<int> answered_{0};
  std::thread thread_;
};
