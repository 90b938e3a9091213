// A gateway inside the test process, and a client that sends it raw bytes.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "gateway/server/Server.h"
#include "gateway/server/listener.h"
#include "gateway/sources/FolderSource.h"
#include "support/TemporaryFolder.h"

namespace gateway_test {

using gateway::Descriptor;

struct Reply {
  std::string head;  // with the blank line
  std::string body;

  std::string Status() const { return head.substr(0, head.find("\r\n")); }
  bool Has(const std::string& line) const { return head.find("\r\n" + line + "\r\n") != std::string::npos; }
};

// False if the peer has closed the connection.
inline bool SendAll(const Descriptor& client, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(client.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// A client that has sent these bytes.
inline Descriptor ConnectTo(std::uint16_t port, std::string_view bytes = "") {
  const sockaddr_in address{AF_INET, htons(port), {htonl(INADDR_LOOPBACK)}, {}};
  Descriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto* generic = static_cast<const sockaddr*>(static_cast<const void*>(&address));
  EXPECT_EQ(::connect(client.Number(), generic, sizeof address), 0);
  SendAll(client, bytes);
  return client;
}

// All bytes until the peer closes the connection or sends nothing for half a minute.
inline Reply ReadReply(const Descriptor& client) {
  std::string all;
  std::array<char, 65536> bytes;
  pollfd waiting{client.Number(), POLLIN, 0};
  while (::poll(&waiting, 1, 30'000) > 0) {
    const ssize_t count = ::recv(client.Number(), bytes.data(), bytes.size(), 0);
    if (count <= 0) break;
    all.append(bytes.data(), static_cast<std::size_t>(count));
  }
  const std::size_t end = std::min(all.find("\r\n\r\n"), all.size());
  return {all.substr(0, end + 4), all.substr(std::min(end + 4, all.size()))};
}

inline std::uint16_t PortIn(const std::string& address) {
  return static_cast<std::uint16_t>(std::atoi(address.c_str() + address.rfind(':') + 1));
}

inline std::string GetRequest(const std::string& target) {
  return "GET " + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n";
}

// A source that serves files byte for byte, so that they may contain anything.
inline std::shared_ptr<gateway::FolderSource> AsIs(const std::vector<std::string>& folders) {
  return std::make_shared<gateway::FolderSource>(folders, gateway::FolderSource::Manner::AsIs);
}

class RunningGateway {
 public:
  explicit RunningGateway(const std::vector<std::string>& folders, const gateway::Limits& limits = {})
      : RunningGateway(std::make_shared<gateway::FolderSource>(folders), limits) {}
  explicit RunningGateway(std::shared_ptr<gateway::CaptionSource> source, const gateway::Limits& limits = {})
      : source_(std::move(source)), server_(*source_, limits) {
    thread_ = std::thread([this] { server_.Serve(listener_.Number(), {stop_.Number()}); });
  }
  ~RunningGateway() { Stop(); }

  void Stop() {
    ::eventfd_write(stop_.Number(), 1);
    if (thread_.joinable()) thread_.join();
  }

  std::uint16_t Port() const { return PortIn(gateway::AddressOf(listener_)); }

  Reply Ask(std::string_view bytes) const { return ReadReply(ConnectTo(Port(), bytes)); }
  Reply List(const std::string& code) const { return Ask(GetRequest("/timedtext?type=list&v=" + code)); }
  Reply Captions(const std::string& code, const std::string& language) const {
    return Ask(GetRequest("/api/timedtext?&v=" + code + "&lang=" + language));
  }

 private:
  std::shared_ptr<gateway::CaptionSource> source_;
  gateway::Server server_;
  Descriptor listener_ = gateway::ListenOnLoopback(0), stop_{::eventfd(0, EFD_CLOEXEC)};
  std::thread thread_;
};

}  // namespace gateway_test
