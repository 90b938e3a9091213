// A server on 127.0.0.1 that misbehaves as requested. It answers one connection after the other from a script
// and records the requests.
#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// The reply on one connection, after the request's headers and the content that they declare have arrived.
struct Reply {
  std::string bytes;
  enum class End { Close, Reset, Stall } end = End::Close;
  std::size_t piece = 0;       // bytes per write; 0 writes all at once
  bool beforeRequest = false;  // answer without waiting for the request
  std::size_t filler = 0;      // number of "x" bytes appended to the others
};

// "HTTP/1.0 200 OK", a Content-Length and the body.
std::string Page(const std::string& body);
// The same without a Content-Length: it ends when the connection closes.
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
  // Adds a reply to the script. Each connection gets the next one; the last is repeated.
  void Answer(Reply reply);
  void Answer(const std::string& bytes) { Answer(Reply{bytes}); }
  // Every later request for this path and query gets this reply instead of the script's.
  void AnswerAt(const std::string& path, Reply reply);
  // The number of replies that have reached the client's kernel in full.
  int Answered() const { return answered_; }
  // All requests so far, as they were sent.
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
