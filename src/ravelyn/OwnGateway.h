// The gateway that the program brings along: where the captions are requested on this machine and nobody
// serves them there yet, one process that lives as long as the program does.
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

  // Listens where both requests of endpoints go, if that is one port of 127.0.0.1 that is free and there is
  // a command to serve it. Connections wait there until Start, and none is refused.
  OwnGateway(const Endpoints& endpoints, CommandLine command);
  // Ends the gateway, and waits until it has ended, for some seconds at most.
  ~OwnGateway();
  OwnGateway(const OwnGateway&) = delete;
  OwnGateway& operator=(const OwnGateway&) = delete;

  bool IsListening() const { return listener_ >= 0; }
  // Starts the gateway, and once more when it has ended by itself: three times in a minute at most. After
  // that the port is closed, so that a request is refused at once. A port that was taken or closed is tried
  // again.
  void Start();
  // A descriptor that can be read when the gateway has ended, until the next Start; -1 without one.
  int Ended() const { return ended_; }
  pid_t Process() const { return process_; }

 private:
  bool MayStart();
  void Collect();
  void CloseAll();

  const CommandLine command_;
  const std::uint16_t port_;  // 0 where there is nothing to serve
  int listener_ = -1;
  int input_ = -1;  // the writing end of the gateway's standard input, which nobody else holds
  int ended_ = -1;
  pid_t process_ = -1;
  std::chrono::steady_clock::time_point since_{};
  int starts_ = 0;  // in the minute that began then
};

// ravelyn-gateway beside this program, else in PATH, with the options to fetch, to end with its input and to
// serve the folders of the user and of the package; empty if it is nowhere.
OwnGateway::CommandLine GatewayCommand();
