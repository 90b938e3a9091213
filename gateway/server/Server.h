// Accepts connections and serves each in a thread of its own, up to a limit.
#pragma once

#include <list>

#include "gateway/server/Answers.h"
#include "gateway/server/Connection.h"
#include "gateway/sources/Descriptor.h"

namespace gateway {

// What ends a server.
struct Stop {
  int event = -1;  // a descriptor that becomes readable; nothing is read from it
  int input = -1;  // a descriptor that reaches its end or fails; bytes read from it before are discarded
};

class Server {
 public:
  // Requires: `source` outlives the server.
  explicit Server(CaptionSource& source, const Limits& limits = {});
  ~Server();

  // Serves clients until `stop`. Clients that have not completed their request by then are disconnected;
  // answers under way get Limits::farewell to finish. All descriptors stay the caller's. Throws
  // std::system_error if the listener fails. In any case no connection is left open.
  // Requires: `listener` is a listening socket that does not block.
  void Serve(int listener, const Stop& stop);

 private:
  struct Client;

  void Accept(int listener);
  void Start(Descriptor socket);
  void Run(Client& client);
  void Reap();
  void ReturnFreedMemory();
  void ShutDown(int direction);
  void DismissAll();
  void AwaitAnEnd(int milliseconds);

  Answers answers_;
  Limits limits_;
  Descriptor ended_;  // counts clients whose threads have finished
  std::list<Client> clients_;
  bool mayHoldFreedMemory_ = false;  // that was not returned to the system
};

}  // namespace gateway
