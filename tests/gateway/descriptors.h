// Patience, descriptors that run out, and connections whose client may leave.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <vector>

#include "gateway/sources/Patience.h"

namespace gateway_test {

using namespace std::chrono_literals;

inline gateway::Patience For(std::chrono::milliseconds time) {
  return {std::chrono::steady_clock::now() + time};
}

inline std::size_t OpenDescriptors() {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

// As long as it lives, this process can open only `count` more descriptors.
class FewDescriptors {
 public:
  explicit FewDescriptors(std::size_t count) {
    ::getrlimit(RLIMIT_NOFILE, &before_);
    std::vector<gateway::Descriptor> next;
    while (next.size() <= count) next.emplace_back(::dup(0));
    const rlimit few{static_cast<rlim_t>(next.back().Number()), before_.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { ::setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_{};
};

// A client's connection: `ours` is the gateway's end.
struct Client {
  Client() {
    std::array<int, 2> both{-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, both.data()), 0);
    ours = gateway::Descriptor(both[0]);
    theirs = gateway::Descriptor(both[1]);
  }
  gateway::Requester Asks() const { return {std::chrono::steady_clock::now(), ours.Number()}; }
  void Leave() { theirs = gateway::Descriptor(); }

  gateway::Descriptor ours, theirs;
};

}  // namespace gateway_test
