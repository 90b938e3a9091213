// The gateway that the program starts by itself: one process that lives as long as the program, if captions
// are requested from a port of this machine that no other gateway serves.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "app/Endpoints.h"

class OwnGateway {
 public:
  // The program and its arguments; empty for none.
  using CommandLine = std::vector<std::string>;

  // Listens at the port of both endpoints, if it is the same free port of 127.0.0.1 and there is a command to
  // serve it. Connections wait there until Start; none is refused.
  OwnGateway(const Endpoints& endpoints, CommandLine command);
  // Ends the gateway and waits for its end, a few seconds at most.
  ~OwnGateway();
  OwnGateway(const OwnGateway&) = delete;
  OwnGateway& operator=(const OwnGateway&) = delete;

  bool IsListening() const { return listener_ >= 0; }
  // Starts the gateway, or restarts one that has ended, at most three times a minute; after that, closes the
  // port, so that requests are refused at once. Tries again to listen at a port that was taken or closed.
  void Start();
  // A descriptor that is readable once the gateway has ended, valid until the next Start; -1 without a
  // gateway.
  int Ended() const { return ended_; }
  pid_t Process() const { return process_; }

 private:
  bool MayStart();
  void Collect();
  void CloseAll();

  const CommandLine command_;
  const std::uint16_t port_;  // 0 if there is nothing to serve
  int listener_ = -1;
  int input_ = -1;  // writing end of the gateway's standard input; no other process has it
  int ended_ = -1;
  pid_t process_ = -1;
  std::chrono::steady_clock::time_point since_{};
  int starts_ = 0;  // in the minute that began at since_
};

// ravelyn-gateway next to this program, else in PATH, with options to fetch, to end with its input and to
// serve the folders of the user and of the package; empty if it is not found.
OwnGateway::CommandLine GatewayCommand();
