// Accepts connections and gives each a thread of its own, up to a bound.
#pragma once

#include <list>

#include "gateway/server/Answers.h"
#include "gateway/server/Connection.h"
#include "gateway/sources/Descriptor.h"

namespace gateway {

// What ends a server.
struct Stop {
  int event = -1;  // can be read from then on; nothing is read from it
  int input = -1;  // comes to its end, or fails; what can be read from it is read and means nothing
};

class Server {
 public:
  // `source` must outlive the server.
  explicit Server(CaptionSource& source, const Limits& limits = {});
  ~Server();

  // Serves `listener`, a listening socket that doesn't block, until `stop` says so; clients that have not
  // finished their request are then let go, answers under way get Limits::farewell. All descriptors stay the
  // caller's. Throws std::system_error if the system fails the listener; no connection is left open either
  // way.
  void Serve(int listener, const Stop& stop);

 private:
  struct Client;

  void Accept(int listener);
  void Start(Descriptor socket);
  void Run(Client& client);
  void Reap();
  void Rest();
  void ShutDown(int direction);
  void DismissAll();
  void AwaitAnEnd(int milliseconds);

  Answers answers_;
  Limits limits_;
  Descriptor ended_;  // an event counter: a client's thread is done
  std::list<Client> clients_;
  bool holdsFreed_ = false;  // memory that was freed may not be the system's yet
};

}  // namespace gateway
